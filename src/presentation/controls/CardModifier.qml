// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// The background of a card.
SectionModifier {
    radius: DesignSystem.cornerRadiusMedium
}
