// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStore.h"

#include <QMap>

namespace quillhaven::test {

/// A credential store in a map. With `failWith`, every call returns that status; with `failWritesWith` only those that
/// store a value, after the store was ready for them.
class InMemoryCredentialStore : public CredentialStore
{
public:
    [[nodiscard]] CredentialStatus prepareForWriting() override { return failWith; }
    [[nodiscard]] CredentialStatus add(const QString &service, const QString &account,
                                       const QByteArray &value) override;
    [[nodiscard]] CredentialStatus update(const QString &service, const QString &account,
                                          const QByteArray &value) override;
    [[nodiscard]] Match copyMatching(const QString &service, const QString &account) override;
    [[nodiscard]] CredentialStatus remove(const QString &service, const QString &account) override;
    [[nodiscard]] Place place() const override { return Place::Keyring; }

    /// Account to value, for all services.
    QMap<QString, QByteArray> entries;
    CredentialStatus failWith = credentialSuccess;
    CredentialStatus failWritesWith = credentialSuccess;
};

} // namespace quillhaven::test
