// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/ProtectActions.h"

#include "async/Jobs.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/QuillhavenManager.h"
#include "platform/FilePanels.h"
#include "presentation/dashboard/BulkActions.h"
#include "presentation/dialogs/OperationErrors.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "support/DisplayName.h"
#include "support/Paths.h"
#include "support/printLogger.h"

namespace quillhaven {

/// Shows an item's name under the toolbar during its lifetime.
class ProtectActions::ProtectingName
{
public:
    ProtectingName(ProtectActions &actions, const QString &name) : m_actions(actions), m_name(name)
    {
        m_actions.m_protectingNames.append(m_name);
        Q_EMIT m_actions.protectingTextChanged();
    }
    ~ProtectingName()
    {
        m_actions.m_protectingNames.removeOne(m_name);
        Q_EMIT m_actions.protectingTextChanged();
    }
    ProtectingName(const ProtectingName &) = delete;
    ProtectingName &operator=(const ProtectingName &) = delete;

private:
    ProtectActions &m_actions;
    QString m_name;
};

ProtectActions::ProtectActions(const DashboardContext &context, BulkActions &bulk, FilePanels &panels, QObject *parent)
    : QObject(parent), m_context(context), m_bulk(bulk), m_panels(panels)
{
}

QString ProtectActions::protectingText() const
{
    if (m_protectingNames.isEmpty()) {
        return {};
    }
    if (m_protectingNames.size() == 1) {
        return QStringLiteral("Protecting “") + m_protectingNames.first() + QStringLiteral("”…");
    }
    return QStringLiteral("Protecting ") + QString::number(m_protectingNames.size()) + QStringLiteral(" items…");
}

void ProtectActions::protectNewItem()
{
    if (m_showingFilePicker) {
        return;
    }
    m_showingFilePicker = true;
    Q_EMIT showingFilePickerChanged();
    startJob([this] { return runFilePicker(); });
}

QCoro::Task<> ProtectActions::runFilePicker()
{
    std::optional<QString> chosen;
    try {
        const OpenPanelRequest request{.canChooseFiles = true, .canChooseDirectories = true};
        chosen = co_await m_panels.open(request);
    } catch (...) {
        m_context.errors.report(std::current_exception());
    }
    m_showingFilePicker = false;
    Q_EMIT showingFilePickerChanged();
    if (chosen) {
        handleFileSelection(*chosen);
    }
}

void ProtectActions::handleFileSelection(const QString &path)
{
    const QuillhavenManager::CanProtect answer = m_context.quillhavenManager.canProtectItem(path);
    if (answer.canProtect) {
        showProtectionDialog(path);
    } else {
        m_context.errors.showError(answer.errorMessage.value_or(QStringLiteral("Cannot protect this file")));
    }
}

void ProtectActions::showProtectionDialog(const QString &path)
{
    startJob([this, path] { return askForProtectionMethod(path); });
}

QCoro::Task<> ProtectActions::askForProtectionMethod(QString path)
{
    if (!co_await m_context.masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    using Choice = ProtectionMethodDialogManager::Choice;
    const auto choice =
        m_context.dialogs.protectionMethod.ask(QStringLiteral("Protect ") + displayName(lastPathComponent(path)));
    switch (co_await choice) {
    case Choice::Password:
        showPasswordDialog(path, false);
        break;
    case Choice::TouchID:
        showPasswordDialog(path, true);
        break;
    case Choice::Cancelled:
        m_context.masterPasswordManager.endSession();
        break;
    case Choice::Replaced:
        break;
    }
}

void ProtectActions::showPasswordDialog(const QString &path, bool useTouchID)
{
    if (useTouchID) {
        startJob([this, path] { return protect(path, QString(), true); });
        return;
    }
    const auto reply =
        m_context.dialogs.passwordInput.ask({.title = QStringLiteral("Set Protection"),
                                             .message = QStringLiteral("Enter a password to protect this item:"),
                                             .requiresConfirmation = true});
    startJob([this, path, reply] { return protectByPassword(path, reply); });
}

QCoro::Task<> ProtectActions::protectByPassword(QString path, Answer<PasswordInputDialogManager::Reply> reply)
{
    const PasswordInputDialogManager::Reply given = co_await reply;
    if (given.end == DialogEnd::Confirmed) {
        co_await protect(path, given.password, false);
    } else if (given.end == DialogEnd::Cancelled) {
        m_context.masterPasswordManager.endSession();
    }
}

QCoro::Task<> ProtectActions::protect(QString path, QString password, bool useTouchID)
{
    const QString name = lastPathComponent(path);
    const ProtectingName marked(*this, displayName(name));
    try {
        co_await m_context.quillhavenManager.protectItem(path, password, useTouchID);
        if (useTouchID) {
            printLogger(QStringLiteral("✅ Protected with Touch ID: ") + name);
        }
    } catch (...) {
        m_context.errors.report(std::current_exception());
    }
}

} // namespace quillhaven
