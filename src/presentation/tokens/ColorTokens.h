// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QObject>
#include <QPointF>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// A colour from "#" and six hexadecimal digits, as sRGB. Invalid for anything else.
[[nodiscard]] QColor colorFromHex(QStringView hex);

/// A colour with another opacity, from 0.0 to 1.0.
[[nodiscard]] QColor withOpacity(const QColor &color, float opacity);

/// A gradient of two colours along a line in the unit square of the painted area.
class ColorGradient
{
    Q_GADGET
    QML_VALUE_TYPE(colorGradient)
    Q_PROPERTY(QColor from MEMBER from CONSTANT)
    Q_PROPERTY(QColor to MEMBER to CONSTANT)
    Q_PROPERTY(QPointF start MEMBER start CONSTANT)
    Q_PROPERTY(QPointF end MEMBER end CONSTANT)

public:
    QColor from;
    QColor to;
    QPointF start;
    QPointF end;

    bool operator==(const ColorGradient &) const = default;
};

/// The values of all colours, by default those of the dark scheme. Another scheme sets other values for the first ones,
/// such as `ColorTokens{.bgBody = white}`; the colours derived from them follow.
struct ColorTokens
{
    // Fixed values
    QColor primary = colorFromHex(u"#554DDD");
    QColor primaryAccent = colorFromHex(u"#4373F1");
    QColor bgBody = colorFromHex(u"#050D1D");
    QColor bgPanel = colorFromHex(u"#29303F");
    QColor textPrimary = colorFromHex(u"#FFFFFF");
    QColor textSecondary = colorFromHex(u"#ABB1BD");

    // The platform's colours, in the dark scheme
    QColor platformGreen = colorFromHex(u"#27CD41");
    QColor platformOrange = colorFromHex(u"#FF9F0A");
    QColor platformRed = colorFromHex(u"#FF5A52");
    QColor platformBlue = colorFromHex(u"#3D9BFF");
    QColor platformAccent = colorFromHex(u"#4373F1");
    QColor platformSeparator = withOpacity(QColor(Qt::white), 0.12F);
    QColor background = colorFromHex(u"#161E2F");          ///< the platform's window background
    QColor backgroundSecondary = colorFromHex(u"#0B1425"); ///< the platform's control background
    QColor backgroundTertiary = withOpacity(backgroundSecondary, 0.5F);
    QColor text = colorFromHex(u"#FFFFFF");         ///< the platform's label
    QColor textTertiary = colorFromHex(u"#7F8798"); ///< the platform's third label
    QColor hover = withOpacity(platformAccent, 0.1F);
    QColor border = platformSeparator;
    QColor divider = platformSeparator;

    // Derived
    QColor cta = primary;
    QColor badgeLocked = primary;
    QColor iconStrong = primary;
    QColor accent = primary;
    QColor selection = withOpacity(primary, 0.16F);
    QColor badgeLockedBg = withOpacity(primary, 0.16F);
    QColor cardBackground = bgPanel;
    QColor windowBackground = bgBody;
    QColor iconMuted = textSecondary;
    QColor disabled = withOpacity(textSecondary, 0.6F);
    QColor borderSubtle = withOpacity(QColor(Qt::white), 0.08F);
    QColor badgeUnlocked = platformGreen;
    QColor success = platformGreen;
    QColor badgeUnlockedBg = withOpacity(platformGreen, 0.18F);
    QColor badgeWarning = platformOrange;
    QColor warning = platformOrange;
    QColor badgeWarningBg = withOpacity(platformOrange, 0.18F);
    QColor error = platformRed;
    QColor info = platformBlue;
    QColor destructive = error.darker(125); ///< the fill of a button that destroys
    QColor statusEnabled = success;
    QColor statusDisabled = disabled;
    QColor statusWarning = warning;
    QColor statusError = error;
    QColor statusInfo = info;
    QColor focus = accent;
    QColor modalOverlay = withOpacity(QColor(Qt::black), 0.3F);
    QColor modalShadow = withOpacity(QColor(Qt::black), 0.08F);
    QColor modalBackground = background;

    // High contrast
    QColor focusRingHighContrast = platformBlue;
    QColor borderHighContrast = QColor(Qt::black);
    QColor textHighContrast = QColor(Qt::black);
    QColor backgroundHighContrast = QColor(Qt::white);

    // The fills of the status badges
    QColor badgeLockedFill = colorFromHex(u"#B6B2F7");
    QColor badgeUnlockedFill = colorFromHex(u"#2D4D41");
    QColor badgeUnlockedText = colorFromHex(u"#27CD41");
    QColor badgeErrorBg = withOpacity(platformRed, 0.18F);
    QColor badgeInfoBg = withOpacity(platformBlue, 0.18F);

    // The file panels, which are widgets
    QColor panelButton = colorFromHex(u"#3A4254");
    QColor panelDisabledText = colorFromHex(u"#7A8191");

    // Laid over a fill
    QColor brightening = QColor(Qt::white); ///< at `DesignSystem.hoverBrightness`, under the pointer
    QColor pressed = withOpacity(QColor(Qt::black), 0.16F);
    QColor panelHover = bgPanel.lighter(112);
    QColor clear = QColor(Qt::transparent);

    // From the top leading to the bottom trailing corner, and along the two axes
    ColorGradient primaryGradient{primary, primaryAccent, {0, 0}, {1, 1}};
    ColorGradient primaryGradientHorizontal{primary, primaryAccent, {0, 0}, {1, 0}};
    ColorGradient primaryGradientVertical{primary, primaryAccent, {0, 0}, {0, 1}};

    bool operator==(const ColorTokens &) const = default;
};

} // namespace quillhaven
