// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A plain filled button.
FilledButton {
    fill: Colors.primary
}
