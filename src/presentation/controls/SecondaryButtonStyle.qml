// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// The look of a button beside the main one.
SecondaryButton {
}
