// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// The button of an action that cannot be undone.
FilledButton {
    fill: Colors.destructive
}
