// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/dialogs/OperationErrors.h"
#include "presentation/dialogs/RecoveryDialogManager.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class ConfirmationDialogManager;
class FilePanels;
class MasterPasswordManager;
class QuillhavenManager;
class UserDefaults;
struct Platform;

/// The recovery backups in the preferences: the setting, the folder, backing up and recovering all items, and the
/// status. Main thread only.
class BackupSectionModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(bool isiCloudAvailable READ isiCloudAvailable NOTIFY folderChanged)
    Q_PROPERTY(QString folder READ folder NOTIFY folderChanged)
    Q_PROPERTY(QString folderProblem READ folderProblem NOTIFY folderChanged)
    Q_PROPERTY(QString backupDescription READ getiCloudBackupDescription NOTIFY folderChanged)
    Q_PROPERTY(
        bool enableiCloudBackup READ enableiCloudBackup WRITE setEnableiCloudBackup NOTIFY enableiCloudBackupChanged)
    Q_PROPERTY(bool isBackingUp READ isBackingUp NOTIFY isBackingUpChanged)
    Q_PROPERTY(QString statusText READ statusText NOTIFY isBackingUpChanged)

public:
    /// The references must outlive this object, which must outlive its jobs.
    BackupSectionModel(const Platform &platform, QuillhavenManager &quillhavenManager,
                       const MasterPasswordManager &masterPasswordManager, ConfirmationDialogManager &confirmation,
                       OperationErrors &errors, QObject *parent = nullptr);

    /// Whether there was a folder for backups at the latest `refresh`.
    [[nodiscard]] bool isiCloudAvailable() const { return m_isiCloudAvailable; }
    /// That folder, with its links resolved; empty if there was none.
    [[nodiscard]] QString folder() const { return m_folder; }
    /// Why nothing can be written to that folder; empty if it can.
    [[nodiscard]] QString folderProblem() const { return m_folderProblem; }
    [[nodiscard]] QString getiCloudBackupDescription() const;
    [[nodiscard]] bool enableiCloudBackup() const;
    void setEnableiCloudBackup(bool value);
    [[nodiscard]] bool isBackingUp() const { return m_isBackingUp; }
    /// What is currently running; empty if nothing is.
    [[nodiscard]] QString progressText() const;
    /// The same, or how the last backup of all items ended, if it did not fail.
    [[nodiscard]] QString statusText() const;
    [[nodiscard]] RecoveryDialogManager *recoveryDialogManager() { return &m_recoveryDialogManager; }

    /// Looks for the folder. Call it when something that shows the result appears, not at every repaint.
    void refresh();
    /// Lets the user choose the folder.
    Q_INVOKABLE void chooseFolder();
    /// "Backup Now". Ignored while a backup is running.
    Q_INVOKABLE void backUpNow();
    /// "Recover Files".
    Q_INVOKABLE void showRecoveryDialog();
    /// "Check Status".
    Q_INVOKABLE void checkiCloudStatus();

Q_SIGNALS:
    void folderChanged();
    void enableiCloudBackupChanged();
    void isBackingUpChanged();

private:
    [[nodiscard]] QCoro::Task<> runChoice();
    [[nodiscard]] QCoro::Task<> runBackup();
    [[nodiscard]] QCoro::Task<> runRecovery(QString masterPassword);
    void setIsBackingUp(bool value);
    void closeRecoveryDialog();
    void showMessage(const QString &title, const QString &message);

    FilePanels &m_panels;
    UserDefaults &m_defaults;
    QuillhavenManager &m_quillhavenManager;
    const MasterPasswordManager &m_masterPasswordManager;
    ConfirmationDialogManager &m_confirmation;
    OperationErrors &m_errors;
    RecoveryDialogManager m_recoveryDialogManager;
    bool m_isiCloudAvailable = false;
    QString m_folder;
    QString m_folderProblem;
    bool m_isChoosing = false;
    bool m_isBackingUp = false;
    bool m_hasBackedUp = false; ///< the last backup of all items has succeeded
};

} // namespace quillhaven
