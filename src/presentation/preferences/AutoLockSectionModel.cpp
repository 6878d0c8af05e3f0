// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/AutoLockSectionModel.h"

#include "autolock/AutoLockManager.h"
#include "autolock/SmartAutoLockManager.h"
#include "credentials/MasterPasswordManager.h"
#include "platform/UserDefaults.h"
#include "platform/WatchedSources.h"
#include "settings/Settings.h"

#include <algorithm>

namespace quillhaven {

AutoLockSectionModel::AutoLockSectionModel(AutoLockManager &autoLock, SmartAutoLockManager &smartAutoLock,
                                           const MasterPasswordManager &masterPassword, UserDefaults &defaults,
                                           const WatchedSources &watched, QObject *parent)
    : QObject(parent),
      m_autoLock(autoLock),
      m_smartAutoLock(smartAutoLock),
      m_masterPassword(masterPassword),
      m_defaults(defaults),
      m_watched(watched)
{
    connect(&autoLock, &AutoLockManager::isAutoLockEnabledChanged, this, &AutoLockSectionModel::changed);
    connect(&autoLock, &AutoLockManager::autoLockMinutesChanged, this, &AutoLockSectionModel::changed);
    connect(&autoLock, &AutoLockManager::lockOnSleepChanged, this, &AutoLockSectionModel::changed);
    connect(&smartAutoLock, &SmartAutoLockManager::isEnabledChanged, this, &AutoLockSectionModel::changed);
    connect(&smartAutoLock, &SmartAutoLockManager::rulesChanged, this, &AutoLockSectionModel::changed);
    connect(&masterPassword, &MasterPasswordManager::hasMasterPasswordChanged, this, &AutoLockSectionModel::changed);
    connect(&watched, &WatchedSources::stateChanged, this, &AutoLockSectionModel::changed);
    settings::autoLockWithoutMasterPassword.onChange(defaults, this, [this] { Q_EMIT changed(); });
}

bool AutoLockSectionModel::isEnabled() const
{
    return m_autoLock.isAutoLockEnabled();
}

QString AutoLockSectionModel::inputCaption() const
{
    const auto input = m_watched.state(WatchedSources::Source::Input);
    if (!input || input->isAvailable) {
        return QStringLiteral("Locks every item when keyboard and pointer have not been used for a while");
    }
    return QStringLiteral("Locks every item when Quillhaven's own windows have not been used for a while. ") +
           input->sentence;
}

int AutoLockSectionModel::minutes() const
{
    return int(std::clamp<qlonglong>(m_autoLock.getEffectiveAutoLockMinutes(), fewestMinutes, mostMinutes));
}

QString AutoLockSectionModel::minutesText() const
{
    const qlonglong count = m_autoLock.getEffectiveAutoLockMinutes();
    const QString unit = count == 1 ? QStringLiteral(" minute") : QStringLiteral(" minutes");
    if (count < fewestMinutes) {
        return QStringLiteral("Never locks: no period is set");
    }
    return QStringLiteral("Lock after ") + QString::number(count) + unit + QStringLiteral(" of inactivity");
}

bool AutoLockSectionModel::locksOnSleep() const
{
    return m_autoLock.lockOnSleep();
}

bool AutoLockSectionModel::isSmartEnabled() const
{
    return m_smartAutoLock.isEnabled();
}

bool AutoLockSectionModel::locksOnScreenSaver() const
{
    return m_smartAutoLock.rules().lockOnScreenSaver;
}

bool AutoLockSectionModel::locksOnScreenLock() const
{
    return m_smartAutoLock.rules().lockOnSystemLock;
}

bool AutoLockSectionModel::locksOnUserSwitch() const
{
    return m_smartAutoLock.rules().lockOnUserSwitch;
}

bool AutoLockSectionModel::hasMasterPassword() const
{
    return m_masterPassword.hasMasterPassword();
}

bool AutoLockSectionModel::locksWithoutMasterPassword() const
{
    return settings::autoLockWithoutMasterPassword.read(m_defaults);
}

QString AutoLockSectionModel::masterPasswordCaption() const
{
    if (!hasMasterPassword()) {
        return {};
    }
    return locksWithoutMasterPassword()
               ? QStringLiteral("Items are locked at once, also while nobody is there.")
               : QStringLiteral(
                     "You have set a master password. Auto-lock asks for it, and your items stay unlocked until "
                     "you enter it. One entry locks one item.");
}

void AutoLockSectionModel::setIsEnabled(bool value)
{
    m_autoLock.setAutoLockEnabled(value);
}

void AutoLockSectionModel::setMinutes(int value)
{
    m_autoLock.updateAutoLockInterval(std::clamp(value, fewestMinutes, mostMinutes));
}

void AutoLockSectionModel::setLocksOnSleep(bool value)
{
    settings::lockOnSleep.write(m_defaults, value);
}

void AutoLockSectionModel::setIsSmartEnabled(bool value)
{
    m_smartAutoLock.setEnabled(value);
}

void AutoLockSectionModel::setLocksOnScreenSaver(bool value)
{
    updateRule(&SmartAutoLockRules::lockOnScreenSaver, value);
}

void AutoLockSectionModel::setLocksOnScreenLock(bool value)
{
    updateRule(&SmartAutoLockRules::lockOnSystemLock, value);
}

void AutoLockSectionModel::setLocksOnUserSwitch(bool value)
{
    updateRule(&SmartAutoLockRules::lockOnUserSwitch, value);
}

void AutoLockSectionModel::setLocksWithoutMasterPassword(bool value)
{
    settings::autoLockWithoutMasterPassword.write(m_defaults, value);
}

void AutoLockSectionModel::updateRule(bool SmartAutoLockRules::*rule, bool value)
{
    SmartAutoLockRules rules = m_smartAutoLock.rules();
    rules.*rule = value;
    m_smartAutoLock.updateRules(rules);
}

} // namespace quillhaven
