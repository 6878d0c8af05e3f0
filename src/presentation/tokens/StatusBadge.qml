import QtQuick

/// A short state in a pill: "locked", "unlocked", "warning", "error" or "info".
Rectangle {
    id: badge

    property string style: "info"
    property string text
    property bool showIcon: true
    readonly property var looks: ({
        locked: ["#B6B2F7", "#554DDD", "lock.fill"],
        unlocked: ["#2D4D41", "#27CD41", "lock.open.fill"],
        warning: [Colors.badgeWarningBg, Colors.badgeWarning, "exclamationmark.triangle.fill"],
        error: [Qt.alpha(Colors.error, 0.18), Colors.error, "exclamationmark.octagon.fill"],
        info: [Qt.alpha(Colors.info, 0.18), Colors.info, "info.circle.fill"]
    })[style]

    implicitWidth: content.implicitWidth + 2 * Spacing.sm
    implicitHeight: 22
    radius: height / 2
    color: looks[0]
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Row {
        id: content

        anchors.centerIn: parent
        spacing: Spacing.xs

        SymbolImage {
            anchors.verticalCenter: parent.verticalCenter
            visible: badge.showIcon
            symbol: badge.looks[2]
            color: badge.looks[1]
            size: 12
        }
        Text {
            text: badge.text
            color: badge.looks[1]
            font: Typography.scaledFont(Typography.captionSize, Typography.semibold)
            Accessible.ignored: true
        }
    }
}
