import QtQuick
import Quillhaven.Design

/// The ground of a card.
SectionModifier {
    radius: DesignSystem.cornerRadiusMedium
}
