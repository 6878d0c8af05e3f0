// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/handover/HandedOverActions.h"

#include "async/Jobs.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordManager.h"
#include "credentials/PasswordInputDialogManager.h"
#include "engine/QuillhavenManager.h"
#include "platform/ApplicationPresence.h"
#include "platform/Clock.h"
#include "platform/NotificationCenter.h"
#include "platform/UserDefaults.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "settings/Settings.h"
#include "shell/handover/ActionUrl.h"
#include "support/DisplayName.h"
#include "support/LocalizedError.h"
#include "support/Paths.h"
#include "support/printLogger.h"

#include <QScopeGuard>

#include <algorithm>
#include <utility>

namespace quillhaven {

using namespace std::chrono_literals;

namespace {

constexpr double oldestSeconds = 30.0;

/// What the shared domain holds; nothing when a value is missing or has another type.
struct PendingAction
{
    QString action;
    QString path;
    double timestamp = 0; ///< seconds since 1970
};

std::optional<PendingAction> readPendingAction(const QVariantMap &record)
{
    const QVariant action = record.value(QStringLiteral("action"));
    const QVariant path = record.value(QStringLiteral("path"));
    const QVariant timestamp = record.value(QStringLiteral("timestamp"));
    const bool isNumber = timestamp.typeId() == QMetaType::Double || timestamp.typeId() == QMetaType::LongLong;
    if (action.typeId() != QMetaType::QString || path.typeId() != QMetaType::QString || !isNumber) {
        return std::nullopt;
    }
    return PendingAction{action.toString(), path.toString(), timestamp.toDouble()};
}

} // namespace

HandedOverActions::HandedOverActions(const Platform &platform, QuillhavenManager &quillhavenManager,
                                     MasterPasswordManager &masterPasswordManager, ApplicationPresence &presence,
                                     const HandOverDialogs &dialogs, QObject *parent)
    : QObject(parent),
      m_platform(platform),
      m_quillhavenManager(quillhavenManager),
      m_masterPasswordManager(masterPasswordManager),
      m_presence(presence),
      m_dialogs(dialogs),
      m_questions{&dialogs.confirmation, &dialogs.protectionMethod, &dialogs.passwordInput, &dialogs.masterPassword}
{
    for (const DialogModel *question : std::as_const(m_questions)) {
        connect(question, &DialogModel::isPresentedChanged, this, &HandedOverActions::followQuestions);
    }
}

HandedOverActions::~HandedOverActions() = default;

void HandedOverActions::checkForPendingActions()
{
    UserDefaults *suite = m_platform.defaults.suite(settings::sharedSuite);
    if (!suite) {
        return;
    }
    const std::optional<QVariantMap> record = settings::pendingAction.read(*suite);
    if (!record) {
        return;
    }
    const std::optional<PendingAction> pending = readPendingAction(*record);
    if (!pending) {
        return; // Another version may understand it.
    }
    const double now = double(m_platform.clock.now().toMSecsSinceEpoch()) / 1000;
    if (now - pending->timestamp >= oldestSeconds) {
        suite->removeObject(settings::pendingAction.key);
        return;
    }
    printLogger(QStringLiteral("📱 Processing pending action: ") + pending->action + QStringLiteral(" for path: ") +
                pending->path);
    suite->removeObject(settings::pendingAction.key);
    const QString path = filePath(pending->path);
    activate();
    runLater(500ms, [this, action = Action{pending->action, path}] {
        if (!handlerFor(action.word)) {
            printLogger(QStringLiteral("⚠️ Unknown action: ") + action.word);
        }
        carryOut(action);
    });
}

void HandedOverActions::handleURLScheme(const QString &url)
{
    const std::optional<ActionUrl> request = parseActionUrl(url);
    if (!request) {
        return;
    }
    activate();
    carryOut({request->action, request->path});
}

void HandedOverActions::carryOut(const Action &action)
{
    if (isUserAnsweringSomethingElse()) {
        m_waiting = action;
    } else {
        startJob([this, action] { return perform(action); });
    }
}

bool HandedOverActions::isAnyQuestionOpen() const
{
    return std::ranges::any_of(m_questions, &DialogModel::isPresented);
}

bool HandedOverActions::isUserAnsweringSomethingElse() const
{
    return m_running == 0 && !m_isAskingItself && isAnyQuestionOpen();
}

void HandedOverActions::followQuestions()
{
    if (isAnyQuestionOpen()) {
        return;
    }
    m_isAskingItself = false;
    if (m_waiting) {
        // The answer may be followed by another question.
        runLater(500ms, [this] {
            if (const auto action = std::exchange(m_waiting, std::nullopt)) {
                carryOut(*action);
            }
        });
    }
}

void HandedOverActions::activate()
{
    m_presence.setActivationPolicy(ApplicationPresence::ActivationPolicy::Regular);
    m_presence.activate();
}

HandedOverActions::Handler HandedOverActions::handlerFor(const QString &action)
{
    if (action == QStringLiteral("protect")) {
        return &HandedOverActions::handleProtectRequest;
    }
    if (action == QStringLiteral("unlock")) {
        return &HandedOverActions::handleUnlockRequest;
    }
    if (action == QStringLiteral("lock")) {
        return &HandedOverActions::handleLockRequest;
    }
    if (action == QStringLiteral("shred")) {
        return &HandedOverActions::handleShredRequest;
    }
    return nullptr;
}

QCoro::Task<> HandedOverActions::perform(Action action)
{
    const Handler handler = handlerFor(action.word);
    // A file function would take such a path for the one before the null character.
    if (handler && !action.path.contains(QChar(u'\0'))) {
        ++m_running;
        const auto end = qScopeGuard([this] { --m_running; });
        co_await (this->*handler)(action.path);
    }
}

QCoro::Task<> HandedOverActions::handleProtectRequest(QString path)
{
    if (!co_await m_masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    ProtectionMethodDialogManager &dialog = m_dialogs.protectionMethod;
    const auto showPasswordDialogLater = [this, path](bool useTouchID) {
        return [this, path, useTouchID] {
            startJob([this, path, useTouchID] { return showPasswordDialog(path, useTouchID); });
        };
    };
    dialog.setTitle(QStringLiteral("Protect ") + displayName(lastPathComponent(path)));
    dialog.onPasswordProtection = showPasswordDialogLater(false);
    dialog.onTouchIDProtection = showPasswordDialogLater(true);
    dialog.onCancel = [this] { m_masterPasswordManager.endSession(); };
    dialog.setIsPresented(true);
    m_isAskingItself = true;
}

QCoro::Task<> HandedOverActions::showPasswordDialog(QString path, bool useTouchID)
{
    const QString title = QStringLiteral("Set Protection");
    const auto protectLater = [this, path, useTouchID](const QString &password) {
        startJob([this, path, password, useTouchID] { return protect(path, password, useTouchID); });
    };
    if (useTouchID) {
        m_dialogs.confirmation.show({.title = title,
                                     .message = QStringLiteral("This item will be protected with Touch ID."),
                                     .confirmTitle = QStringLiteral("Protect"),
                                     .cancelTitle = QStringLiteral("Cancel")},
                                    [protectLater] { protectLater(QString()); });
    } else {
        m_dialogs.passwordInput.show({.title = title,
                                      .message = QStringLiteral("Enter a password to protect this item:"),
                                      .requiresConfirmation = true},
                                     protectLater, [this] { m_masterPasswordManager.endSession(); });
    }
    m_isAskingItself = true;
    co_return;
}

QCoro::Task<> HandedOverActions::protect(QString path, QString password, bool useTouchID)
{
    try {
        co_await m_quillhavenManager.protectItem(path, password, useTouchID);
    } catch (const std::exception &error) {
        showFailure(QStringLiteral("Protection Failed"), localizedDescription(error));
    }
}

QCoro::Task<> HandedOverActions::handleUnlockRequest(QString path)
{
    const ProtectedItem *known = m_quillhavenManager.catalogue().itemAt(path);
    if (!known) {
        co_return;
    }
    const ProtectedItem item = *known;
    try {
        co_await m_quillhavenManager.unlockItem(item);
    } catch (const std::exception &error) {
        showFailure(QStringLiteral("Unlock Failed"), localizedDescription(error));
    }
}

QCoro::Task<> HandedOverActions::handleLockRequest(QString path)
{
    const ProtectedItem *known = m_quillhavenManager.catalogue().itemAt(path);
    if (!known || !known->isMounted) {
        co_return; // The engine takes only unlocked items.
    }
    const ProtectedItem item = *known;
    try {
        co_await m_quillhavenManager.lockItem(item);
    } catch (const std::exception &error) {
        showFailure(QStringLiteral("Lock Failed"), localizedDescription(error));
    }
}

QCoro::Task<> HandedOverActions::handleShredRequest(QString path)
{
    m_platform.notifications.standard.post(
        notifications::handleFinderAction,
        {{QStringLiteral("action"), QStringLiteral("shred")}, {QStringLiteral("path"), path}});
    co_return;
}

void HandedOverActions::showFailure(const QString &title, const QString &description)
{
    m_dialogs.confirmation.show({.title = title,
                                 .message = description,
                                 .confirmTitle = QStringLiteral("OK"),
                                 .cancelTitle = QStringLiteral("Cancel"),
                                 .isDestructive = false,
                                 .showCancelButton = false});
}

void HandedOverActions::runLater(std::chrono::milliseconds delay, std::function<void()> action)
{
    const auto entry = m_timers.insert(m_timers.end(), nullptr);
    *entry = m_platform.clock.startOneShot(delay, [this, entry, action = std::move(action)] {
        action();
        m_timers.erase(entry);
    });
}

} // namespace quillhaven
