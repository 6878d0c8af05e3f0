// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Platform.h"

#include <QCoroTask>
#include <QObject>

#include <list>
#include <memory>
#include <optional>

namespace quillhaven {

class ApplicationPresence;
class ConfirmationDialogManager;
class DialogModel;
class MasterPasswordDialogManager;
class MasterPasswordManager;
class PasswordInputDialogManager;
class ProtectionMethodDialogManager;
class QuillhavenManager;
class RunningTimer;

/// The dialogs of handed-over actions.
struct HandOverDialogs
{
    ConfirmationDialogManager &confirmation;
    ProtectionMethodDialogManager &protectionMethod;
    PasswordInputDialogManager &passwordInput;
    MasterPasswordDialogManager &masterPassword;
};

/// Carries out what another program asks for: a record in the shared domain, which the menus of the file managers
/// write, or an address that the desktop passes on. Both name an action ("protect", "unlock", "lock" or "shred") and a
/// path. Anyone may write them, so every action asks what it asks in the window, too. Main thread only.
///
/// An action that comes while the user answers another question waits for its end, since its own question would
/// replace that one; of several the last one. Among handed-over actions the later question replaces the earlier.
class HandedOverActions : public QObject
{
    Q_OBJECT

public:
    /// The references must outlive this object, and this object must outlive the jobs that it starts.
    HandedOverActions(const Platform &platform, QuillhavenManager &quillhavenManager,
                      MasterPasswordManager &masterPasswordManager, ApplicationPresence &presence,
                      const HandOverDialogs &dialogs, QObject *parent = nullptr);
    ~HandedOverActions() override;

    /// Takes the record, if there is one, and carries it out half a second later. A record of 30 seconds or older is
    /// thrown away, and one that lacks something stays.
    void checkForPendingActions();
    /// Carries out such an address; any other is ignored.
    void handleURLScheme(const QString &url);

    /// Whether an address asks for nothing but the main window.
    [[nodiscard]] static bool asksForMainWindow(const QString &url)
    {
        return url.contains(QStringLiteral("show-main-window"));
    }

private:
    using Handler = QCoro::Task<> (HandedOverActions::*)(QString);
    /// Null for an unknown word.
    [[nodiscard]] static Handler handlerFor(const QString &action);

    struct Action
    {
        QString word;
        QString path;
    };

    void activate();
    void carryOut(const Action &action);
    [[nodiscard]] bool isUserAnsweringSomethingElse() const;
    [[nodiscard]] bool isAnyQuestionOpen() const;
    void followQuestions();
    [[nodiscard]] QCoro::Task<> perform(Action action);
    [[nodiscard]] QCoro::Task<> handleProtectRequest(QString path);
    [[nodiscard]] QCoro::Task<> handleUnlockRequest(QString path);
    [[nodiscard]] QCoro::Task<> handleLockRequest(QString path);
    [[nodiscard]] QCoro::Task<> handleShredRequest(QString path);
    [[nodiscard]] QCoro::Task<> showPasswordDialog(QString path, bool useTouchID);
    [[nodiscard]] QCoro::Task<> protect(QString path, QString password, bool useTouchID);
    void showFailure(const QString &title, const QString &description);
    void runLater(std::chrono::milliseconds delay, std::function<void()> action);

    Platform m_platform;
    QuillhavenManager &m_quillhavenManager;
    MasterPasswordManager &m_masterPasswordManager;
    ApplicationPresence &m_presence;
    HandOverDialogs m_dialogs;
    QList<const DialogModel *> m_questions;
    std::optional<Action> m_waiting;
    int m_running = 0;             ///< handlers
    bool m_isAskingItself = false; ///< a handler has ended with its question open
    std::list<std::unique_ptr<RunningTimer>> m_timers;
};

} // namespace quillhaven
