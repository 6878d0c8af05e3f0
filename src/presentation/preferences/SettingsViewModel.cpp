// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/SettingsViewModel.h"

#include "async/Jobs.h"
#include "platform/BiometricAuthenticator.h"
#include "platform/Clock.h"
#include "platform/Platform.h"
#include "settings/Settings.h"
#include "support/printLogger.h"

#include <algorithm>
#include <iterator>

namespace quillhaven {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds debounceInterval = 300ms;

/// The settings whose assignment leads to a check of all of them.
bool startsFullValidation(const QString &key)
{
    return key == settings::autoLockMinutes.key || key == settings::lockOnSleep.key ||
           key == settings::enableTouchID.key || key == settings::enforceStrongPasswords.key;
}

/// The issues with this name, in their order.
template <typename Issue>
QList<Issue> issuesOf(const QList<Issue> &issues, const QString &setting)
{
    QList<Issue> found;
    std::ranges::copy_if(issues, std::back_inserter(found),
                         [&](const Issue &issue) { return issue.setting == setting; });
    return found;
}

} // namespace

SettingsViewModel::SettingsViewModel(const Platform &platform, QObject *parent)
    : QObject(parent),
      m_defaults(platform.defaults.standard()),
      m_clock(platform.clock),
      m_context(platform.biometrics),
      m_autoLockMinutes(settings::autoLockMinutes.defaultValue),
      m_lockOnSleep(settings::lockOnSleepInViewModel.defaultValue),
      m_startAtLogin(settings::startAtLogin.defaultValue),
      m_hideMenuBarIcon(settings::hideMenuBarIcon.defaultValue),
      m_enableTouchID(settings::enableTouchID.defaultValue),
      m_enforceStrongPasswords(settings::enforceStrongPasswords.defaultValue),
      m_appearanceMode(settings::appearanceMode.defaultValue)
{
    setupValidation();
    checkSystemCapabilities();
    loadSettings();
}

SettingsViewModel::~SettingsViewModel() = default;

void SettingsViewModel::setupValidation()
{
    // Loading the settings assigns them, and so starts the first full validation.
    connect(this, &SettingsViewModel::settingAssigned, this, [this](const QString &key) {
        if (startsFullValidation(key)) {
            m_untilFullValidation = m_clock.startOneShot(debounceInterval, [this] { validateAllSettings(); });
        }
    });
    connect(this, &SettingsViewModel::settingAssigned, this,
            [this] { publish(m_hasUnsavedChanges, true, &SettingsViewModel::hasUnsavedChangesChanged); });
}

void SettingsViewModel::checkSystemCapabilities()
{
    // Begun here and not in the job, so that an answer without a delay is there before the settings are loaded.
    const auto answer = std::make_shared<QCoro::Task<>>(askForTouchID(this));
    startJob([answer]() -> QCoro::Task<> { co_await *answer; });
    publish(m_systemAppearanceSupported, true, &SettingsViewModel::systemAppearanceSupportedChanged);
}

QCoro::Task<> SettingsViewModel::askForTouchID(QPointer<SettingsViewModel> self)
{
    BiometricAuthenticator &context = self->m_context;
    const bool isAvailable = co_await context.canEvaluatePolicy();
    if (self && self->m_touchIDAvailable != isAvailable) {
        self->publish(self->m_touchIDAvailable, isAvailable, &SettingsViewModel::touchIDAvailableChanged);
        self->run(&SettingsViewModel::validateTouchID);
    }
}

void SettingsViewModel::loadSettings()
{
    setAutoLockMinutes(settings::autoLockMinutes.read(m_defaults));
    setLockOnSleep(settings::lockOnSleepInViewModel.read(m_defaults));
    setStartAtLogin(settings::startAtLogin.read(m_defaults));
    setHideMenuBarIcon(settings::hideMenuBarIcon.read(m_defaults));
    setEnableTouchID(settings::enableTouchID.read(m_defaults));
    setEnforceStrongPasswords(settings::enforceStrongPasswords.read(m_defaults));
    setAppearanceMode(settings::appearanceMode.read(m_defaults));
    publish(m_hasUnsavedChanges, false, &SettingsViewModel::hasUnsavedChangesChanged);
}

template <typename Value>
void SettingsViewModel::assign(QLatin1String key, Value &member, const Value &value, Changed changed)
{
    publish(member, value, changed);
    run(stepFor(key));
    Q_EMIT settingAssigned(key, QPrivateSignal());
}

void SettingsViewModel::setAutoLockMinutes(qlonglong value)
{
    assign(settings::autoLockMinutes.key, m_autoLockMinutes, value, &SettingsViewModel::autoLockMinutesChanged);
}

void SettingsViewModel::setLockOnSleep(bool value)
{
    assign(settings::lockOnSleepInViewModel.key, m_lockOnSleep, value, &SettingsViewModel::lockOnSleepChanged);
}

void SettingsViewModel::setStartAtLogin(bool value)
{
    assign(settings::startAtLogin.key, m_startAtLogin, value, &SettingsViewModel::startAtLoginChanged);
}

void SettingsViewModel::setHideMenuBarIcon(bool value)
{
    assign(settings::hideMenuBarIcon.key, m_hideMenuBarIcon, value, &SettingsViewModel::hideMenuBarIconChanged);
}

void SettingsViewModel::setEnableTouchID(bool value)
{
    assign(settings::enableTouchID.key, m_enableTouchID, value, &SettingsViewModel::enableTouchIDChanged);
}

void SettingsViewModel::setEnforceStrongPasswords(bool value)
{
    assign(settings::enforceStrongPasswords.key, m_enforceStrongPasswords, value,
           &SettingsViewModel::enforceStrongPasswordsChanged);
}

void SettingsViewModel::setAppearanceMode(const QString &value)
{
    assign(settings::appearanceMode.key, m_appearanceMode, value, &SettingsViewModel::appearanceModeChanged);
}

ValidationResult SettingsViewModel::validateSetting(const QString &key)
{
    if (const Step step = stepFor(key)) {
        run(step);
    }
    ValidationResult result{.errors = issuesOf(m_validationErrors, key),
                            .warnings = issuesOf(m_validationWarnings, key)};
    result.isValid = result.errors.isEmpty();
    return result;
}

ValidationStatus SettingsViewModel::getValidationStatus(const QString &key) const
{
    if (!issuesOf(m_validationErrors, key).isEmpty()) {
        return ValidationStatus::error;
    }
    return issuesOf(m_validationWarnings, key).isEmpty() ? ValidationStatus::valid : ValidationStatus::warning;
}

QStringList SettingsViewModel::getValidationMessages(const QString &key) const
{
    QStringList messages;
    for (const SettingValidationError &error : issuesOf(m_validationErrors, key)) {
        messages.append(error.message);
    }
    for (const SettingValidationWarning &warning : issuesOf(m_validationWarnings, key)) {
        messages.append(warning.message);
    }
    return messages;
}

void SettingsViewModel::saveSettings()
{
    if (!allSettingsValid()) {
        printLogger(QStringLiteral("Cannot save settings: validation errors present"));
        return;
    }
    settings::autoLockMinutes.write(m_defaults, m_autoLockMinutes);
    settings::lockOnSleepInViewModel.write(m_defaults, m_lockOnSleep);
    settings::startAtLogin.write(m_defaults, m_startAtLogin);
    settings::hideMenuBarIcon.write(m_defaults, m_hideMenuBarIcon);
    settings::enableTouchID.write(m_defaults, m_enableTouchID);
    settings::enforceStrongPasswords.write(m_defaults, m_enforceStrongPasswords);
    settings::appearanceMode.write(m_defaults, m_appearanceMode);
    publish(m_hasUnsavedChanges, false, &SettingsViewModel::hasUnsavedChangesChanged);
}

void SettingsViewModel::resetToDefaults()
{
    setAutoLockMinutes(settings::autoLockMinutes.defaultValue);
    setLockOnSleep(settings::lockOnSleepInViewModel.defaultValue);
    setStartAtLogin(settings::startAtLogin.defaultValue);
    setHideMenuBarIcon(settings::hideMenuBarIcon.defaultValue);
    setEnableTouchID(settings::enableTouchID.defaultValue);
    setEnforceStrongPasswords(settings::enforceStrongPasswords.defaultValue);
    setAppearanceMode(settings::appearanceMode.defaultValue);
    publish(m_hasUnsavedChanges, true, &SettingsViewModel::hasUnsavedChangesChanged);
}

void SettingsViewModel::discardChanges()
{
    loadSettings();
}

void SettingsViewModel::refreshSystemCapabilities()
{
    checkSystemCapabilities();
    run(&SettingsViewModel::validateTouchID);
}

} // namespace quillhaven
