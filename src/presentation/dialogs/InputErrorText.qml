import QtQuick
import QtQuick.Layouts
import Quillhaven.Design
import Quillhaven.Dialogs

/// What is wrong with what was typed.
Text {
    Layout.fillWidth: true
    visible: text !== ""
    textFormat: Text.PlainText
    font: Typography.settingDescription
    color: Colors.error
    wrapMode: Text.Wrap
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text
}
