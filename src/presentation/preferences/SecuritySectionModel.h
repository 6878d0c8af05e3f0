// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/PasswordInputDialogModel.h"
#include "platform/CredentialStore.h"
#include "platform/UserDefaults.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "settings/Settings.h"

#include <QCoroTask>

namespace quillhaven {

class CredentialStoreState;
class MasterPasswordManager;
class OperationErrors;
struct Platform;

/// The settings of passwords and the fingerprint reader. Every change is stored at once. Main thread only.
class SecuritySectionModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(bool enableTouchID READ enableTouchID WRITE setEnableTouchID NOTIFY changed)
    Q_PROPERTY(bool enforceStrongPasswords READ enforceStrongPasswords WRITE setEnforceStrongPasswords NOTIFY changed)
    Q_PROPERTY(QString masterPasswordDescription READ masterPasswordDescription NOTIFY changed)
    Q_PROPERTY(QString storeDescription READ storeDescription NOTIFY changed)
    Q_PROPERTY(bool isStoreSafe READ isStoreSafe NOTIFY changed)

public:
    /// The dialogs are those of the preferences. The references must outlive this object, which must outlive its jobs.
    SecuritySectionModel(const Platform &platform, MasterPasswordManager &masterPasswordManager,
                         PasswordInputDialogManager &passwordInput, ConfirmationDialogManager &confirmation,
                         OperationErrors &errors, QObject *parent = nullptr);

    [[nodiscard]] bool enableTouchID() const { return settings::enableTouchID.read(m_defaults); }
    void setEnableTouchID(bool value) { settings::enableTouchID.write(m_defaults, value); }
    [[nodiscard]] bool enforceStrongPasswords() const { return settings::enforceStrongPasswords.read(m_defaults); }
    void setEnforceStrongPasswords(bool value) { settings::enforceStrongPasswords.write(m_defaults, value); }
    /// Whether there is a master password, in a sentence.
    [[nodiscard]] QString masterPasswordDescription() const;
    /// Where the passwords are kept, and how safe they are there.
    [[nodiscard]] QString storeDescription() const;
    /// Whether another program of the user's cannot read the passwords without being allowed to.
    [[nodiscard]] bool isStoreSafe() const;

    /// Reports what may have changed without a signal. Call it when the section appears.
    void refresh() { Q_EMIT changed(); }
    /// "Set or Reset Master Password".
    Q_INVOKABLE void chooseMasterPassword();
    /// Asks for a new master password, when there is one after a confirmation. The old one is not asked for.
    void showMasterPasswordDialog();

Q_SIGNALS:
    void changed();

private:
    void askForMasterPassword(const QString &title);
    [[nodiscard]] QCoro::Task<> setMasterPassword(QString password);

    UserDefaults &m_defaults;
    const CredentialStore &m_store;
    const CredentialStoreState &m_storeState;
    MasterPasswordManager &m_masterPasswordManager;
    PasswordInputDialogManager &m_passwordInput;
    ConfirmationDialogManager &m_confirmation;
    OperationErrors &m_errors;
};

} // namespace quillhaven
