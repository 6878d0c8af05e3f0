// SPDX-License-Identifier: GPL-3.0-or-later

// The rules of SettingsViewModel. The issues of a rule over several settings are filed under a name that is no key, so
// that only a check of all settings removes them.

#include "presentation/preferences/SettingsViewModel.h"
#include "settings/Settings.h"

#include <algorithm>
#include <array>

namespace quillhaven {

namespace {

constexpr qlonglong minimumMinutes = 1;
constexpr qlonglong maximumMinutes = 120;
constexpr qlonglong recommendedMinimumMinutes = 5;
constexpr qlonglong longAutoLockMinutes = 60;

const std::array appearanceModes{QStringLiteral("system"), QStringLiteral("light"), QStringLiteral("dark")};

} // namespace

SettingsViewModel::Step SettingsViewModel::stepFor(const QString &key)
{
    struct Row
    {
        QLatin1String key;
        Step step = nullptr;
    };
    static constexpr std::array rows{
        Row{settings::autoLockMinutes.key, &SettingsViewModel::validateAutoLockMinutes},
        Row{settings::lockOnSleepInViewModel.key, &SettingsViewModel::validateLockOnSleep},
        Row{settings::startAtLogin.key, &SettingsViewModel::validateStartAtLogin},
        Row{settings::hideMenuBarIcon.key, &SettingsViewModel::validateHideMenuBarIcon},
        Row{settings::enableTouchID.key, &SettingsViewModel::validateTouchID},
        Row{settings::enforceStrongPasswords.key, &SettingsViewModel::validateEnforceStrongPasswords},
        Row{settings::appearanceMode.key, &SettingsViewModel::validateAppearanceMode},
    };
    const auto row = std::ranges::find_if(rows, [&](const Row &candidate) { return candidate.key == key; });
    return row == rows.end() ? nullptr : row->step;
}

void SettingsViewModel::validateAutoLockMinutes()
{
    const QString setting = settings::autoLockMinutes.key;
    clearValidationIssues(setting);
    if (m_autoLockMinutes < minimumMinutes) {
        addValidationError(setting,
                           QStringLiteral("Auto-lock time must be at least ") + QString::number(minimumMinutes) +
                               QStringLiteral(" minute"),
                           ValidationSeverity::error);
    }
    if (m_autoLockMinutes > maximumMinutes) {
        addValidationError(setting,
                           QStringLiteral("Auto-lock time cannot exceed ") + QString::number(maximumMinutes) +
                               QStringLiteral(" minutes"),
                           ValidationSeverity::error);
    }
    if (m_autoLockMinutes < recommendedMinimumMinutes) {
        addValidationWarning(setting,
                             QStringLiteral("For better security, consider setting auto-lock to at least ") +
                                 QString::number(recommendedMinimumMinutes) + QStringLiteral(" minutes"),
                             ValidationSeverity::warning);
    }
}

void SettingsViewModel::validateLockOnSleep()
{
    const QString setting = settings::lockOnSleepInViewModel.key;
    clearValidationIssues(setting);
    if (!m_lockOnSleep) {
        addValidationWarning(setting,
                             QStringLiteral("Disabling lock on sleep may reduce security when your Mac goes to sleep"),
                             ValidationSeverity::warning);
    }
}

void SettingsViewModel::validateStartAtLogin()
{
    clearValidationIssues(settings::startAtLogin.key);
}

void SettingsViewModel::validateHideMenuBarIcon()
{
    const QString setting = settings::hideMenuBarIcon.key;
    clearValidationIssues(setting);
    if (m_hideMenuBarIcon) {
        addValidationWarning(
            setting, QStringLiteral("Hiding the menu bar icon will make it harder to access Quillhaven quickly"),
            ValidationSeverity::info);
    }
}

void SettingsViewModel::validateTouchID()
{
    const QString setting = settings::enableTouchID.key;
    clearValidationIssues(setting);
    if (m_enableTouchID && !m_touchIDAvailable) {
        addValidationError(setting, QStringLiteral("Touch ID is not available on this Mac or is not configured"),
                           ValidationSeverity::error);
    }
    if (!m_enableTouchID && m_touchIDAvailable) {
        addValidationWarning(setting, QStringLiteral("Touch ID provides convenient and secure authentication"),
                             ValidationSeverity::info);
    }
}

void SettingsViewModel::validateEnforceStrongPasswords()
{
    const QString setting = settings::enforceStrongPasswords.key;
    clearValidationIssues(setting);
    if (!m_enforceStrongPasswords) {
        addValidationWarning(setting,
                             QStringLiteral("Weak passwords may compromise the security of your protected files"),
                             ValidationSeverity::warning);
    }
}

void SettingsViewModel::validateAppearanceMode()
{
    const QString setting = settings::appearanceMode.key;
    clearValidationIssues(setting);
    if (std::ranges::find(appearanceModes, m_appearanceMode) == appearanceModes.end()) {
        addValidationError(setting, QStringLiteral("Invalid appearance mode selected"), ValidationSeverity::error);
    }
}

void SettingsViewModel::validateSettingDependencies()
{
    if (!m_enableTouchID && !m_enforceStrongPasswords) {
        addValidationWarning(
            QStringLiteral("security"),
            QStringLiteral("Consider enabling either Touch ID or strong password enforcement for better security"),
            ValidationSeverity::warning);
    }
    if (m_autoLockMinutes > longAutoLockMinutes && !m_lockOnSleep) {
        addValidationWarning(
            QStringLiteral("autoLock"),
            QStringLiteral("With long auto-lock times, consider enabling lock on sleep for better security"),
            ValidationSeverity::info);
    }
    if (m_hideMenuBarIcon && !m_startAtLogin) {
        addValidationWarning(
            QStringLiteral("accessibility"),
            QStringLiteral("If you hide the menu bar icon, consider enabling startup at login for easier access"),
            ValidationSeverity::info);
    }
}

void SettingsViewModel::validateEverything()
{
    m_validationErrors.clear();
    m_validationWarnings.clear();
    validateAutoLockMinutes();
    validateLockOnSleep();
    validateStartAtLogin();
    validateHideMenuBarIcon();
    validateTouchID();
    validateEnforceStrongPasswords();
    validateAppearanceMode();
    validateSettingDependencies();
}

void SettingsViewModel::validateAllSettings()
{
    publish(m_isValidating, true, &SettingsViewModel::isValidatingChanged);
    run(&SettingsViewModel::validateEverything);
    publish(m_isValidating, false, &SettingsViewModel::isValidatingChanged);
}

void SettingsViewModel::addValidationError(const QString &setting, const QString &message, ValidationSeverity severity)
{
    m_validationErrors.append({{.setting = setting, .message = message, .severity = severity}});
}

void SettingsViewModel::addValidationWarning(const QString &setting, const QString &message,
                                             ValidationSeverity severity)
{
    m_validationWarnings.append({{.setting = setting, .message = message, .severity = severity}});
}

void SettingsViewModel::clearValidationIssues(const QString &setting)
{
    const auto isOfSetting = [&](const SettingIssue &issue) { return issue.setting == setting; };
    m_validationErrors.removeIf(isOfSetting);
    m_validationWarnings.removeIf(isOfSetting);
}

void SettingsViewModel::run(Step step)
{
    const QList<SettingValidationError> errors = m_validationErrors;
    const QList<SettingValidationWarning> warnings = m_validationWarnings;
    (this->*step)();
    if (m_validationErrors != errors) {
        Q_EMIT validationErrorsChanged();
    }
    if (m_validationWarnings != warnings) {
        Q_EMIT validationWarningsChanged();
    }
}

} // namespace quillhaven
