// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

namespace quillhaven {

/// Whether the store of the secrets answers in this session. Main thread only.
class CredentialStoreState : public QObject
{
    Q_OBJECT

public:
    enum class Phase {
        Usable,  ///< it answers, or has not been asked yet
        Waiting, ///< a call has been unanswered for a while; the store may be asking the user something
        Missing, ///< nothing is read or written until `tryAgain` succeeds: every call is `credentialNotAvailable`
    };

    using QObject::QObject;

    [[nodiscard]] Phase phase() const { return m_phase; }
    /// While the phase is Missing: a sentence that says where the secrets are, and what is wrong with that place.
    [[nodiscard]] QString sentence() const { return m_sentence; }

    /// Looks for the store again.
    virtual void tryAgain() = 0;
    /// Forgets which store has the secrets, and uses the one that answers now. What is in the former store is not found
    /// any more; it stays there.
    virtual void useStoreAtHand() = 0;

Q_SIGNALS:
    void changed();
    /// The store answers after it had refused to: what it could not answer may be asked again.
    void becameReadable();

protected:
    void setPhase(Phase phase, const QString &sentence = {});

private:
    Phase m_phase = Phase::Usable;
    QString m_sentence;
};

} // namespace quillhaven
