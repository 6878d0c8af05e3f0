// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/tokens/HighContrast.h"

namespace quillhaven {

ColorTokens highContrastTokens()
{
    const QColor white(Qt::white);
    const QColor black(Qt::black);
    // Dark, since it is the fill behind white texts; what is drawn on a surface has the light colour.
    const QColor violet = colorFromHex(u"#3F36B5");
    const QColor lightBlue = colorFromHex(u"#B0C6FF");
    const QColor line = colorFromHex(u"#AEB6C6");
    ColorTokens tokens{.primary = violet,
                       .primaryAccent = lightBlue,
                       .bgBody = black,
                       .bgPanel = colorFromHex(u"#0E131D"),
                       .textPrimary = white,
                       .textSecondary = colorFromHex(u"#E2E6EE"),
                       .platformGreen = colorFromHex(u"#6CEB80"),
                       .platformOrange = colorFromHex(u"#FFC357"),
                       .platformRed = colorFromHex(u"#FFADA8"),
                       .platformBlue = colorFromHex(u"#9CCBFF"),
                       .platformAccent = lightBlue,
                       .platformSeparator = line,
                       .background = black,
                       .backgroundSecondary = black,
                       .text = white,
                       .textTertiary = colorFromHex(u"#C9CFDA")};
    tokens.selection = withOpacity(violet, 0.6F);
    tokens.disabled = tokens.textTertiary;
    tokens.statusDisabled = tokens.disabled;
    tokens.borderSubtle = line;
    tokens.destructive = colorFromHex(u"#A3150C");
    tokens.focus = lightBlue;
    tokens.modalOverlay = withOpacity(black, 0.7F);
    tokens.textHighContrast = white;
    tokens.borderHighContrast = white;
    tokens.backgroundHighContrast = black;
    tokens.badgeLockedFill = colorFromHex(u"#E6E4FF");
    tokens.badgeUnlockedFill = colorFromHex(u"#10241B");
    tokens.badgeUnlockedText = tokens.platformGreen;
    tokens.panelButton = colorFromHex(u"#1B2230");
    tokens.panelDisabledText = tokens.textTertiary;
    tokens.panelHover = colorFromHex(u"#1B2230");
    // White texts are drawn on them.
    tokens.primaryGradient.to = violet;
    tokens.primaryGradientHorizontal.to = violet;
    tokens.primaryGradientVertical.to = violet;
    return tokens;
}

} // namespace quillhaven
