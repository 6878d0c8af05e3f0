// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"
#include "credentials/KeychainManager.h"
#include "platform/Clock.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <vector>

QT_BEGIN_NAMESPACE
class QThreadPool;
QT_END_NAMESPACE

namespace quillhaven {

class MasterPasswordDialogManager;
struct Platform;

/// The optional password that guards every privileged operation, and the session that it opens. The session ends after
/// 300 seconds, or earlier when a guarded operation has succeeded. Main thread only; the credential store is accessed
/// on its own queue, so that a slow one never blocks the window.
class MasterPasswordManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isAuthenticated READ isAuthenticated NOTIFY isAuthenticatedChanged)
    Q_PROPERTY(bool hasMasterPassword READ hasMasterPassword NOTIFY hasMasterPasswordChanged)

public:
    /// Starts to ask the store whether a master password exists; the guards wait for its answer. The references must
    /// outlive this object.
    MasterPasswordManager(const Platform &platform, MasterPasswordDialogManager &dialogManager,
                          QObject *parent = nullptr);
    ~MasterPasswordManager() override;

    /// Defined in the program only.
    static MasterPasswordManager &shared();

    /// Whether a session is open.
    [[nodiscard]] bool isAuthenticated() const { return m_isAuthenticated; }
    /// Whether an entry exists in the store. False until the store has answered at start, and if it could not be read;
    /// a store that answers later is read again.
    [[nodiscard]] bool hasMasterPassword() const { return m_hasMasterPassword; }

    /// Stores a new master password or replaces the old one. Throws a MasterPasswordError if it is empty or weak, or
    /// the store's KeychainError; nothing is changed then.
    [[nodiscard]] QCoro::Task<> setMasterPassword(QString password);
    /// Removes the master password and closes the session. Throws the store's KeychainError.
    [[nodiscard]] QCoro::Task<> removeMasterPassword();
    /// Returns true if the password is correct, and opens a session; false if it is wrong. Throws
    /// MasterPasswordError::noMasterPassword or the store's KeychainError.
    [[nodiscard]] QCoro::Task<bool> authenticate(QString password);
    /// The guard: true if the operation may continue, false if the user cancelled and it must stop silently. Never
    /// throws.
    [[nodiscard]] QCoro::Task<bool> requireAuthenticationOrCancel();

    /// Ends the session and its timer. Every guarded operation calls it when it has succeeded.
    void endSession();
    /// Whether there is a timer of the session. One that has fired is kept until the next session starts or ends.
    [[nodiscard]] bool hasAuthenticationTimer() const { return m_authenticationTimer != nullptr; }

Q_SIGNALS:
    void isAuthenticatedChanged();
    void hasMasterPasswordChanged();

private:
    /// The dialog as shown for one caller.
    struct Showing
    {
        Answer<bool> answer;
        bool isOver = false; ///< answered or cancelled; stays false if another caller's replaced it
    };

    // Static, since this object may be destroyed before the store answers.
    [[nodiscard]] static QCoro::Task<> readAtStart(QPointer<MasterPasswordManager> self);
    void startReading();
    /// Reads again if the store had refused the read at start.
    void readAgain();
    [[nodiscard]] static QCoro::Task<> checkEntered(QPointer<MasterPasswordManager> self, QString entered,
                                                    std::shared_ptr<Showing> showing);
    /// Ends when the store has answered whether a master password exists.
    [[nodiscard]] QCoro::Task<> waitForStart();
    void showAuthenticationDialog(std::shared_ptr<Showing> showing);
    void startAuthenticationTimer();
    void setIsAuthenticated(bool value);
    void setHasMasterPassword(bool value);

    QThreadPool &m_credentialQueue;
    Clock &m_clock;
    MasterPasswordDialogManager &m_dialogManager;
    std::shared_ptr<KeychainManager> m_keychain;
    bool m_isAuthenticated = false;
    bool m_hasMasterPassword = false;
    bool m_hasReadAtStart = false; ///< false also while it is read again
    bool m_couldNotRead = false;   ///< the store refused to say whether there is one
    std::vector<Answer<bool>> m_waitingForStart;
    std::shared_ptr<Showing> m_showing; ///< the latest one
    std::unique_ptr<RunningTimer> m_authenticationTimer;
};

} // namespace quillhaven
