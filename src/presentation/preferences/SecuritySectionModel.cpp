// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/SecuritySectionModel.h"

#include "async/Jobs.h"
#include "credentials/MasterPasswordManager.h"
#include "platform/CredentialStoreState.h"
#include "platform/Platform.h"
#include "presentation/dialogs/OperationErrors.h"
#include "support/LocalizedError.h"
#include "support/printLogger.h"

namespace quillhaven {

SecuritySectionModel::SecuritySectionModel(const Platform &platform, MasterPasswordManager &masterPasswordManager,
                                           PasswordInputDialogManager &passwordInput,
                                           ConfirmationDialogManager &confirmation, OperationErrors &errors,
                                           QObject *parent)
    : QObject(parent),
      m_defaults(platform.defaults.standard()),
      m_store(platform.credentials),
      m_storeState(platform.credentialStoreState),
      m_masterPasswordManager(masterPasswordManager),
      m_passwordInput(passwordInput),
      m_confirmation(confirmation),
      m_errors(errors)
{
    const auto report = [this] { Q_EMIT changed(); };
    settings::enableTouchID.onChange(m_defaults, this, report);
    settings::enforceStrongPasswords.onChange(m_defaults, this, report);
    connect(&masterPasswordManager, &MasterPasswordManager::hasMasterPasswordChanged, this, report);
    connect(&m_storeState, &CredentialStoreState::changed, this, report);
}

QString SecuritySectionModel::masterPasswordDescription() const
{
    if (m_storeState.phase() == CredentialStoreState::Phase::Missing) {
        return QStringLiteral("Whether there is a master password is not known until the passwords can be reached.");
    }
    return m_masterPasswordManager.hasMasterPassword()
               ? QStringLiteral("A master password is set. It is asked for before items are changed.")
               : QStringLiteral("No master password is set. Files cannot be recovered from backups without one.");
}

QString SecuritySectionModel::storeDescription() const
{
    if (m_storeState.phase() == CredentialStoreState::Phase::Missing) {
        return m_storeState.sentence();
    }
    switch (m_store.place()) {
    case CredentialStore::Place::Keyring:
        return QStringLiteral("Kept in the desktop's keyring (Secret Service), which encrypts them and opens when you "
                              "log in or enter its password.");
    case CredentialStore::Place::OwnFile:
        return QStringLiteral("They are kept in a file of Quillhaven's, not in a keyring. They are encrypted, but the "
                              "key lies beside them: a program that can read your files can read them.");
    case CredentialStore::Place::NotChosen:
        break;
    }
    return QStringLiteral("Nothing has been stored yet.");
}

bool SecuritySectionModel::isStoreSafe() const
{
    return m_storeState.phase() != CredentialStoreState::Phase::Missing &&
           m_store.place() != CredentialStore::Place::OwnFile;
}

void SecuritySectionModel::chooseMasterPassword()
{
    printLogger(QStringLiteral("Master password button clicked in RefinedPreferencesModal"));
    showMasterPasswordDialog();
}

void SecuritySectionModel::showMasterPasswordDialog()
{
    if (!m_masterPasswordManager.hasMasterPassword()) {
        askForMasterPassword(QStringLiteral("Set Master Password"));
        return;
    }
    const QString title = QStringLiteral("Reset Master Password");
    m_confirmation.show({.title = title,
                         .message = QStringLiteral(
                             "Are you sure you want to reset your master password? This action cannot be undone."),
                         .confirmTitle = QStringLiteral("Reset"),
                         .cancelTitle = QStringLiteral("Cancel"),
                         .isDestructive = true},
                        [this, title] { askForMasterPassword(title); });
}

void SecuritySectionModel::askForMasterPassword(const QString &title)
{
    m_passwordInput.show(
        {.title = title,
         .message = QStringLiteral("Enter a strong password (8+ characters with uppercase, lowercase, and numbers):"),
         .requiresConfirmation = true},
        [this](const QString &entered) { startJob([this, entered] { return setMasterPassword(entered); }); }, {});
}

QCoro::Task<> SecuritySectionModel::setMasterPassword(QString password)
{
    try {
        co_await m_masterPasswordManager.setMasterPassword(password);
    } catch (...) {
        m_errors.showError(localizedDescription(std::current_exception()));
    }
}

} // namespace quillhaven
