// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/KeychainManager.h"

#include "credentials/KeychainError.h"
#include "support/Utf8.h"
#include "support/printLogger.h"

namespace quillhaven {

namespace {

const QString masterPasswordAccount = QStringLiteral("master_password");

QString touchIDAccount(const QString &id)
{
    return id + QStringLiteral("_touchid");
}

bool isGone(CredentialStatus status)
{
    return status == credentialSuccess || status == credentialItemNotFound;
}

} // namespace

KeychainManager::KeychainManager(CredentialStore &store, RandomSource &random, const QString &serviceName)
    : m_store(store), m_random(random), m_serviceName(serviceName)
{
}

void KeychainManager::prepareForWriting()
{
    const CredentialStatus status = m_store.prepareForWriting();
    if (status != credentialSuccess) {
        throw KeychainError(KeychainError::saveFailed, status);
    }
}

void KeychainManager::storePassword(const QString &password, const QString &id)
{
    store(id, password);
}

QString KeychainManager::retrievePassword(const QString &id)
{
    return retrieve(id);
}

void KeychainManager::storeTouchIDKey(const QString &id)
{
    store(touchIDAccount(id), m_random.uuidString());
}

QString KeychainManager::retrieveTouchIDKey(const QString &id)
{
    return retrieve(touchIDAccount(id));
}

void KeychainManager::storeMasterPassword(const QString &password)
{
    store(masterPasswordAccount, password);
}

QString KeychainManager::retrieveMasterPassword()
{
    return retrieve(masterPasswordAccount);
}

void KeychainManager::removeMasterPassword()
{
    const CredentialStatus status = m_store.remove(m_serviceName, masterPasswordAccount);
    if (!isGone(status)) {
        throw KeychainError(KeychainError::deleteFailed, status);
    }
}

void KeychainManager::removeCredentials(const QString &id)
{
    printLogger(QStringLiteral("🔑 KeychainManager: Starting removeCredentials for itemId: ") + id);
    printLogger(QStringLiteral("🔑 KeychainManager: Removing password for account: ") + id);
    CredentialStatus status = m_store.remove(m_serviceName, id);
    if (!isGone(status)) {
        printLogger(QStringLiteral("❌ KeychainManager: Failed to delete password, status: ") +
                    QString::number(status));
        throw KeychainError(KeychainError::deleteFailed, status);
    }
    printLogger(QStringLiteral("✅ KeychainManager: Successfully removed password (or it didn't exist)"));

    const QString account = touchIDAccount(id);
    printLogger(QStringLiteral("🔑 KeychainManager: Removing Touch ID key for account: ") + account);
    status = m_store.remove(m_serviceName, account);
    if (!isGone(status)) {
        printLogger(QStringLiteral("❌ KeychainManager: Failed to delete Touch ID key, status: ") +
                    QString::number(status));
        throw KeychainError(KeychainError::deleteFailed, status);
    }
    printLogger(QStringLiteral("✅ KeychainManager: Successfully removed Touch ID key (or it didn't exist)"));
    printLogger(QStringLiteral("✅ KeychainManager: removeCredentials completed successfully"));
}

void KeychainManager::store(const QString &account, const QString &value)
{
    const QByteArray bytes = value.toUtf8();
    CredentialStatus status = m_store.add(m_serviceName, account, bytes);
    if (status == credentialDuplicateItem) {
        // Updated in place: the entry keeps its identity.
        status = m_store.update(m_serviceName, account, bytes);
    }
    if (status != credentialSuccess) {
        throw KeychainError(KeychainError::saveFailed, status);
    }
}

QString KeychainManager::retrieve(const QString &account)
{
    const CredentialStore::Match match = m_store.copyMatching(m_serviceName, account);
    if (match.status != credentialSuccess) {
        throw KeychainError(KeychainError::retrieveFailed, match.status);
    }
    if (!match.value) {
        throw KeychainError(KeychainError::invalidData);
    }
    std::optional<QString> text = decodedUtf8(*match.value);
    if (!text) {
        throw KeychainError(KeychainError::invalidData);
    }
    return *std::move(text);
}

} // namespace quillhaven
