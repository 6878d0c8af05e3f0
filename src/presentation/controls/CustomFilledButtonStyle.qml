// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A button with a fill chosen by the caller and a faint outline.
FilledButton {
    outline: Colors.borderSubtle
}
