// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Clock.h"
#include "platform/CredentialStore.h"

#include <chrono>
#include <memory>
#include <optional>

using GCancellable = struct _GCancellable; // NOLINT(bugprone-reserved-identifier): the name in GLib

namespace quillhaven {

class KeyringCall;

/// The desktop's keyring over the Secret Service interface (libsecret). What is locked is unlocked by the keyring's own
/// prompt, at most once for each call; only a prompt that the user dismissed is `credentialInteractionNotAllowed`.
/// Looking up never creates a default collection: `credentialNoDefaultCollection`.
class SecretServiceCredentialStore : public CredentialStore
{
public:
    /// With a clock, a call that follows a declined one within half a second does not prompt again, so that a run over
    /// many items is declined once. The clock must outlive this object.
    explicit SecretServiceCredentialStore(const Clock *clock = nullptr) : m_clock(clock) {}

    [[nodiscard]] CredentialStatus prepareForWriting() override;
    [[nodiscard]] CredentialStatus add(const QString &service, const QString &account,
                                       const QByteArray &value) override;
    [[nodiscard]] CredentialStatus update(const QString &service, const QString &account,
                                          const QByteArray &value) override;
    /// A first lookup whose prompt was dismissed, as the program makes one at its start, never prompts again.
    [[nodiscard]] Match copyMatching(const QString &service, const QString &account) override;
    [[nodiscard]] CredentialStatus remove(const QString &service, const QString &account) override;
    [[nodiscard]] Place place() const override { return Place::Keyring; }

    /// The later calls end when this is cancelled, from any thread.
    void cancelWith(const std::shared_ptr<GCancellable> &cancellable) { m_cancellable = cancellable; }

    [[nodiscard]] GCancellable *cancellable() const { return m_cancellable.get(); }

    /// Whether the keyring that answers now has the marker; `credentialItemNotFound` if it has not. Unlocks a keyring
    /// that hides its entries while it is locked, but reads no secret.
    [[nodiscard]] CredentialStatus findMarker(const QString &marker);
    /// The marker of the keyring: an entry that another home of this user has left there, or `fresh`, which is stored.
    /// Empty when it could not be stored.
    [[nodiscard]] QString markerOrNew(const QString &fresh);

    /// From now on only the process that answered last is asked; another one that has taken its place is
    /// `credentialNotAvailable`, and `isReplaced`.
    void bindToOwner() { m_boundOwner = m_owner; }
    void unbind() { m_boundOwner.clear(); }
    [[nodiscard]] bool isReplaced() const { return !m_boundOwner.isEmpty() && m_owner != m_boundOwner; }
    /// Lets the lookup that was declined at the start prompt again.
    void forgetDeclined()
    {
        m_declinedAtStart.clear();
        m_declinedAt.reset();
    }

private:
    [[nodiscard]] KeyringCall newCall() const;
    [[nodiscard]] CredentialStatus open(KeyringCall &call);
    [[nodiscard]] bool wasJustDeclined() const;
    /// Remembers when the user declined. Returns the status that it is given.
    [[nodiscard]] CredentialStatus noted(const KeyringCall &call, CredentialStatus status);

    const Clock *m_clock;
    std::optional<std::chrono::nanoseconds> m_declinedAt; ///< by the clock's uptime
    QByteArray m_owner;                                   ///< the bus name of the process that answered last
    QByteArray m_boundOwner;                              ///< empty when any may answer
    std::shared_ptr<GCancellable> m_cancellable;
    bool m_hasLookedUp = false;
    QString m_declinedAtStart; ///< the account whose first lookup was declined
};

} // namespace quillhaven
