// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Controls
import Quillhaven.Dashboard
import Quillhaven.Design

/// A button of a badge's size that offers a newer version, while there is one.
FilledButton {
    id: badge

    required property UpdateBadgeModel updates

    visible: updates.hasUpdateAvailable
    text: "Update available"
    helpText: "Update available - Click to download"
    symbol: "tray.and.arrow.down.fill"
    implicitHeight: Math.max(Metrics.badgeHeight, implicitContentHeight + Spacing.xs)
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    leftPadding: Spacing.sm
    rightPadding: Spacing.sm
    cornerRadius: height / 2
    fill: Colors.badgeWarningBg
    foreground: Colors.badgeWarning
    font: Typography.statusText
    onClicked: updates.download()
}
