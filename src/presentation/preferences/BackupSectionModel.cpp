// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/BackupSectionModel.h"

#include "async/Jobs.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/QuillhavenManager.h"
#include "platform/FileManager.h"
#include "platform/FilePanels.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "settings/Settings.h"
#include "support/LocalizedError.h"

namespace quillhaven {

namespace {

QString bullet(const QString &name, const QString &value)
{
    return QStringLiteral("• ") + name + QStringLiteral(": ") + value + QLatin1Char('\n');
}

QString yesOrNo(bool value)
{
    return value ? QStringLiteral("Yes") : QStringLiteral("No");
}

QString advice(bool isAvailable, bool isEnabled, bool hasMasterPassword)
{
    if (!isAvailable) {
        return QStringLiteral("To enable iCloud backup:\n1. Sign in to iCloud in System Preferences\n"
                              "2. Enable iCloud Drive\n3. Restart Quillhaven");
    }
    if (!isEnabled) {
        return QStringLiteral(
            "Enable iCloud backup in Security settings to automatically backup your protected files.");
    }
    if (!hasMasterPassword) {
        return QStringLiteral("Set a master password in Security settings to enable file recovery.");
    }
    return QStringLiteral(
        "iCloud backup is active! Use 'Recover Files' to restore your files with your master password. ✅");
}

} // namespace

BackupSectionModel::BackupSectionModel(const Platform &platform, QuillhavenManager &quillhavenManager,
                                       const MasterPasswordManager &masterPasswordManager,
                                       ConfirmationDialogManager &confirmation, OperationErrors &errors,
                                       QObject *parent)
    : QObject(parent),
      m_panels(platform.panels),
      m_defaults(platform.defaults.standard()),
      m_quillhavenManager(quillhavenManager),
      m_masterPasswordManager(masterPasswordManager),
      m_confirmation(confirmation),
      m_errors(errors)
{
    settings::enableiCloudBackup.onChange(m_defaults, this, [this] { Q_EMIT enableiCloudBackupChanged(); });
}

QString BackupSectionModel::getiCloudBackupDescription() const
{
    return m_isiCloudAvailable
               ? QStringLiteral("Automatically backup encrypted files to iCloud for recovery")
               : QStringLiteral("iCloud is not available. Please sign in to iCloud in System Preferences.");
}

bool BackupSectionModel::enableiCloudBackup() const
{
    return settings::enableiCloudBackup.read(m_defaults);
}

void BackupSectionModel::setEnableiCloudBackup(bool value)
{
    if (enableiCloudBackup() != value) {
        settings::enableiCloudBackup.write(m_defaults, value);
    }
}

QString BackupSectionModel::progressText() const
{
    return m_isBackingUp ? QStringLiteral("Backing up all items…") : QString();
}

QString BackupSectionModel::statusText() const
{
    return m_hasBackedUp ? QStringLiteral("All items are backed up.") : progressText();
}

void BackupSectionModel::refresh()
{
    m_isiCloudAvailable = m_quillhavenManager.isiCloudAvailable();
    m_folder = m_quillhavenManager.iCloudFolder().value_or(QString());
    m_folderProblem = m_quillhavenManager.iCloudProblem().value_or(QString());
    Q_EMIT folderChanged();
}

void BackupSectionModel::chooseFolder()
{
    if (!m_isChoosing) {
        m_isChoosing = true;
        startJob([this] { return runChoice(); });
    }
}

QCoro::Task<> BackupSectionModel::runChoice()
{
    try {
        const OpenPanelRequest request{.canChooseFiles = false,
                                       .canChooseDirectories = true,
                                       .canCreateDirectories = true,
                                       .title = QStringLiteral("Choose the Folder for Backups"),
                                       .message = QStringLiteral("Choose a folder that your sync tool keeps in step."),
                                       .prompt = QStringLiteral("Use This Folder")};
        const std::optional<QString> chosen = co_await m_panels.open(request);
        if (chosen) {
            m_quillhavenManager.useiCloudFolder(*chosen);
        }
    } catch (...) {
        m_errors.showError(localizedDescription(std::current_exception()));
    }
    m_isChoosing = false;
    refresh();
}

void BackupSectionModel::backUpNow()
{
    if (!m_isBackingUp) {
        m_hasBackedUp = false;
        setIsBackingUp(true);
        startJob([this] { return runBackup(); });
    }
}

QCoro::Task<> BackupSectionModel::runBackup()
{
    try {
        co_await m_quillhavenManager.backupAllToiCloud();
        m_hasBackedUp = true;
    } catch (...) {
        m_errors.showError(localizedDescription(std::current_exception()));
    }
    setIsBackingUp(false);
}

void BackupSectionModel::setIsBackingUp(bool value)
{
    m_isBackingUp = value;
    Q_EMIT isBackingUpChanged();
}

void BackupSectionModel::showRecoveryDialog()
{
    const auto recover = [this](const QString &masterPassword) {
        startJob([this, masterPassword] { return runRecovery(masterPassword); });
    };
    m_recoveryDialogManager.show(recover, [this] { m_recoveryDialogManager.setIsPresented(false); });
}

QCoro::Task<> BackupSectionModel::runRecovery(QString masterPassword)
{
    try {
        const QStringList paths = co_await m_quillhavenManager.recoverFromiCloud(masterPassword);
        closeRecoveryDialog();
        showMessage(QStringLiteral("Recovery Successful"), QStringLiteral("Successfully recovered ") +
                                                               QString::number(paths.size()) +
                                                               QStringLiteral(" files to the selected folder."));
    } catch (...) {
        closeRecoveryDialog();
        // If the user declined to choose a folder, this reports that nothing was recovered.
        m_errors.showError(localizedDescription(std::current_exception()));
    }
}

void BackupSectionModel::closeRecoveryDialog()
{
    m_recoveryDialogManager.setIsRecovering(false);
    m_recoveryDialogManager.setIsPresented(false);
}

void BackupSectionModel::checkiCloudStatus()
{
    refresh();
    const bool isEnabled = enableiCloudBackup();
    const bool hasMasterPassword = m_masterPasswordManager.hasMasterPassword();
    const QString status =
        QStringLiteral("iCloud Status:\n\n") +
        bullet(QStringLiteral("iCloud Available"), yesOrNo(m_isiCloudAvailable)) +
        bullet(QStringLiteral("Backup Enabled"), yesOrNo(isEnabled)) +
        bullet(QStringLiteral("Protected Items"), QString::number(m_quillhavenManager.protectedItems().size())) +
        bullet(QStringLiteral("Master Password"),
               hasMasterPassword ? QStringLiteral("Set") : QStringLiteral("Not Set"));
    showMessage(QStringLiteral("iCloud Backup Status"),
                status + QLatin1Char('\n') + advice(m_isiCloudAvailable, isEnabled, hasMasterPassword));
}

void BackupSectionModel::showMessage(const QString &title, const QString &message)
{
    m_confirmation.show({.title = title,
                         .message = message,
                         .confirmTitle = QStringLiteral("OK"),
                         .cancelTitle = QString(),
                         .showCancelButton = false});
}

} // namespace quillhaven
