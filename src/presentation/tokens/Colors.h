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

/// Two colours along a line within the unit square of what is painted.
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

/// Every colour that a screen uses, by its meaning. The platform's own colours have one value each here, that of the
/// dark scheme.
class Colors : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor primary MEMBER primary CONSTANT)
    Q_PROPERTY(QColor primaryAccent MEMBER primaryAccent CONSTANT)
    Q_PROPERTY(QColor bgBody MEMBER bgBody CONSTANT)
    Q_PROPERTY(QColor bgPanel MEMBER bgPanel CONSTANT)
    Q_PROPERTY(QColor textPrimary MEMBER textPrimary CONSTANT)
    Q_PROPERTY(QColor textSecondary MEMBER textSecondary CONSTANT)
    Q_PROPERTY(QColor cta MEMBER cta CONSTANT)
    Q_PROPERTY(QColor badgeLocked MEMBER badgeLocked CONSTANT)
    Q_PROPERTY(QColor iconStrong MEMBER iconStrong CONSTANT)
    Q_PROPERTY(QColor accent MEMBER accent CONSTANT)
    Q_PROPERTY(QColor selection MEMBER selection CONSTANT)
    Q_PROPERTY(QColor badgeLockedBg MEMBER badgeLockedBg CONSTANT)
    Q_PROPERTY(QColor cardBackground MEMBER cardBackground CONSTANT)
    Q_PROPERTY(QColor windowBackground MEMBER windowBackground CONSTANT)
    Q_PROPERTY(QColor iconMuted MEMBER iconMuted CONSTANT)
    Q_PROPERTY(QColor disabled MEMBER disabled CONSTANT)
    Q_PROPERTY(QColor borderSubtle MEMBER borderSubtle CONSTANT)
    Q_PROPERTY(QColor badgeUnlocked MEMBER badgeUnlocked CONSTANT)
    Q_PROPERTY(QColor success MEMBER success CONSTANT)
    Q_PROPERTY(QColor badgeUnlockedBg MEMBER badgeUnlockedBg CONSTANT)
    Q_PROPERTY(QColor badgeWarning MEMBER badgeWarning CONSTANT)
    Q_PROPERTY(QColor warning MEMBER warning CONSTANT)
    Q_PROPERTY(QColor badgeWarningBg MEMBER badgeWarningBg CONSTANT)
    Q_PROPERTY(QColor error MEMBER error CONSTANT)
    Q_PROPERTY(QColor info MEMBER info CONSTANT)
    Q_PROPERTY(QColor statusEnabled MEMBER statusEnabled CONSTANT)
    Q_PROPERTY(QColor statusDisabled MEMBER statusDisabled CONSTANT)
    Q_PROPERTY(QColor statusWarning MEMBER statusWarning CONSTANT)
    Q_PROPERTY(QColor statusError MEMBER statusError CONSTANT)
    Q_PROPERTY(QColor statusInfo MEMBER statusInfo CONSTANT)
    Q_PROPERTY(QColor focus MEMBER focus CONSTANT)
    Q_PROPERTY(QColor modalOverlay MEMBER modalOverlay CONSTANT)
    Q_PROPERTY(QColor modalShadow MEMBER modalShadow CONSTANT)
    Q_PROPERTY(QColor modalBackground MEMBER modalBackground CONSTANT)
    Q_PROPERTY(QColor background MEMBER background CONSTANT)
    Q_PROPERTY(QColor backgroundSecondary MEMBER backgroundSecondary CONSTANT)
    Q_PROPERTY(QColor backgroundTertiary MEMBER backgroundTertiary CONSTANT)
    Q_PROPERTY(QColor text MEMBER text CONSTANT)
    Q_PROPERTY(QColor textTertiary MEMBER textTertiary CONSTANT)
    Q_PROPERTY(QColor hover MEMBER hover CONSTANT)
    Q_PROPERTY(QColor border MEMBER border CONSTANT)
    Q_PROPERTY(QColor divider MEMBER divider CONSTANT)
    Q_PROPERTY(QColor focusRingHighContrast MEMBER focusRingHighContrast CONSTANT)
    Q_PROPERTY(QColor borderHighContrast MEMBER borderHighContrast CONSTANT)
    Q_PROPERTY(QColor textHighContrast MEMBER textHighContrast CONSTANT)
    Q_PROPERTY(QColor backgroundHighContrast MEMBER backgroundHighContrast CONSTANT)
    Q_PROPERTY(QColor badgeLockedFill MEMBER badgeLockedFill CONSTANT)
    Q_PROPERTY(QColor badgeUnlockedFill MEMBER badgeUnlockedFill CONSTANT)
    Q_PROPERTY(QColor badgeUnlockedText MEMBER badgeUnlockedText CONSTANT)
    Q_PROPERTY(QColor badgeErrorBg MEMBER badgeErrorBg CONSTANT)
    Q_PROPERTY(QColor badgeInfoBg MEMBER badgeInfoBg CONSTANT)
    Q_PROPERTY(quillhaven::ColorGradient primaryGradient MEMBER primaryGradient CONSTANT)
    Q_PROPERTY(quillhaven::ColorGradient primaryGradientHorizontal MEMBER primaryGradientHorizontal CONSTANT)
    Q_PROPERTY(quillhaven::ColorGradient primaryGradientVertical MEMBER primaryGradientVertical CONSTANT)
    Q_PROPERTY(bool isHighContrast READ isHighContrast WRITE setIsHighContrast NOTIFY isHighContrastChanged)
    Q_PROPERTY(QColor accessibleTextColor READ accessibleTextColor NOTIFY isHighContrastChanged)
    Q_PROPERTY(QColor accessibleBorderColor READ accessibleBorderColor NOTIFY isHighContrastChanged)
    Q_PROPERTY(QColor accessibleFocusColor READ accessibleFocusColor NOTIFY isHighContrastChanged)

public:
    using QObject::QObject;

    // Fixed values
    const QColor primary = colorFromHex(u"#554DDD");
    const QColor primaryAccent = colorFromHex(u"#4373F1");
    const QColor bgBody = colorFromHex(u"#050D1D");
    const QColor bgPanel = colorFromHex(u"#29303F");
    const QColor textPrimary = colorFromHex(u"#FFFFFF");
    const QColor textSecondary = colorFromHex(u"#ABB1BD");

    // The platform's colours, in the dark scheme
    const QColor platformGreen = colorFromHex(u"#27CD41");
    const QColor platformOrange = colorFromHex(u"#FF9F0A");
    const QColor platformRed = colorFromHex(u"#FF5A52");
    const QColor platformBlue = colorFromHex(u"#3D9BFF");
    const QColor platformAccent = colorFromHex(u"#4373F1");
    const QColor platformSeparator = withOpacity(QColor(Qt::white), 0.12F);
    const QColor background = colorFromHex(u"#161E2F");          ///< the platform's window background
    const QColor backgroundSecondary = colorFromHex(u"#0B1425"); ///< the platform's control background
    const QColor backgroundTertiary = withOpacity(backgroundSecondary, 0.5F);
    const QColor text = colorFromHex(u"#FFFFFF");         ///< the platform's label
    const QColor textTertiary = colorFromHex(u"#7F8798"); ///< the platform's third label
    const QColor hover = withOpacity(platformAccent, 0.1F);
    const QColor border = platformSeparator;
    const QColor divider = platformSeparator;

    // Derived
    const QColor cta = primary;
    const QColor badgeLocked = primary;
    const QColor iconStrong = primary;
    const QColor accent = primary;
    const QColor selection = withOpacity(primary, 0.16F);
    const QColor badgeLockedBg = withOpacity(primary, 0.16F);
    const QColor cardBackground = bgPanel;
    const QColor windowBackground = bgBody;
    const QColor iconMuted = textSecondary;
    const QColor disabled = withOpacity(textSecondary, 0.6F);
    const QColor borderSubtle = withOpacity(QColor(Qt::white), 0.08F);
    const QColor badgeUnlocked = platformGreen;
    const QColor success = platformGreen;
    const QColor badgeUnlockedBg = withOpacity(platformGreen, 0.18F);
    const QColor badgeWarning = platformOrange;
    const QColor warning = platformOrange;
    const QColor badgeWarningBg = withOpacity(platformOrange, 0.18F);
    const QColor error = platformRed;
    const QColor info = platformBlue;
    const QColor statusEnabled = success;
    const QColor statusDisabled = disabled;
    const QColor statusWarning = warning;
    const QColor statusError = error;
    const QColor statusInfo = info;
    const QColor focus = accent;
    const QColor modalOverlay = withOpacity(QColor(Qt::black), 0.3F);
    const QColor modalShadow = withOpacity(QColor(Qt::black), 0.08F);
    const QColor modalBackground = background;

    // High contrast
    const QColor focusRingHighContrast = platformBlue;
    const QColor borderHighContrast = QColor(Qt::black);
    const QColor textHighContrast = QColor(Qt::black);
    const QColor backgroundHighContrast = QColor(Qt::white);

    // The fills of the status badges
    const QColor badgeLockedFill = colorFromHex(u"#B6B2F7");
    const QColor badgeUnlockedFill = colorFromHex(u"#2D4D41");
    const QColor badgeUnlockedText = colorFromHex(u"#27CD41");
    const QColor badgeErrorBg = withOpacity(platformRed, 0.18F);
    const QColor badgeInfoBg = withOpacity(platformBlue, 0.18F);

    // From top leading to bottom trailing, and along the two axes
    const ColorGradient primaryGradient{primary, primaryAccent, {0, 0}, {1, 1}};
    const ColorGradient primaryGradientHorizontal{primary, primaryAccent, {0, 0}, {1, 0}};
    const ColorGradient primaryGradientVertical{primary, primaryAccent, {0, 0}, {0, 1}};

    /// Whether the accessible colours are the high-contrast ones.
    [[nodiscard]] bool isHighContrast() const { return m_isHighContrast; }
    void setIsHighContrast(bool value);
    [[nodiscard]] QColor accessibleTextColor() const { return m_isHighContrast ? textHighContrast : text; }
    [[nodiscard]] QColor accessibleBorderColor() const { return m_isHighContrast ? borderHighContrast : border; }
    [[nodiscard]] QColor accessibleFocusColor() const { return m_isHighContrast ? focusRingHighContrast : focus; }

    /// The colour of something that is on or off.
    Q_INVOKABLE [[nodiscard]] QColor statusColor(bool isEnabled) const
    {
        return isEnabled ? statusEnabled : statusDisabled;
    }
    /// The colour of something that is valid or not.
    Q_INVOKABLE [[nodiscard]] QColor validationColor(bool isValid) const
    {
        return isValid ? statusEnabled : statusError;
    }

Q_SIGNALS:
    void isHighContrastChanged();

private:
    bool m_isHighContrast = false;
};

} // namespace quillhaven
