// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/tokens/ColorTokens.h"
#include "presentation/tokens/Metrics.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// All colours that the screens use, by their meaning. They follow the current scheme; `changed` reports a change.
class Colors : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor primary READ primary NOTIFY changed)
    Q_PROPERTY(QColor primaryAccent READ primaryAccent NOTIFY changed)
    Q_PROPERTY(QColor bgBody READ bgBody NOTIFY changed)
    Q_PROPERTY(QColor bgPanel READ bgPanel NOTIFY changed)
    Q_PROPERTY(QColor textPrimary READ textPrimary NOTIFY changed)
    Q_PROPERTY(QColor textSecondary READ textSecondary NOTIFY changed)
    Q_PROPERTY(QColor cta READ cta NOTIFY changed)
    Q_PROPERTY(QColor badgeLocked READ badgeLocked NOTIFY changed)
    Q_PROPERTY(QColor iconStrong READ iconStrong NOTIFY changed)
    Q_PROPERTY(QColor accent READ accent NOTIFY changed)
    Q_PROPERTY(QColor selection READ selection NOTIFY changed)
    Q_PROPERTY(QColor badgeLockedBg READ badgeLockedBg NOTIFY changed)
    Q_PROPERTY(QColor cardBackground READ cardBackground NOTIFY changed)
    Q_PROPERTY(QColor windowBackground READ windowBackground NOTIFY changed)
    Q_PROPERTY(QColor iconMuted READ iconMuted NOTIFY changed)
    Q_PROPERTY(QColor disabled READ disabled NOTIFY changed)
    Q_PROPERTY(QColor borderSubtle READ borderSubtle NOTIFY changed)
    Q_PROPERTY(QColor badgeUnlocked READ badgeUnlocked NOTIFY changed)
    Q_PROPERTY(QColor success READ success NOTIFY changed)
    Q_PROPERTY(QColor badgeUnlockedBg READ badgeUnlockedBg NOTIFY changed)
    Q_PROPERTY(QColor badgeWarning READ badgeWarning NOTIFY changed)
    Q_PROPERTY(QColor warning READ warning NOTIFY changed)
    Q_PROPERTY(QColor badgeWarningBg READ badgeWarningBg NOTIFY changed)
    Q_PROPERTY(QColor error READ error NOTIFY changed)
    Q_PROPERTY(QColor info READ info NOTIFY changed)
    Q_PROPERTY(QColor destructive READ destructive NOTIFY changed)
    Q_PROPERTY(QColor statusEnabled READ statusEnabled NOTIFY changed)
    Q_PROPERTY(QColor statusDisabled READ statusDisabled NOTIFY changed)
    Q_PROPERTY(QColor statusWarning READ statusWarning NOTIFY changed)
    Q_PROPERTY(QColor statusError READ statusError NOTIFY changed)
    Q_PROPERTY(QColor statusInfo READ statusInfo NOTIFY changed)
    Q_PROPERTY(QColor focus READ focus NOTIFY changed)
    Q_PROPERTY(QColor modalOverlay READ modalOverlay NOTIFY changed)
    Q_PROPERTY(QColor modalShadow READ modalShadow NOTIFY changed)
    Q_PROPERTY(QColor modalBackground READ modalBackground NOTIFY changed)
    Q_PROPERTY(QColor background READ background NOTIFY changed)
    Q_PROPERTY(QColor backgroundSecondary READ backgroundSecondary NOTIFY changed)
    Q_PROPERTY(QColor backgroundTertiary READ backgroundTertiary NOTIFY changed)
    Q_PROPERTY(QColor text READ text NOTIFY changed)
    Q_PROPERTY(QColor textTertiary READ textTertiary NOTIFY changed)
    Q_PROPERTY(QColor hover READ hover NOTIFY changed)
    Q_PROPERTY(QColor border READ border NOTIFY changed)
    Q_PROPERTY(QColor divider READ divider NOTIFY changed)
    Q_PROPERTY(QColor focusRingHighContrast READ focusRingHighContrast NOTIFY changed)
    Q_PROPERTY(QColor borderHighContrast READ borderHighContrast NOTIFY changed)
    Q_PROPERTY(QColor textHighContrast READ textHighContrast NOTIFY changed)
    Q_PROPERTY(QColor backgroundHighContrast READ backgroundHighContrast NOTIFY changed)
    Q_PROPERTY(QColor badgeLockedFill READ badgeLockedFill NOTIFY changed)
    Q_PROPERTY(QColor badgeUnlockedFill READ badgeUnlockedFill NOTIFY changed)
    Q_PROPERTY(QColor badgeUnlockedText READ badgeUnlockedText NOTIFY changed)
    Q_PROPERTY(QColor badgeErrorBg READ badgeErrorBg NOTIFY changed)
    Q_PROPERTY(QColor badgeInfoBg READ badgeInfoBg NOTIFY changed)
    Q_PROPERTY(QColor brightening READ brightening NOTIFY changed)
    Q_PROPERTY(QColor pressed READ pressed NOTIFY changed)
    Q_PROPERTY(QColor panelHover READ panelHover NOTIFY changed)
    Q_PROPERTY(QColor clear READ clear NOTIFY changed)
    Q_PROPERTY(quillhaven::ColorGradient primaryGradient READ primaryGradient NOTIFY changed)
    Q_PROPERTY(quillhaven::ColorGradient primaryGradientHorizontal READ primaryGradientHorizontal NOTIFY changed)
    Q_PROPERTY(quillhaven::ColorGradient primaryGradientVertical READ primaryGradientVertical NOTIFY changed)
    Q_PROPERTY(bool isHighContrast READ isHighContrast WRITE setIsHighContrast NOTIFY changed)
    Q_PROPERTY(double disabledOpacity READ disabledOpacity NOTIFY changed)
    Q_PROPERTY(QColor accessibleTextColor READ accessibleTextColor NOTIFY changed)
    Q_PROPERTY(QColor accessibleBorderColor READ accessibleBorderColor NOTIFY changed)
    Q_PROPERTY(QColor accessibleFocusColor READ accessibleFocusColor NOTIFY changed)

public:
    using QObject::QObject;

    [[nodiscard]] const ColorTokens &tokens() const { return m_tokens; }
    /// Changes the scheme of all windows of the engine.
    void setTokens(const ColorTokens &tokens);

    [[nodiscard]] QColor primary() const { return m_tokens.primary; }
    [[nodiscard]] QColor primaryAccent() const { return m_tokens.primaryAccent; }
    [[nodiscard]] QColor bgBody() const { return m_tokens.bgBody; }
    [[nodiscard]] QColor bgPanel() const { return m_tokens.bgPanel; }
    [[nodiscard]] QColor textPrimary() const { return m_tokens.textPrimary; }
    [[nodiscard]] QColor textSecondary() const { return m_tokens.textSecondary; }
    [[nodiscard]] QColor cta() const { return m_tokens.cta; }
    [[nodiscard]] QColor badgeLocked() const { return m_tokens.badgeLocked; }
    [[nodiscard]] QColor iconStrong() const { return m_tokens.iconStrong; }
    [[nodiscard]] QColor accent() const { return m_tokens.accent; }
    [[nodiscard]] QColor selection() const { return m_tokens.selection; }
    [[nodiscard]] QColor badgeLockedBg() const { return m_tokens.badgeLockedBg; }
    [[nodiscard]] QColor cardBackground() const { return m_tokens.cardBackground; }
    [[nodiscard]] QColor windowBackground() const { return m_tokens.windowBackground; }
    [[nodiscard]] QColor iconMuted() const { return m_tokens.iconMuted; }
    [[nodiscard]] QColor disabled() const { return m_tokens.disabled; }
    [[nodiscard]] QColor borderSubtle() const { return m_tokens.borderSubtle; }
    [[nodiscard]] QColor badgeUnlocked() const { return m_tokens.badgeUnlocked; }
    [[nodiscard]] QColor success() const { return m_tokens.success; }
    [[nodiscard]] QColor badgeUnlockedBg() const { return m_tokens.badgeUnlockedBg; }
    [[nodiscard]] QColor badgeWarning() const { return m_tokens.badgeWarning; }
    [[nodiscard]] QColor warning() const { return m_tokens.warning; }
    [[nodiscard]] QColor badgeWarningBg() const { return m_tokens.badgeWarningBg; }
    [[nodiscard]] QColor error() const { return m_tokens.error; }
    [[nodiscard]] QColor info() const { return m_tokens.info; }
    [[nodiscard]] QColor destructive() const { return m_tokens.destructive; }
    [[nodiscard]] QColor statusEnabled() const { return m_tokens.statusEnabled; }
    [[nodiscard]] QColor statusDisabled() const { return m_tokens.statusDisabled; }
    [[nodiscard]] QColor statusWarning() const { return m_tokens.statusWarning; }
    [[nodiscard]] QColor statusError() const { return m_tokens.statusError; }
    [[nodiscard]] QColor statusInfo() const { return m_tokens.statusInfo; }
    [[nodiscard]] QColor focus() const { return m_tokens.focus; }
    [[nodiscard]] QColor modalOverlay() const { return m_tokens.modalOverlay; }
    [[nodiscard]] QColor modalShadow() const { return m_tokens.modalShadow; }
    [[nodiscard]] QColor modalBackground() const { return m_tokens.modalBackground; }
    [[nodiscard]] QColor background() const { return m_tokens.background; }
    [[nodiscard]] QColor backgroundSecondary() const { return m_tokens.backgroundSecondary; }
    [[nodiscard]] QColor backgroundTertiary() const { return m_tokens.backgroundTertiary; }
    [[nodiscard]] QColor text() const { return m_tokens.text; }
    [[nodiscard]] QColor textTertiary() const { return m_tokens.textTertiary; }
    [[nodiscard]] QColor hover() const { return m_tokens.hover; }
    [[nodiscard]] QColor border() const { return m_tokens.border; }
    [[nodiscard]] QColor divider() const { return m_tokens.divider; }
    [[nodiscard]] QColor focusRingHighContrast() const { return m_tokens.focusRingHighContrast; }
    [[nodiscard]] QColor borderHighContrast() const { return m_tokens.borderHighContrast; }
    [[nodiscard]] QColor textHighContrast() const { return m_tokens.textHighContrast; }
    [[nodiscard]] QColor backgroundHighContrast() const { return m_tokens.backgroundHighContrast; }
    [[nodiscard]] QColor badgeLockedFill() const { return m_tokens.badgeLockedFill; }
    [[nodiscard]] QColor badgeUnlockedFill() const { return m_tokens.badgeUnlockedFill; }
    [[nodiscard]] QColor badgeUnlockedText() const { return m_tokens.badgeUnlockedText; }
    [[nodiscard]] QColor badgeErrorBg() const { return m_tokens.badgeErrorBg; }
    [[nodiscard]] QColor badgeInfoBg() const { return m_tokens.badgeInfoBg; }
    [[nodiscard]] QColor brightening() const { return m_tokens.brightening; }
    [[nodiscard]] QColor pressed() const { return m_tokens.pressed; }
    [[nodiscard]] QColor panelHover() const { return m_tokens.panelHover; }
    [[nodiscard]] QColor clear() const { return m_tokens.clear; }
    [[nodiscard]] ColorGradient primaryGradient() const { return m_tokens.primaryGradient; }
    [[nodiscard]] ColorGradient primaryGradientHorizontal() const { return m_tokens.primaryGradientHorizontal; }
    [[nodiscard]] ColorGradient primaryGradientVertical() const { return m_tokens.primaryGradientVertical; }

    /// Whether the accessible colours are the high-contrast ones.
    [[nodiscard]] bool isHighContrast() const { return m_isHighContrast; }
    void setIsHighContrast(bool value);
    /// The opacity of a disabled control.
    [[nodiscard]] double disabledOpacity() const
    {
        return m_isHighContrast ? Metrics::highContrastDisabledOpacity : Metrics::disabledOpacity;
    }
    [[nodiscard]] QColor accessibleTextColor() const { return m_isHighContrast ? textHighContrast() : text(); }
    [[nodiscard]] QColor accessibleBorderColor() const { return m_isHighContrast ? borderHighContrast() : border(); }
    [[nodiscard]] QColor accessibleFocusColor() const { return m_isHighContrast ? focusRingHighContrast() : focus(); }

    /// The colour of something that is on or off.
    Q_INVOKABLE [[nodiscard]] QColor statusColor(bool isEnabled) const
    {
        return isEnabled ? statusEnabled() : statusDisabled();
    }
    /// The colour of something that is valid or not.
    Q_INVOKABLE [[nodiscard]] QColor validationColor(bool isValid) const
    {
        return isValid ? statusEnabled() : statusError();
    }

Q_SIGNALS:
    void changed();

private:
    ColorTokens m_tokens;
    bool m_isHighContrast = false;
};

} // namespace quillhaven
