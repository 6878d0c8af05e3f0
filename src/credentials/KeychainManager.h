// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStore.h"
#include "platform/RandomSource.h"

#include <QString>

namespace quillhaven {

/// Reads and writes the program's secrets in the credential store. Every call goes to the store, blocks until it
/// answers and throws a KeychainError if it fails: call it from `Platform::credentialQueue`.
///
/// The secrets are in the store as they were typed; any program that can read the user's unlocked keyring can read
/// them.
class KeychainManager
{
public:
    /// The references must outlive this object.
    KeychainManager(CredentialStore &store, RandomSource &random, const QString &serviceName);

    /// Makes the store ready for a new entry, which may ask the user to unlock it. Throws what storing would throw.
    void prepareForWriting();
    /// Stores or replaces the password of an item.
    void storePassword(const QString &password, const QString &id);
    [[nodiscard]] QString retrievePassword(const QString &id);

    /// Creates a new marker key and stores or replaces it. The key opens nothing: it only has to be readable after a
    /// successful fingerprint check.
    void storeTouchIDKey(const QString &id);
    [[nodiscard]] QString retrieveTouchIDKey(const QString &id);

    void storeMasterPassword(const QString &password);
    [[nodiscard]] QString retrieveMasterPassword();
    /// Does nothing if there is none.
    void removeMasterPassword();

    /// Deletes the password and the marker key of an item. Either may be missing.
    void removeCredentials(const QString &id);

private:
    void store(const QString &account, const QString &value);
    [[nodiscard]] QString retrieve(const QString &account);

    CredentialStore &m_store;
    RandomSource &m_random;
    QString m_serviceName;
};

/// The service name under which all secrets of the program are stored.
inline const QString keychainServiceName = QStringLiteral("com.tarnwick.quillhaven");

} // namespace quillhaven
