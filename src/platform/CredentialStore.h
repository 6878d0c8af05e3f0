// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quillhaven {

/// Status of a credential store call: 0 or a negative number of the store's own.
using CredentialStatus = qint32;

inline constexpr CredentialStatus credentialSuccess = 0;
inline constexpr CredentialStatus credentialDuplicateItem = -25299; ///< an entry of this service and account exists
inline constexpr CredentialStatus credentialItemNotFound = -25300;
inline constexpr CredentialStatus credentialInteractionNotAllowed = -25308; ///< the user did not let the store do it
inline constexpr CredentialStatus credentialNotAvailable = -25291;          ///< the store does not answer
inline constexpr CredentialStatus credentialNoDefaultCollection = -25294;   ///< the store has no place for new entries
inline constexpr CredentialStatus credentialDecodeFailed = -26275;          ///< the stored value cannot be opened

/// The platform's store of secrets: entries addressed by a service and an account. Calls block and may take long; make
/// them from `Platform::credentialQueue` alone, one at a time.
class CredentialStore
{
public:
    struct Match
    {
        CredentialStatus status = credentialItemNotFound;
        std::optional<QByteArray> value; ///< present with status 0 when the entry holds bytes
    };

    enum class Place {
        NotChosen, ///< nothing has been stored or found yet
        Keyring,   ///< the desktop's, which is opened by the user's login or password
        OwnFile,   ///< a file of the program, with its key in a file beside it
    };

    CredentialStore() = default;
    virtual ~CredentialStore() = default;
    CredentialStore(const CredentialStore &) = delete;
    CredentialStore &operator=(const CredentialStore &) = delete;

    /// Makes the place of new entries ready without storing one: what is locked is unlocked, which may ask the user.
    /// `credentialSuccess` when an entry can be stored now, else what storing one would fail with.
    [[nodiscard]] virtual CredentialStatus prepareForWriting() = 0;
    /// Makes an entry; `credentialDuplicateItem` when one exists.
    [[nodiscard]] virtual CredentialStatus add(const QString &service, const QString &account,
                                               const QByteArray &value) = 0;
    /// Replaces the value of an entry in place.
    [[nodiscard]] virtual CredentialStatus update(const QString &service, const QString &account,
                                                  const QByteArray &value) = 0;
    [[nodiscard]] virtual Match copyMatching(const QString &service, const QString &account) = 0;
    [[nodiscard]] virtual CredentialStatus remove(const QString &service, const QString &account) = 0;

    /// Where the secrets are. Any thread may ask.
    [[nodiscard]] virtual Place place() const = 0;
};

} // namespace quillhaven
