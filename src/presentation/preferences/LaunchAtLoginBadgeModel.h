// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "launch_at_login/LaunchAtLoginServiceManager.h"
#include "presentation/preferences/LaunchAtLoginStatusModel.h"

namespace quillhaven {

/// The badge while there is no error and nothing runs.
[[nodiscard]] ShownStatus shownBadge(SyncStatus status, bool isEnabled);

/// The state of the start at login in one word.
class LaunchAtLoginBadgeModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(QString word READ word NOTIFY changed)
    Q_PROPERTY(QString icon READ icon NOTIFY changed)
    Q_PROPERTY(int tone READ tone NOTIFY changed)

public:
    /// The reference must outlive this object.
    explicit LaunchAtLoginBadgeModel(LaunchAtLoginServiceManager &serviceManager, QObject *parent = nullptr);

    [[nodiscard]] ShownStatus status() const;
    [[nodiscard]] QString word() const { return status().text; }
    [[nodiscard]] QString icon() const { return status().icon; }
    [[nodiscard]] int tone() const { return status().tone; }

Q_SIGNALS:
    void changed();

private:
    LaunchAtLoginServiceManager &m_serviceManager;
};

} // namespace quillhaven
