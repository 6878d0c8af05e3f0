import QtQuick
import Quillhaven.Design

/// A button beside the main one.
FilledButton {
    fill: Colors.bgPanel
    outline: Colors.borderSubtle
}
