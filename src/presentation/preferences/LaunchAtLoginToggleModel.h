// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "launch_at_login/LaunchAtLoginServiceManager.h"
#include "presentation/preferences/LaunchAtLoginBadgeModel.h"
#include "presentation/preferences/LaunchAtLoginStatusModel.h"

namespace quillhaven {

/// The switch of the start at login, with its status in full and in a word, and the switch of the hidden start.
class LaunchAtLoginToggleModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY changed)
    Q_PROPERTY(bool isSyncing READ isSyncing NOTIFY changed)
    Q_PROPERTY(QString stateText READ stateText NOTIFY changed)
    Q_PROPERTY(bool startsHidden READ startsHidden NOTIFY changed)
    Q_PROPERTY(quillhaven::LaunchAtLoginStatusModel *status READ status CONSTANT)
    Q_PROPERTY(quillhaven::LaunchAtLoginBadgeModel *badge READ badge CONSTANT)

public:
    /// `restart` starts the program again and ends this process. The references must outlive this object, which must
    /// outlive its jobs.
    LaunchAtLoginToggleModel(LaunchAtLoginServiceManager &serviceManager, ConfirmationDialogManager &confirmation,
                             const Platform &platform, std::function<void()> restart, QObject *parent = nullptr);

    [[nodiscard]] bool isEnabled() const { return m_serviceManager.isEnabled(); }
    [[nodiscard]] bool isSyncing() const { return m_serviceManager.isSyncing(); }
    [[nodiscard]] QString stateText() const;
    [[nodiscard]] bool startsHidden() const { return settings::startHiddenAtLogin.read(m_defaults); }
    [[nodiscard]] LaunchAtLoginStatusModel *status() { return &m_status; }
    [[nodiscard]] LaunchAtLoginBadgeModel *badge() { return &m_badge; }
    [[nodiscard]] EnhancedLaunchAtLoginErrorHandler &errorHandler() { return m_errorHandler; }

    /// Changes the registration in a job. A failure arrives by the service manager's `lastError`.
    Q_INVOKABLE void setEnabled(bool enabled);
    Q_INVOKABLE void setStartsHidden(bool hidden);

Q_SIGNALS:
    void changed();
    /// A change that the user asked for has failed; `lastError` of the service manager has the error too.
    void changeFailed(const QString &description);

private:
    void observeError();
    [[nodiscard]] QCoro::Task<> change(bool enabled);

    LaunchAtLoginServiceManager &m_serviceManager;
    UserDefaults &m_defaults;
    EnhancedLaunchAtLoginErrorHandler m_errorHandler;
    LaunchAtLoginStatusModel m_status;
    LaunchAtLoginBadgeModel m_badge;
};

} // namespace quillhaven
