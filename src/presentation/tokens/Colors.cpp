// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/tokens/Colors.h"

#include <algorithm>
#include <cctype>

namespace quillhaven {

QColor colorFromHex(QStringView hex)
{
    constexpr qsizetype length = 7;
    const auto isHexDigit = [](QChar digit) { return digit.unicode() < 0x80 && std::isxdigit(digit.unicode()) != 0; };
    if (hex.size() != length || hex.front() != QLatin1Char('#') ||
        !std::all_of(hex.cbegin() + 1, hex.cend(), isHexDigit)) {
        return {};
    }
    return QColor::fromRgb(hex.mid(1).toUInt(nullptr, 16));
}

QColor withOpacity(const QColor &color, float opacity)
{
    QColor result = color;
    result.setAlphaF(opacity);
    return result;
}

void Colors::setTokens(const ColorTokens &tokens)
{
    if (m_tokens != tokens) {
        m_tokens = tokens;
        Q_EMIT changed();
    }
}

void Colors::setIsHighContrast(bool value)
{
    if (m_isHighContrast != value) {
        m_isHighContrast = value;
        Q_EMIT changed();
    }
}

} // namespace quillhaven
