// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStore.h"

namespace quillhaven {

/// The desktop's keyring over the Secret Service interface (libsecret). It never prompts: what a locked keyring cannot
/// answer is `credentialInteractionNotAllowed`, and a keyring without a default collection is
/// `credentialNoDefaultCollection`.
class SecretServiceCredentialStore : public CredentialStore
{
public:
    /// Whether a service answers on the session bus, or can be started by it. Blocks, at most a few seconds.
    [[nodiscard]] static bool isAvailable();

    [[nodiscard]] CredentialStatus add(const QString &service, const QString &account,
                                       const QByteArray &value) override;
    [[nodiscard]] CredentialStatus update(const QString &service, const QString &account,
                                          const QByteArray &value) override;
    [[nodiscard]] Match copyMatching(const QString &service, const QString &account) override;
    [[nodiscard]] CredentialStatus remove(const QString &service, const QString &account) override;
    [[nodiscard]] QString displayName() const override { return QStringLiteral("Secret Service"); }
};

} // namespace quillhaven
