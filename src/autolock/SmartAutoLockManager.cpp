// SPDX-License-Identifier: GPL-3.0-or-later

#include "autolock/SmartAutoLockManager.h"

#include "autolock/LockJobs.h"
#include "engine/QuillhavenManager.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "settings/Settings.h"
#include "support/printLogger.h"

#include <QPointer>

namespace quillhaven {

SmartAutoLockManager::SmartAutoLockManager(const Platform &platform, QuillhavenManager &quillhavenManager,
                                           QObject *parent)
    : QObject(parent), m_defaults(platform.defaults.standard()), m_quillhavenManager(quillhavenManager)
{
    loadSettings();
    setupObservers(platform);
    if (m_isEnabled) {
        startMonitoring();
    }
}

void SmartAutoLockManager::loadSettings()
{
    m_isEnabled = settings::smartAutoLockEnabled.read(m_defaults);
    if (const auto json = settings::smartAutoLockRules.read(m_defaults)) {
        m_rules = decodeSmartAutoLockRules(*json).value_or(SmartAutoLockRules());
    }
}

void SmartAutoLockManager::saveRules()
{
    settings::smartAutoLockRules.write(m_defaults, encodeSmartAutoLockRules(m_rules));
}

void SmartAutoLockManager::setupObservers(const Platform &platform)
{
    NotificationCenter &standard = platform.notifications.standard;
    NotificationCenter &distributed = platform.notifications.distributed;
    const auto observe = [this](NotificationCenter &center, const QString &name,
                                void (SmartAutoLockManager::*handler)()) {
        center.observe(name, this, [this, handler](const QVariantMap &) { (this->*handler)(); });
    };
    observe(standard, notifications::willSleep, &SmartAutoLockManager::handleSystemSleep);
    observe(standard, notifications::sessionDidBecomeActive, &SmartAutoLockManager::handleUserSessionChange);
    observe(standard, notifications::sessionDidResignActive, &SmartAutoLockManager::handleUserSessionChange);
    observe(distributed, notifications::screenIsLocked, &SmartAutoLockManager::handleScreenLock);
    observe(distributed, notifications::screenIsUnlocked, &SmartAutoLockManager::handleScreenUnlock);
    observe(distributed, notifications::screenSaverDidStart, &SmartAutoLockManager::handleScreenSaverStart);
}

void SmartAutoLockManager::startMonitoring()
{
    if (m_isEnabled) {
        printLogger(QStringLiteral("SmartAutoLockManager: Starting smart auto-lock monitoring"));
    }
}

void SmartAutoLockManager::setEnabled(bool enabled)
{
    const bool isChange = m_isEnabled != enabled;
    m_isEnabled = enabled;
    settings::smartAutoLockEnabled.write(m_defaults, enabled);
    if (isChange) {
        Q_EMIT isEnabledChanged();
    }
    if (enabled) {
        startMonitoring();
    } else {
        printLogger(QStringLiteral("SmartAutoLockManager: Stopping smart auto-lock monitoring"));
    }
}

void SmartAutoLockManager::updateRules(const SmartAutoLockRules &rules)
{
    const bool isChange = m_rules != rules;
    m_rules = rules;
    saveRules();
    if (isChange) {
        Q_EMIT rulesChanged();
    }
    if (m_isEnabled) {
        // The line means that the rules in force until now are not those any more.
        printLogger(QStringLiteral("SmartAutoLockManager: Stopping smart auto-lock monitoring"));
        startMonitoring();
    }
}

void SmartAutoLockManager::handleSystemSleep()
{
    if (isInForce(&SmartAutoLockRules::lockOnSleep)) {
        printLogger(QStringLiteral("SmartAutoLockManager: System sleep detected, locking items"));
        lockAllItems(QStringLiteral("System sleep"), QStringLiteral("before the computer went to sleep"));
    }
}

void SmartAutoLockManager::handleUserSessionChange()
{
    if (isInForce(&SmartAutoLockRules::lockOnUserSwitch)) {
        printLogger(QStringLiteral("SmartAutoLockManager: User session change detected, locking items"));
        lockAllItems(QStringLiteral("User session change"), QStringLiteral("because the session was switched"));
    }
}

void SmartAutoLockManager::handleScreenLock()
{
    if (isInForce(&SmartAutoLockRules::lockOnSystemLock)) {
        printLogger(QStringLiteral("SmartAutoLockManager: Screen lock detected, locking items"));
        lockAllItems(QStringLiteral("Screen lock"), QStringLiteral("because the screen was locked"));
    }
}

void SmartAutoLockManager::handleScreenSaverStart()
{
    if (isInForce(&SmartAutoLockRules::lockOnScreenSaver)) {
        printLogger(QStringLiteral("SmartAutoLockManager: Screen saver started, locking items"));
        lockAllItems(QStringLiteral("Screen saver activation"), QStringLiteral("because the screen saver started"));
    }
}

void SmartAutoLockManager::lockAllItems(const QString &reason, const QString &cause)
{
    const QList<ProtectedItem> unlocked = lockJobs::unlockedItems(m_quillhavenManager);
    if (unlocked.isEmpty()) {
        return;
    }
    printLogger(QStringLiteral("SmartAutoLockManager: Locking ") + QString::number(unlocked.size()) +
                QStringLiteral(" items due to: ") + reason);
    lockJobs::start(m_quillhavenManager, m_defaults, unlocked,
                    {.succeeded = [](const QString &) {},
                     .failed =
                         [](const QString &name, const QString &description) {
                             printLogger(QStringLiteral("SmartAutoLockManager: Error locking item ") + name +
                                         QStringLiteral(": ") + description);
                         },
                     .cause = cause,
                     .ended =
                         [self = QPointer(this)](const QString &report) {
                             if (self) {
                                 Q_EMIT self->itemsLocked(report);
                             }
                         }});
}

} // namespace quillhaven
