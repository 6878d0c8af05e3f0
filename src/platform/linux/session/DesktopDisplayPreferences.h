// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Before the standard library's coroutines, whose concepts moc cannot read otherwise.
#include "platform/DisplayPreferences.h"

#include "platform/linux/session/BusNameOwner.h"
#include "platform/linux/session/DisplaySettings.h"

#include <QPointer>
#include <QThreadPool>

#include <memory>

namespace quillhaven {

/// What the settings portal of the desktop reports. The values are the default ones until it has answered, and wherever
/// there is none: Qt 6.4 itself can report neither a contrast nor a wish for less motion, as its style hints have
/// nothing of the kind and its effects (`QApplication::isEffectEnabled`) are always on outside Plasma. While the portal
/// is away, its last answers remain.
class DesktopDisplayPreferences : public DisplayPreferences
{
    Q_OBJECT

public:
    /// Returns at once; the portal is started, if it can be, and asked from the event loop.
    DesktopDisplayPreferences();
    ~DesktopDisplayPreferences() override;

private Q_SLOTS:
    // With the message, since Qt 6.4 may not know the type of a variant yet when it looks for the slot.
    void onSettingChanged(const QDBusMessage &message);

private:
    [[nodiscard]] static QCoro::Task<> findPortal(QPointer<DesktopDisplayPreferences> self);
    void onOwnerChanged(const QString &owner);
    [[nodiscard]] static QCoro::Task<> readAll(QPointer<DesktopDisplayPreferences> self, QString owner);

    QThreadPool m_connecting;
    std::unique_ptr<BusNameOwner> m_portal;
    QString m_owner; ///< whose signals arrive here
    DisplaySettings m_settings;
    DisplaySettings m_changed; ///< since this owner was asked
};

} // namespace quillhaven
