import QtQuick
import Quillhaven.Design

/// The look of a button beside the main one.
SecondaryButton {
}
