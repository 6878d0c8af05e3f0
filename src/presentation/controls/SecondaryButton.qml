// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A button next to the main one.
FilledButton {
    fill: Colors.bgPanel
    outline: Colors.borderSubtle
}
