// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A button as a panel on the window's ground.
FilledButton {
    fill: Colors.bgPanel
}
