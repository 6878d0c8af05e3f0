// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// The ground of a card.
SectionModifier {
    radius: DesignSystem.cornerRadiusMedium
}
