// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/credentials/Libsecret.h"

#include <QByteArray>
#include <QString>

namespace quillhaven {

/// The attributes of an entry, and those of all entries of a service.
[[nodiscard]] Attributes keyringAttributes(const QString &service, const QString &account);
[[nodiscard]] Attributes keyringAttributes(const QString &service);

/// What a keyring has said when it was asked whether it is there.
enum class KeyringPresence {
    Answers,
    Silent, ///< there is one, or it can be started, but it did not answer in time
    Absent,
};

/// Asks for the keyring of the session, which the bus starts if it can. Blocks for at most ten seconds.
[[nodiscard]] KeyringPresence keyringPresence(GCancellable *cancellable);

/// Whether the keyring may show its prompt, to be unlocked or to allow access.
enum class Prompting { Allowed, Forbidden };

/// The steps of one call to the keyring. Each blocks until the keyring answers, for at most ten seconds, until the user
/// answers its prompt, which has no limit, or until `cancellable` is cancelled, which dismisses the prompt.
class KeyringCall
{
public:
    KeyringCall(Prompting prompting, GCancellable *cancellable);

    /// Whether the user has been asked anything.
    [[nodiscard]] bool hasPrompted() const { return m_hasPrompted; }
    void forbidPrompts() { m_prompting = Prompting::Forbidden; }

    /// Connects. `owner` is the bus name of the keyring process that was asked last, and becomes that of this one.
    [[nodiscard]] CredentialStatus open(QByteArray &owner);

    /// The entries with these attributes; `credentialItemNotFound` when there is none. What is locked is unlocked by
    /// the keyring's prompt: the default collection if nothing was found, since a locked one may hide its entries, and
    /// the entries themselves. Only a prompt that the user dismissed is `credentialInteractionNotAllowed`.
    [[nodiscard]] CredentialStatus findUnlocked(GHashTable *attributes, Objects &items);
    /// The entries with these attributes, whether locked or not, without a prompt.
    [[nodiscard]] CredentialStatus find(GHashTable *attributes, Objects &items);

    /// Unlocks the default collection. A missing one is `credentialNoDefaultCollection`.
    [[nodiscard]] CredentialStatus unlockDefaultCollection();
    /// Creates the default collection, for which the keyring asks for a new password.
    [[nodiscard]] CredentialStatus createDefaultCollection();

    /// Creates an entry in the default collection.
    [[nodiscard]] CredentialStatus store(GHashTable *attributes, const char *label, const QByteArray &value);
    [[nodiscard]] CredentialStatus replace(SecretItem *item, const QByteArray &value);
    [[nodiscard]] CredentialStore::Match load(SecretItem *item);
    /// Deletes the entries. Some keyrings ask before they do; entries that are still there afterwards are
    /// `credentialInteractionNotAllowed`.
    [[nodiscard]] CredentialStatus remove(GHashTable *attributes, GList *items);

private:
    /// Lets the keyring prompt for the objects. What it says of them afterwards is not reliable: look again.
    [[nodiscard]] CredentialStatus unlock(GList *objects);
    /// Success when the default collection is unlocked, without a prompt.
    [[nodiscard]] CredentialStatus defaultCollection(Owned<SecretCollection> &collection);

    /// Calls a method of the keyring that may answer with a prompt, and shows it. Success when the call was answered.
    [[nodiscard]] CredentialStatus callAndPrompt(const char *path, const char *interface, const char *method,
                                                 GVariant *arguments);

    Prompting m_prompting;
    bool m_hasPrompted = false;
    GCancellable *m_cancellable;
    Owned<GDBusConnection> m_bus;
    QByteArray m_owner;
    Owned<SecretService> m_service;
};

} // namespace quillhaven
