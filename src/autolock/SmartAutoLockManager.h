// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "autolock/SmartAutoLockRules.h"

#include <QObject>

namespace quillhaven {

class QuillhavenManager;
class UserDefaults;
struct Platform;

/// Locks every unlocked item at events of the system, as a stored set of rules says. A lock that fails is logged.
/// Main thread only.
///
/// Sleep and the change of sessions are observed on the program's own notification centre, where nothing posts them: of
/// the rules, those for the screen lock and the screen saver take effect. The lock before sleep is AutoLockManager's.
class SmartAutoLockManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY isEnabledChanged)

public:
    /// Reads the settings and subscribes. The references must outlive this object, and the engine also the jobs that
    /// this object starts.
    SmartAutoLockManager(const Platform &platform, QuillhavenManager &quillhavenManager, QObject *parent = nullptr);

    /// Defined in the program only.
    static SmartAutoLockManager &shared();

    [[nodiscard]] const SmartAutoLockRules &rules() const { return m_rules; }
    /// The switch above all rules.
    [[nodiscard]] bool isEnabled() const { return m_isEnabled; }

    /// Both store what they are given.
    void setEnabled(bool enabled);
    void updateRules(const SmartAutoLockRules &rules);

Q_SIGNALS:
    /// All locks of one run have ended, and these sentences say what became of the items. Not emitted when none was
    /// locked and none failed.
    void itemsLocked(const QString &report);
    void rulesChanged();
    void isEnabledChanged();

private:
    using Rule = bool SmartAutoLockRules::*;

    void loadSettings();
    void saveRules();
    void setupObservers(const Platform &platform);
    void startMonitoring();
    void handleSystemSleep();
    void handleUserSessionChange();
    void handleScreenLock();
    void handleScreenUnlock() {}
    void handleScreenSaverStart();
    [[nodiscard]] bool isInForce(Rule rule) const { return m_isEnabled && m_rules.*rule; }
    /// `reason` is for the log, `cause` for the report.
    void lockAllItems(const QString &reason, const QString &cause);

    UserDefaults &m_defaults;
    SmartAutoLockRules m_rules;
    bool m_isEnabled = false;
    QuillhavenManager &m_quillhavenManager;
};

} // namespace quillhaven
