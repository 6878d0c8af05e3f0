// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A button in a fill of the caller's choice, with a faint outline.
FilledButton {
    outline: Colors.borderSubtle
}
