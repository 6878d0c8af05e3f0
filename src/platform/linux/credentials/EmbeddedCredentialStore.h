// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cipher/KeyDerivation.h"
#include "platform/CredentialStore.h"
#include "platform/RandomSource.h"
#include "platform/linux/settings/SqliteDatabase.h"

namespace quillhaven {

/// The program's own store for sessions without a keyring: `credentials.db` with values sealed by AES-256-GCM under the
/// random key in `credentials.key` beside it, both mode 0600. Anyone who may read both files may read the secrets.
class EmbeddedCredentialStore : public CredentialStore
{
public:
    /// `directory` is the program's configuration folder. `random` must outlive this object.
    EmbeddedCredentialStore(const QString &directory, RandomSource &random);

    /// What is in the folder.
    enum class Content {
        None, ///< no database
        Empty,
        Entries,
        Damaged,  ///< the file is not a database of ours
        Unusable, ///< it cannot be read or written
    };
    /// Looks without creating anything.
    [[nodiscard]] Content content();
    /// Renames a damaged or unusable database and its key, and logs the new name. Anything else stays.
    void setAsideIfUnusable();

    /// Whether the database can be written, and the key opens what is in it. Creates both when they are missing.
    [[nodiscard]] CredentialStatus prepareForWriting() override;

    [[nodiscard]] CredentialStatus add(const QString &service, const QString &account,
                                       const QByteArray &value) override;
    [[nodiscard]] CredentialStatus update(const QString &service, const QString &account,
                                          const QByteArray &value) override;
    [[nodiscard]] Match copyMatching(const QString &service, const QString &account) override;
    [[nodiscard]] CredentialStatus remove(const QString &service, const QString &account) override;
    [[nodiscard]] Place place() const override { return Place::OwnFile; }

private:
    [[nodiscard]] bool open();
    [[nodiscard]] QString databasePath() const;
    [[nodiscard]] QString keyPath() const;
    /// The key in the file beside the database; nothing when it is missing or not whole.
    [[nodiscard]] std::optional<SymmetricKey> storedKey() const;
    /// The key for a new value: the stored one if it opens a value of the store, or a fresh one for an empty store.
    [[nodiscard]] std::optional<SymmetricKey> sealingKey();
    /// Makes a key and brings it to the device before anything is sealed under it.
    [[nodiscard]] std::optional<SymmetricKey> makeKey();
    [[nodiscard]] CredentialStatus store(const QString &entry, const QByteArray &value);

    QString m_directory;
    RandomSource &m_random;
    SqliteDatabase m_database;
    SqliteDatabase::OpenResult m_lastOpening = SqliteDatabase::OpenResult::Opened;
    bool m_isOpen = false;
};

} // namespace quillhaven
