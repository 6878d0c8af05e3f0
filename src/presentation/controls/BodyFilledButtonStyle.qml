// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A button that looks like a panel on the window's background.
FilledButton {
    fill: Colors.bgPanel
}
