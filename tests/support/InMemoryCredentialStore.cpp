// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/InMemoryCredentialStore.h"

namespace quillhaven::test {

CredentialStatus InMemoryCredentialStore::add(const QString &, const QString &account, const QByteArray &value)
{
    if (failWith != credentialSuccess) {
        return failWith;
    }
    if (failWritesWith != credentialSuccess) {
        return failWritesWith;
    }
    if (entries.contains(account)) {
        return credentialDuplicateItem;
    }
    entries.insert(account, value);
    return credentialSuccess;
}

CredentialStatus InMemoryCredentialStore::update(const QString &, const QString &account, const QByteArray &value)
{
    if (failWith != credentialSuccess) {
        return failWith;
    }
    if (failWritesWith != credentialSuccess) {
        return failWritesWith;
    }
    if (!entries.contains(account)) {
        return credentialItemNotFound;
    }
    entries[account] = value;
    return credentialSuccess;
}

CredentialStore::Match InMemoryCredentialStore::copyMatching(const QString &, const QString &account)
{
    if (failWith != credentialSuccess) {
        return {failWith, std::nullopt};
    }
    if (!entries.contains(account)) {
        return {credentialItemNotFound, std::nullopt};
    }
    return {credentialSuccess, entries.value(account)};
}

CredentialStatus InMemoryCredentialStore::remove(const QString &, const QString &account)
{
    if (failWith != credentialSuccess) {
        return failWith;
    }
    return entries.remove(account) > 0 ? credentialSuccess : credentialItemNotFound;
}

} // namespace quillhaven::test
