// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/dashboard/DashboardContext.h"
#include "presentation/dialogs/RecoveryDialogManager.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class UserDefaults;

/// The window's operations on recovery backups: the setting, backing up all items, and recovering them. Main thread
/// only.
class BackupActions : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of the dashboard")
    Q_PROPERTY(bool isAvailable READ isAvailable NOTIFY isAvailableChanged)
    Q_PROPERTY(
        bool enableiCloudBackup READ enableiCloudBackup WRITE setEnableiCloudBackup NOTIFY enableiCloudBackupChanged)
    Q_PROPERTY(bool isBackingUp READ isBackingUp NOTIFY isBackingUpChanged)

public:
    BackupActions(const DashboardContext &context, UserDefaults &defaults, QObject *parent = nullptr);

    /// Whether a folder for backups was available at the latest `refresh`.
    [[nodiscard]] bool isAvailable() const { return m_isAvailable; }
    [[nodiscard]] bool enableiCloudBackup() const;
    void setEnableiCloudBackup(bool value);
    [[nodiscard]] bool isBackingUp() const { return m_isBackingUp; }
    /// What is currently running; empty if nothing is.
    [[nodiscard]] QString progressText() const;
    [[nodiscard]] RecoveryDialogManager *recoveryDialogManager() { return &m_recoveryDialogManager; }

    /// Looks for the folder of the backups. Call it when something that shows the result appears, not at every repaint.
    Q_INVOKABLE void refresh();
    /// "Back Up All Now". Ignored while a backup is running.
    Q_INVOKABLE void backUpAll();
    /// "Recover All Files".
    Q_INVOKABLE void showRecoveryDialog();

Q_SIGNALS:
    void isAvailableChanged();
    void enableiCloudBackupChanged();
    void isBackingUpChanged();

private:
    [[nodiscard]] QCoro::Task<> runBackup();
    [[nodiscard]] QCoro::Task<> runRecovery(QString masterPassword);
    void setIsBackingUp(bool value);
    void closeRecoveryDialog();
    void showRecovered(qsizetype count);

    DashboardContext m_context;
    UserDefaults &m_defaults;
    RecoveryDialogManager m_recoveryDialogManager;
    bool m_isAvailable = false;
    bool m_isBackingUp = false;
};

} // namespace quillhaven
