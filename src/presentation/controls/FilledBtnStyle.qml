import QtQuick
import Quillhaven.Design

/// A plain filled button.
FilledButton {
    fill: Colors.primary
}
