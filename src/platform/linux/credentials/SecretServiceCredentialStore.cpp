// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/credentials/SecretServiceCredentialStore.h"

#include "platform/linux/credentials/KeyringCall.h"

#include <utility>

namespace quillhaven {

namespace {

const QString markerService = QStringLiteral("com.tarnwick.quillhaven.keyring");

QString accountOf(SecretItem *item)
{
    const Attributes attributes(secret_item_get_attributes(item));
    return QString::fromUtf8(static_cast<const char *>(g_hash_table_lookup(attributes.get(), "account")));
}

} // namespace

CredentialStatus SecretServiceCredentialStore::open(KeyringCall &call)
{
    const CredentialStatus status = call.open(m_owner);
    return isReplaced() ? credentialNotAvailable : status;
}

CredentialStatus SecretServiceCredentialStore::prepareForWriting()
{
    KeyringCall call(Prompting::Allowed, m_cancellable.get());
    CredentialStatus status = open(call);
    if (status == credentialSuccess) {
        status = call.unlockDefaultCollection();
    }
    return status == credentialNoDefaultCollection ? call.createDefaultCollection() : status;
}

CredentialStatus SecretServiceCredentialStore::add(const QString &service, const QString &account,
                                                   const QByteArray &value)
{
    // The interface has no create that refuses a second entry; the one queue of calls makes search and store one step.
    KeyringCall call(Prompting::Allowed, m_cancellable.get());
    const Attributes attributes = keyringAttributes(service, account);
    Objects items;
    CredentialStatus status = open(call);
    if (status == credentialSuccess) {
        status = call.findUnlocked(attributes.get(), items);
    }
    if (status == credentialSuccess) {
        return credentialDuplicateItem;
    }
    return status == credentialItemNotFound ? call.store(attributes.get(), "Quillhaven", value) : status;
}

CredentialStatus SecretServiceCredentialStore::update(const QString &service, const QString &account,
                                                      const QByteArray &value)
{
    KeyringCall call(Prompting::Allowed, m_cancellable.get());
    Objects items;
    CredentialStatus status = open(call);
    if (status == credentialSuccess) {
        status = call.findUnlocked(keyringAttributes(service, account).get(), items);
    }
    // The entry itself is changed, in whichever collection it is: storing would make a second one in the default.
    return status == credentialSuccess ? call.replace(SECRET_ITEM(items->data), value) : status;
}

CredentialStore::Match SecretServiceCredentialStore::copyMatching(const QString &service, const QString &account)
{
    const bool isFirst = !std::exchange(m_hasLookedUp, true);
    const bool wasDeclined = !m_declinedAtStart.isNull() && account == m_declinedAtStart;
    KeyringCall call(wasDeclined ? Prompting::Forbidden : Prompting::Allowed, m_cancellable.get());
    Objects items;
    CredentialStatus status = open(call);
    if (status == credentialSuccess) {
        status = call.findUnlocked(keyringAttributes(service, account).get(), items);
    }
    if (isFirst && status == credentialInteractionNotAllowed) {
        m_declinedAtStart = account;
    }
    return status == credentialSuccess ? call.load(SECRET_ITEM(items->data)) : Match{status, std::nullopt};
}

CredentialStatus SecretServiceCredentialStore::remove(const QString &service, const QString &account)
{
    KeyringCall call(Prompting::Allowed, m_cancellable.get());
    const Attributes attributes = keyringAttributes(service, account);
    Objects items;
    CredentialStatus status = open(call);
    if (status == credentialSuccess) {
        status = call.findUnlocked(attributes.get(), items);
    }
    return status == credentialSuccess ? call.remove(attributes.get(), items.get()) : status;
}

CredentialStatus SecretServiceCredentialStore::findMarker(const QString &marker)
{
    KeyringCall call(Prompting::Allowed, m_cancellable.get());
    const Attributes attributes = keyringAttributes(markerService, marker);
    Objects items;
    CredentialStatus status = open(call);
    if (status == credentialSuccess) {
        status = call.find(attributes.get(), items);
    }
    if (status != credentialItemNotFound) {
        return status;
    }
    status = call.unlockDefaultCollection();
    if (status == credentialNoDefaultCollection) {
        return credentialItemNotFound;
    }
    return status == credentialSuccess ? call.find(attributes.get(), items) : status;
}

QString SecretServiceCredentialStore::markerOrNew(const QString &fresh)
{
    KeyringCall call(Prompting::Forbidden, m_cancellable.get());
    const Attributes known = keyringAttributes(markerService);
    Objects items;
    CredentialStatus status = open(call);
    if (status == credentialSuccess) {
        status = call.find(known.get(), items);
    }
    if (status == credentialSuccess) {
        return accountOf(SECRET_ITEM(items->data));
    }
    const Attributes attributes = keyringAttributes(markerService, fresh);
    const bool isStored =
        status == credentialItemNotFound &&
        call.store(attributes.get(), "Quillhaven: mark of this keyring", fresh.toUtf8()) == credentialSuccess;
    return isStored ? fresh : QString();
}

} // namespace quillhaven
