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

bool SecretServiceCredentialStore::wasJustDeclined() const
{
    constexpr std::chrono::milliseconds pause(500);
    return m_clock && m_declinedAt && m_clock->uptime() - *m_declinedAt < pause;
}

KeyringCall SecretServiceCredentialStore::newCall() const
{
    return {wasJustDeclined() ? Prompting::Forbidden : Prompting::Allowed, m_cancellable.get()};
}

CredentialStatus SecretServiceCredentialStore::open(KeyringCall &call)
{
    const CredentialStatus status = call.open(m_owner);
    return isReplaced() ? credentialNotAvailable : status;
}

CredentialStatus SecretServiceCredentialStore::noted(const KeyringCall &call, CredentialStatus status)
{
    const bool isRefusal = status == credentialInteractionNotAllowed || status == credentialNoDefaultCollection;
    // A call that did not prompt, since another was declined just before, belongs to the same run.
    if (m_clock && isRefusal && (call.hasPrompted() || wasJustDeclined())) {
        m_declinedAt = m_clock->uptime();
    }
    return status;
}

CredentialStatus SecretServiceCredentialStore::prepareForWriting()
{
    KeyringCall call = newCall();
    CredentialStatus status = open(call);
    if (status == credentialSuccess) {
        status = call.unlockDefaultCollection();
    }
    return noted(call, status == credentialNoDefaultCollection ? call.createDefaultCollection() : status);
}

CredentialStatus SecretServiceCredentialStore::add(const QString &service, const QString &account,
                                                   const QByteArray &value)
{
    // The interface has no create that refuses a second entry; the one queue of calls makes search and store one step.
    KeyringCall call = newCall();
    const Attributes attributes = keyringAttributes(service, account);
    Objects items;
    CredentialStatus status = open(call);
    if (status == credentialSuccess) {
        status = call.findUnlocked(attributes.get(), items);
    }
    if (status == credentialSuccess) {
        return credentialDuplicateItem;
    }
    return noted(call, status == credentialItemNotFound ? call.store(attributes.get(), "Quillhaven", value) : status);
}

CredentialStatus SecretServiceCredentialStore::update(const QString &service, const QString &account,
                                                      const QByteArray &value)
{
    KeyringCall call = newCall();
    Objects items;
    CredentialStatus status = open(call);
    if (status == credentialSuccess) {
        status = call.findUnlocked(keyringAttributes(service, account).get(), items);
    }
    // The entry itself is changed, in whichever collection it is: storing would make a second one in the default.
    return noted(call, status == credentialSuccess ? call.replace(SECRET_ITEM(items->data), value) : status);
}

CredentialStore::Match SecretServiceCredentialStore::copyMatching(const QString &service, const QString &account)
{
    const bool isFirst = !std::exchange(m_hasLookedUp, true);
    KeyringCall call = newCall();
    if (!m_declinedAtStart.isNull() && account == m_declinedAtStart) {
        call.forbidPrompts();
    }
    Objects items;
    CredentialStatus status = open(call);
    if (status == credentialSuccess) {
        status = call.findUnlocked(keyringAttributes(service, account).get(), items);
    }
    if (isFirst && status == credentialInteractionNotAllowed) {
        m_declinedAtStart = account;
        return {status, std::nullopt}; // what the user asks for next may prompt
    }
    return status == credentialSuccess ? call.load(SECRET_ITEM(items->data)) : Match{noted(call, status), std::nullopt};
}

CredentialStatus SecretServiceCredentialStore::remove(const QString &service, const QString &account)
{
    KeyringCall call = newCall();
    const Attributes attributes = keyringAttributes(service, account);
    Objects items;
    CredentialStatus status = open(call);
    if (status == credentialSuccess) {
        status = call.findUnlocked(attributes.get(), items);
    }
    return noted(call, status == credentialSuccess ? call.remove(attributes.get(), items.get()) : status);
}

CredentialStatus SecretServiceCredentialStore::findMarker(const QString &marker)
{
    KeyringCall call = newCall();
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
    return status == credentialSuccess ? call.find(attributes.get(), items) : noted(call, status);
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
