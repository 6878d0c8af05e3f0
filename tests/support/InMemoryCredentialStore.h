// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStore.h"

#include <QMap>

namespace quillhaven::testing {

/// The rules of the credential store over a map. `failWith` makes every call answer that status.
class InMemoryCredentialStore : public CredentialStore
{
public:
    [[nodiscard]] CredentialStatus add(const QString &service, const QString &account,
                                       const QByteArray &value) override;
    [[nodiscard]] CredentialStatus update(const QString &service, const QString &account,
                                          const QByteArray &value) override;
    [[nodiscard]] Match copyMatching(const QString &service, const QString &account) override;
    [[nodiscard]] CredentialStatus remove(const QString &service, const QString &account) override;
    [[nodiscard]] QString displayName() const override { return QStringLiteral("a map in memory"); }

    /// Account to value, of every service.
    QMap<QString, QByteArray> entries;
    CredentialStatus failWith = credentialSuccess;
};

} // namespace quillhaven::testing
