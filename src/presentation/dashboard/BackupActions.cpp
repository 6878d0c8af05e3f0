// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/BackupActions.h"

#include "async/Jobs.h"
#include "engine/QuillhavenManager.h"
#include "platform/UserDefaults.h"
#include "presentation/dashboard/DashboardErrors.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "settings/Settings.h"
#include "support/LocalizedError.h"

namespace quillhaven {

BackupActions::BackupActions(const DashboardContext &context, UserDefaults &defaults, QObject *parent)
    : QObject(parent), m_context(context), m_defaults(defaults)
{
    settings::enableiCloudBackup.onChange(defaults, this, [this] { Q_EMIT enableiCloudBackupChanged(); });
}

bool BackupActions::enableiCloudBackup() const
{
    return settings::enableiCloudBackup.read(m_defaults);
}

void BackupActions::setEnableiCloudBackup(bool value)
{
    if (enableiCloudBackup() != value) {
        settings::enableiCloudBackup.write(m_defaults, value);
    }
}

QString BackupActions::progressText() const
{
    return m_isBackingUp ? QStringLiteral("Backing up all items…") : QString();
}

void BackupActions::refresh()
{
    m_isAvailable = m_context.quillhavenManager.isiCloudAvailable();
    Q_EMIT isAvailableChanged();
}

void BackupActions::backUpAll()
{
    if (!m_isBackingUp) {
        setIsBackingUp(true);
        startJob([this] { return runBackup(); });
    }
}

QCoro::Task<> BackupActions::runBackup()
{
    try {
        co_await m_context.quillhavenManager.backupAllToiCloud();
    } catch (...) {
        m_context.errors.report(std::current_exception());
    }
    setIsBackingUp(false);
}

void BackupActions::setIsBackingUp(bool value)
{
    m_isBackingUp = value;
    Q_EMIT isBackingUpChanged();
}

void BackupActions::showRecoveryDialog()
{
    const auto recover = [this](const QString &masterPassword) {
        startJob([this, masterPassword] { return runRecovery(masterPassword); });
    };
    m_recoveryDialogManager.show(recover, [this] { m_recoveryDialogManager.setIsPresented(false); });
}

QCoro::Task<> BackupActions::runRecovery(QString masterPassword)
{
    try {
        const QStringList paths = co_await m_context.quillhavenManager.recoverFromiCloud(masterPassword);
        closeRecoveryDialog();
        showRecovered(paths.size());
    } catch (...) {
        closeRecoveryDialog();
        // If the user declined to choose a folder, this reports that nothing was recovered.
        m_context.errors.showError(localizedDescription(std::current_exception()));
    }
}

void BackupActions::closeRecoveryDialog()
{
    m_recoveryDialogManager.setIsRecovering(false);
    m_recoveryDialogManager.setIsPresented(false);
}

void BackupActions::showRecovered(qsizetype count)
{
    m_context.dialogs.confirmation.show({.title = QStringLiteral("Recovery Successful"),
                                         .message = QStringLiteral("Successfully recovered ") + QString::number(count) +
                                                    QStringLiteral(" files to the selected folder."),
                                         .confirmTitle = QStringLiteral("OK"),
                                         .cancelTitle = QString(),
                                         .showCancelButton = false});
}

} // namespace quillhaven
