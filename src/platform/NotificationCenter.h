// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

namespace quillhaven {

/// Distributes named notifications to its observers, at once and in the order in which they subscribed. Main thread
/// only.
class NotificationCenter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    void post(const QString &name, const QVariantMap &userInfo = {}) { Q_EMIT posted(name, userInfo); }

    /// Calls `action` with the user info of each notification of this name, for as long as `context` lives.
    template <typename Action>
    void observe(const QString &name, QObject *context, Action action)
    {
        const auto actionForName = [name, action = std::move(action)](const QString &posted,
                                                                      const QVariantMap &userInfo) {
            if (posted == name) {
                action(userInfo);
            }
        };
        connect(this, &NotificationCenter::posted, context, actionForName);
    }

Q_SIGNALS:
    void posted(const QString &name, const QVariantMap &userInfo);
};

/// The centres of a process.
struct NotificationCenters
{
    NotificationCenter standard;    ///< the program's own notifications
    NotificationCenter workspace;   ///< sleep and wake, as the system reports them
    NotificationCenter distributed; ///< the screen lock and the screen saver, as the desktop reports them
};

/// The names of the notifications.
namespace notifications {

// On the workspace's centre.
inline const QString willSleep = QStringLiteral("NSWorkspaceWillSleepNotification");
inline const QString didWake = QStringLiteral("NSWorkspaceDidWakeNotification");
inline const QString sessionDidBecomeActive = QStringLiteral("NSWorkspaceSessionDidBecomeActiveNotification");
inline const QString sessionDidResignActive = QStringLiteral("NSWorkspaceSessionDidResignActiveNotification");

// On the distributed centre.
inline const QString screenIsLocked = QStringLiteral("com.apple.screenIsLocked");
inline const QString screenIsUnlocked = QStringLiteral("com.apple.screenIsUnlocked");
inline const QString screenSaverDidStart = QStringLiteral("com.apple.screensaver.didstart");

// On the program's own centre.
inline const QString showPreferences = QStringLiteral("ShowPreferences");
inline const QString handleFinderAction = QStringLiteral("HandleFinderAction");

} // namespace notifications

} // namespace quillhaven
