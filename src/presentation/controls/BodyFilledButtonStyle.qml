import QtQuick
import Quillhaven.Design

/// A button as a panel on the window's ground.
FilledButton {
    fill: Colors.bgPanel
}
