// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStore.h"
#include "platform/linux/settings/SqliteDatabase.h"

namespace quillhaven {

/// The program's own store for sessions without a keyring: `credentials.db` with values sealed by AES-256-GCM under the
/// random key in `credentials.key` beside it, both mode 0600. Whoever may read both files may read the secrets.
class EmbeddedCredentialStore : public CredentialStore
{
public:
    /// `directory` is the program's configuration folder.
    explicit EmbeddedCredentialStore(const QString &directory);

    [[nodiscard]] CredentialStatus add(const QString &service, const QString &account,
                                       const QByteArray &value) override;
    [[nodiscard]] CredentialStatus update(const QString &service, const QString &account,
                                          const QByteArray &value) override;
    [[nodiscard]] Match copyMatching(const QString &service, const QString &account) override;
    [[nodiscard]] CredentialStatus remove(const QString &service, const QString &account) override;
    [[nodiscard]] QString displayName() const override { return QStringLiteral("embedded store"); }

private:
    [[nodiscard]] bool open();
    [[nodiscard]] QString keyPath() const;
    /// The key that stands beside the database, when it is there and whole.
    [[nodiscard]] std::optional<QByteArray> storedKey() const;
    /// The key for a new value: the stored one, seen to open what is there, or a fresh one where nothing is.
    [[nodiscard]] std::optional<QByteArray> sealingKey();
    /// Makes a key and brings it to the device before anything is sealed under it.
    [[nodiscard]] std::optional<QByteArray> makeKey() const;
    [[nodiscard]] CredentialStatus store(const QString &entry, const QByteArray &value);

    QString m_directory;
    SqliteDatabase m_database;
    bool m_isOpen = false;
};

} // namespace quillhaven
