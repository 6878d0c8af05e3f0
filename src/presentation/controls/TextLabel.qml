// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A text that screen readers read out as it is drawn.
Text {
    textFormat: Text.PlainText
    color: Colors.textPrimary
    horizontalAlignment: Text.AlignLeft // else it would not be mirrored with the layout
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
