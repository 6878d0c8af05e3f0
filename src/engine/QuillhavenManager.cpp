// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/QuillhavenManager.h"

#include "credentials/MasterPasswordManager.h"
#include "platform/UserDefaults.h"
#include "settings/DefaultsKeys.h"

namespace quillhaven {

QuillhavenManager::QuillhavenManager(const Platform &platform, MasterPasswordManager &masterPasswordManager,
                                     PasswordInputDialogManager &passwordInputDialogManager,
                                     QuillhavenShredder &secureShredder, QObject *parent)
    : QObject(parent),
      m_platform(platform),
      m_keychain(std::make_shared<KeychainManager>(platform.credentials, platform.random, keychainServiceName)),
      m_masterPasswordManager(masterPasswordManager),
      m_passwordInputDialogManager(passwordInputDialogManager),
      m_secureShredder(secureShredder)
{
    migrateBackupFiles();
    loadProtectedItems();
}

QuillhavenManager::~QuillhavenManager() = default;

bool QuillhavenManager::enableTouchID() const
{
    return m_platform.defaults.standard().boolForKey(defaults_keys::enableTouchID).value_or(true);
}

bool QuillhavenManager::enforceStrongPasswords() const
{
    return m_platform.defaults.standard().boolForKey(defaults_keys::enforceStrongPasswords).value_or(true);
}

bool QuillhavenManager::enableiCloudBackup() const
{
    return m_platform.defaults.standard().boolForKey(defaults_keys::enableiCloudBackup).value_or(false);
}

void QuillhavenManager::setIsProcessing(bool value)
{
    if (m_isProcessing != value) {
        m_isProcessing = value;
        Q_EMIT isProcessingChanged();
    }
}

void QuillhavenManager::stopProcessingLater()
{
    QMetaObject::invokeMethod(this, [this] { setIsProcessing(false); }, Qt::QueuedConnection);
}

} // namespace quillhaven
