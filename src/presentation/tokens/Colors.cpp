#include "presentation/tokens/Colors.h"

namespace quillhaven {

QColor colorFromHex(QStringView hex)
{
    constexpr qsizetype length = 7;
    bool isNumber = false;
    const uint value = hex.mid(1).toUInt(&isNumber, 16);
    if (hex.size() != length || hex.front() != QLatin1Char('#') || !isNumber) {
        return {};
    }
    return QColor::fromRgb(value);
}

QColor withOpacity(const QColor &color, float opacity)
{
    QColor result = color;
    result.setAlphaF(opacity);
    return result;
}

void Colors::setIsHighContrast(bool value)
{
    if (m_isHighContrast != value) {
        m_isHighContrast = value;
        Q_EMIT isHighContrastChanged();
    }
}

} // namespace quillhaven
