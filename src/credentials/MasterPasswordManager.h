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

/// The optional password in front of every privileged operation, and the session that a right answer opens: at most
/// 300 seconds, and no longer than the next guarded operation that succeeds. Main thread only; the credential store is
/// asked on its own queue, so that a slow one never blocks the window.
class MasterPasswordManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isAuthenticated READ isAuthenticated NOTIFY isAuthenticatedChanged)
    Q_PROPERTY(bool hasMasterPassword READ hasMasterPassword NOTIFY hasMasterPasswordChanged)

public:
    /// Starts to ask the store whether a master password exists; until it has answered, guards wait for it. The
    /// references outlive this object.
    MasterPasswordManager(const Platform &platform, MasterPasswordDialogManager &dialogManager,
                          QObject *parent = nullptr);
    ~MasterPasswordManager() override;

    /// Defined by the program alone.
    static MasterPasswordManager &shared();

    /// A session is open.
    [[nodiscard]] bool isAuthenticated() const { return m_isAuthenticated; }
    /// An entry exists in the store. False until the store has answered at start, and when it failed to.
    [[nodiscard]] bool hasMasterPassword() const { return m_hasMasterPassword; }

    /// Stores a new master password or replaces the old one. Throws a MasterPasswordError for an empty or weak one, or
    /// the store's KeychainError; nothing has changed then.
    [[nodiscard]] QCoro::Task<> setMasterPassword(QString password);
    /// Removes it and closes the session. Throws the store's KeychainError.
    [[nodiscard]] QCoro::Task<> removeMasterPassword();
    /// True when the password was right and a session is open, false when it was wrong. Throws
    /// MasterPasswordError::noMasterPassword or the store's KeychainError.
    [[nodiscard]] QCoro::Task<bool> authenticate(QString password);
    /// The guard: true to go on, false when the user cancelled and the operation is to stop silently. Never throws.
    [[nodiscard]] QCoro::Task<bool> requireAuthenticationOrCancel();

    /// Closes the session and its timer, as every guarded operation does when it has succeeded.
    void endSession();
    /// Whether the session's timer has not been cleared; a fired one stays until the next start or end.
    [[nodiscard]] bool hasAuthenticationTimer() const { return m_authenticationTimer != nullptr; }

Q_SIGNALS:
    void isAuthenticatedChanged();
    void hasMasterPasswordChanged();

private:
    /// One caller's turn at the dialog.
    struct Showing
    {
        Answer<bool> answer;
        bool isOver = false; ///< answered or cancelled; a turn that another one replaced is not
    };

    // Static: what they belong to may be gone before the store answers.
    [[nodiscard]] static QCoro::Task<> readAtStart(QPointer<MasterPasswordManager> self);
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
    bool m_hasReadAtStart = false;
    std::vector<Answer<bool>> m_waitingForStart;
    std::shared_ptr<Showing> m_showing; ///< the latest turn
    std::unique_ptr<RunningTimer> m_authenticationTimer;
};

} // namespace quillhaven
