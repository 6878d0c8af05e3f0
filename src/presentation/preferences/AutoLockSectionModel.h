// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class AutoLockManager;
class MasterPasswordManager;
class SmartAutoLockManager;
class UserDefaults;
class WatchedSources;
struct SmartAutoLockRules;

/// The switches of auto-lock. Every change takes effect and is stored at once. Main thread only.
class AutoLockSectionModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(bool isEnabled READ isEnabled WRITE setIsEnabled NOTIFY changed)
    Q_PROPERTY(QString inputCaption READ inputCaption NOTIFY changed)
    Q_PROPERTY(int fewestMinutes MEMBER fewestMinutes CONSTANT)
    Q_PROPERTY(int mostMinutes MEMBER mostMinutes CONSTANT)
    Q_PROPERTY(int minutes READ minutes WRITE setMinutes NOTIFY changed)
    Q_PROPERTY(QString minutesText READ minutesText NOTIFY changed)
    Q_PROPERTY(bool locksOnSleep READ locksOnSleep WRITE setLocksOnSleep NOTIFY changed)
    Q_PROPERTY(bool isSmartEnabled READ isSmartEnabled WRITE setIsSmartEnabled NOTIFY changed)
    Q_PROPERTY(bool locksOnScreenSaver READ locksOnScreenSaver WRITE setLocksOnScreenSaver NOTIFY changed)
    Q_PROPERTY(bool locksOnScreenLock READ locksOnScreenLock WRITE setLocksOnScreenLock NOTIFY changed)
    Q_PROPERTY(bool locksOnUserSwitch READ locksOnUserSwitch WRITE setLocksOnUserSwitch NOTIFY changed)
    Q_PROPERTY(bool hasMasterPassword READ hasMasterPassword NOTIFY changed)
    Q_PROPERTY(bool locksWithoutMasterPassword READ locksWithoutMasterPassword WRITE setLocksWithoutMasterPassword
                   NOTIFY changed)
    Q_PROPERTY(QString masterPasswordCaption READ masterPasswordCaption NOTIFY changed)

public:
    static constexpr int fewestMinutes = 1;
    static constexpr int mostMinutes = 120;

    /// The references must outlive this object.
    AutoLockSectionModel(AutoLockManager &autoLock, SmartAutoLockManager &smartAutoLock,
                         const MasterPasswordManager &masterPassword, UserDefaults &defaults,
                         const WatchedSources &watched, QObject *parent = nullptr);

    [[nodiscard]] bool isEnabled() const;
    /// What auto-lock waits for, and what it cannot see on this desktop.
    [[nodiscard]] QString inputCaption() const;
    [[nodiscard]] int minutes() const;
    /// Such as "Lock after 5 minutes of inactivity".
    [[nodiscard]] QString minutesText() const;
    [[nodiscard]] bool locksOnSleep() const;
    [[nodiscard]] bool isSmartEnabled() const;
    [[nodiscard]] bool locksOnScreenSaver() const;
    [[nodiscard]] bool locksOnScreenLock() const;
    [[nodiscard]] bool locksOnUserSwitch() const;
    [[nodiscard]] bool hasMasterPassword() const;
    [[nodiscard]] bool locksWithoutMasterPassword() const;
    /// What the master password means for auto-lock; empty where there is none.
    [[nodiscard]] QString masterPasswordCaption() const;

    void setIsEnabled(bool value);
    /// Takes 1 to 120 minutes; a value beyond is the nearest of these.
    void setMinutes(int value);
    void setLocksOnSleep(bool value);
    void setIsSmartEnabled(bool value);
    void setLocksOnScreenSaver(bool value);
    void setLocksOnScreenLock(bool value);
    void setLocksOnUserSwitch(bool value);
    void setLocksWithoutMasterPassword(bool value);

Q_SIGNALS:
    void changed();

private:
    void updateRule(bool SmartAutoLockRules::*rule, bool value);

    AutoLockManager &m_autoLock;
    SmartAutoLockManager &m_smartAutoLock;
    const MasterPasswordManager &m_masterPassword;
    UserDefaults &m_defaults;
    const WatchedSources &m_watched;
};

} // namespace quillhaven
