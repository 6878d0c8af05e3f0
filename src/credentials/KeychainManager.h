// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStore.h"
#include "platform/RandomSource.h"

#include <QString>

namespace quillhaven {

/// The accounts and values of the program's secrets in the credential store. Every call goes to the store, blocks
/// until it answers and throws a KeychainError when it fails: call it from `Platform::credentialQueue`.
///
/// The secrets lie in the store as they were typed; whoever may read the user's unlocked keyring may read them.
class KeychainManager
{
public:
    /// The references outlive this object.
    KeychainManager(CredentialStore &store, RandomSource &random, const QString &serviceName);

    /// Stores or replaces the password of an item.
    void storePassword(const QString &password, const QString &id);
    [[nodiscard]] QString retrievePassword(const QString &id);

    /// Makes a fresh marker key and stores or replaces it. The key opens nothing: that it can be read after a
    /// successful finger check is all that it means.
    void storeTouchIDKey(const QString &id);
    [[nodiscard]] QString retrieveTouchIDKey(const QString &id);

    void storeMasterPassword(const QString &password);
    [[nodiscard]] QString retrieveMasterPassword();
    /// No error when there is none.
    void removeMasterPassword();

    /// Deletes the password and the marker key of an item, of which either may be absent.
    void removeCredentials(const QString &id);

private:
    void store(const QString &account, const QString &value);
    [[nodiscard]] QString retrieve(const QString &account);

    CredentialStore &m_store;
    RandomSource &m_random;
    QString m_serviceName;
};

/// The service under which every secret of the program is kept.
inline const QString keychainServiceName = QStringLiteral("com.tarnwick.quillhaven");

} // namespace quillhaven
