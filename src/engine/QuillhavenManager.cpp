// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/QuillhavenManager.h"

#include "credentials/MasterPasswordManager.h"
#include "platform/UserDefaults.h"
#include "settings/Settings.h"

namespace quillhaven {

QuillhavenManager::QuillhavenManager(const Platform &platform, MasterPasswordManager &masterPasswordManager,
                                     PasswordInputDialogManager &passwordInputDialogManager,
                                     QuillhavenShredder &secureShredder, QObject *parent)
    : QObject(parent),
      m_platform(platform),
      m_keychain(std::make_shared<KeychainManager>(platform.credentials, platform.random, keychainServiceName)),
      m_masterPasswordManager(masterPasswordManager),
      m_passwordInputDialogManager(passwordInputDialogManager),
      m_secureShredder(secureShredder),
      m_cloudBackups(platform.cloud, platform.fileManager),
      m_catalogue(platform.defaults)
{
    connect(&m_catalogue, &ItemCatalogue::changed, this, &QuillhavenManager::protectedItemsChanged);
    migrateBackupFiles();
    loadProtectedItems();
}

QuillhavenManager::~QuillhavenManager() = default;

bool QuillhavenManager::enableTouchID() const
{
    return settings::enableTouchID.read(m_platform.defaults.standard());
}

bool QuillhavenManager::enforceStrongPasswords() const
{
    return settings::enforceStrongPasswords.read(m_platform.defaults.standard());
}

bool QuillhavenManager::enableiCloudBackup() const
{
    return settings::enableiCloudBackup.read(m_platform.defaults.standard());
}

void QuillhavenManager::setItemIsProcessing(const QString &id, bool value)
{
    const ProtectedItem *item = m_catalogue.item(id);
    if (item && item->isProcessing != value) {
        m_catalogue.updateUnsaved(id, [value](ProtectedItem &live) { live.isProcessing = value; });
    }
}

QuillhavenManager::Meanwhile QuillhavenManager::meanwhile(const ProtectedItem &snapshot, bool wasListed) const
{
    const ProtectedItem *live = m_catalogue.item(snapshot.id);
    if (!live) {
        return wasListed ? Meanwhile::Removed : Meanwhile::Nothing;
    }
    return live->isMounted == snapshot.isMounted ? Meanwhile::Nothing : Meanwhile::StateChanged;
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
