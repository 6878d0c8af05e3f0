// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStore.h"
#include "platform/RandomSource.h"
#include "platform/linux/credentials/EmbeddedCredentialStore.h"
#include "platform/linux/credentials/RememberedStore.h"
#include "platform/linux/credentials/SecretServiceCredentialStore.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

namespace quillhaven {

/// The credential store of this session: the desktop's keyring when one answers, else the embedded store. Once
/// something has been stored or found, that store is remembered, also for later starts. When it does not answer, or the
/// session has another keyring, nothing is read from or written to another store: every call is
/// `credentialNotAvailable`, until `tryAgain` finds it. The log says which store is used or missing.
class SystemCredentialStore : public CredentialStore
{
public:
    /// What happens in the store, for an observer on another thread: each is called on the credential queue.
    struct Observer
    {
        /// A call to the store began; `close` ends it early.
        std::function<void()> callBegan;
        std::function<void()> callEnded;
        /// The sentence that says what is wrong with the place of the secrets; empty when the store answers.
        std::function<void(QString)> missing;
        /// A call was answered after others had been refused.
        std::function<void()> becameReadable;
    };

    /// `directory` is the program's configuration folder. `random` and `clock` must outlive this object; without a
    /// clock a dismissed prompt may be followed by another one at once.
    SystemCredentialStore(const QString &directory, RandomSource &random, const Clock *clock = nullptr);
    ~SystemCredentialStore() override;

    /// Before the first call.
    void setObserver(Observer observer) { m_observer = std::move(observer); }

    [[nodiscard]] CredentialStatus prepareForWriting() override;
    [[nodiscard]] CredentialStatus add(const QString &service, const QString &account,
                                       const QByteArray &value) override;
    [[nodiscard]] CredentialStatus update(const QString &service, const QString &account,
                                          const QByteArray &value) override;
    [[nodiscard]] Match copyMatching(const QString &service, const QString &account) override;
    [[nodiscard]] CredentialStatus remove(const QString &service, const QString &account) override;
    /// The place that is used or remembered.
    [[nodiscard]] Place place() const override;

    /// Looks for the store again that was missing. The status is that of the search.
    [[nodiscard]] CredentialStatus tryAgain();
    /// Forgets which store has the secrets, and uses the one that answers now. A damaged or locked away embedded store
    /// is set aside. Returns `credentialSuccess` when a store answers.
    [[nodiscard]] CredentialStatus useStoreAtHand();
    /// Ends the running call, and refuses all later ones. Any thread may call it.
    void close();

private:
    class Call;
    /// What an answer of the store means for the memory.
    enum class Evidence { IsOurs, None };
    enum class Silence { IsMissing, IsAbsent };

    [[nodiscard]] CredentialStatus ask(Evidence evidence,
                                       const std::function<CredentialStatus(CredentialStore &)> &question);
    [[nodiscard]] CredentialStatus askOnce(const std::function<CredentialStatus(CredentialStore &)> &question);
    /// Chooses the store if none is in use. `credentialSuccess` when one is.
    [[nodiscard]] CredentialStatus choose(Silence ofKeyring = Silence::IsMissing);
    [[nodiscard]] CredentialStatus chooseFirst(Silence ofKeyring);
    [[nodiscard]] CredentialStatus chooseRememberedKeyring();
    [[nodiscard]] CredentialStatus chooseEmbedded();
    [[nodiscard]] CredentialStatus use(CredentialStore &store, const QString &logLine);
    [[nodiscard]] CredentialStatus reportMissing(const QString &sentence);
    void remember();
    void noteAnswer(CredentialStatus status);
    [[nodiscard]] bool isClosed() const;
    [[nodiscard]] QString databasePath() const;

    QString m_directory;
    RandomSource &m_random;
    Observer m_observer;
    std::shared_ptr<GCancellable> m_end; ///< cancelled when this is closed
    SecretServiceCredentialStore m_keyring;
    EmbeddedCredentialStore m_embedded;
    CredentialStore *m_inUse = nullptr;
    std::optional<RememberedStore> m_remembered; ///< read at the first call
    bool m_isMissing = false;
    bool m_wasRefused = false;
    /// Which line was logged last, so that a store found again is reported and others are not.
    QString m_lastLine;
    std::atomic<RememberedStore::Kind> m_kind = RememberedStore::Kind::None; ///< written on the queue only
};

} // namespace quillhaven
