// SPDX-License-Identifier: GPL-3.0-or-later

// What the main window starts. Each action is a job on the main thread that passes the master password's guard first;
// its failure reaches the user through `DashboardErrors`.

#include "async/Jobs.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/QuillhavenManager.h"
#include "platform/Clock.h"
#include "platform/FilePanels.h"
#include "presentation/dashboard/BusyItems.h"
#include "presentation/dashboard/DashboardViewModel.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "support/Paths.h"
#include "support/printLogger.h"

#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>

namespace quillhaven {

using namespace std::chrono_literals;

namespace {

constexpr auto copySuccessDuration = 2s;

} // namespace

/// Names an item under the toolbar for as long as it lives.
class DashboardViewModel::ProtectingName
{
public:
    ProtectingName(DashboardViewModel &dashboard, const QString &name) : m_dashboard(dashboard), m_name(name)
    {
        m_dashboard.m_protectingNames.append(m_name);
        Q_EMIT m_dashboard.protectingTextChanged();
    }
    ~ProtectingName()
    {
        m_dashboard.m_protectingNames.removeOne(m_name);
        Q_EMIT m_dashboard.protectingTextChanged();
    }
    ProtectingName(const ProtectingName &) = delete;
    ProtectingName &operator=(const ProtectingName &) = delete;

private:
    DashboardViewModel &m_dashboard;
    QString m_name;
};

void DashboardViewModel::protectNewItem()
{
    if (m_showingFilePicker) {
        return;
    }
    m_showingFilePicker = true;
    Q_EMIT showingFilePickerChanged();
    startJob([this] { return runFilePicker(); });
}

QCoro::Task<> DashboardViewModel::runFilePicker()
{
    std::optional<QString> chosen;
    try {
        const OpenPanelRequest request{.canChooseFiles = true,
                                       .canChooseDirectories = true,
                                       .message = {},
                                       .prompt = {},
                                       .directory = {},
                                       .preselected = {}};
        chosen = co_await m_platform.panels.open(request);
    } catch (...) {
        m_errors.report(std::current_exception());
    }
    m_showingFilePicker = false;
    Q_EMIT showingFilePickerChanged();
    if (chosen) {
        handleFileSelection(*chosen);
    }
}

void DashboardViewModel::handleFileSelection(const QString &path)
{
    const QuillhavenManager::CanProtect answer = m_quillhavenManager.canProtectItem(path);
    if (answer.canProtect) {
        showProtectionDialog(path);
    } else {
        m_errors.showError(answer.errorMessage.value_or(QStringLiteral("Cannot protect this file")));
    }
}

void DashboardViewModel::showProtectionDialog(const QString &path)
{
    startJob([this, path] { return askForProtectionMethod(path); });
}

QCoro::Task<> DashboardViewModel::askForProtectionMethod(QString path)
{
    if (!co_await m_masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    using Choice = ProtectionMethodDialogManager::Choice;
    const auto choice = m_dialogs.protectionMethod.ask(QStringLiteral("Protect ") + lastPathComponent(path));
    switch (co_await choice) {
    case Choice::Password:
        showPasswordDialog(path, false);
        break;
    case Choice::TouchID:
        showPasswordDialog(path, true);
        break;
    case Choice::Cancelled:
        m_masterPasswordManager.endSession();
        break;
    case Choice::Replaced:
        break;
    }
}

void DashboardViewModel::showPasswordDialog(const QString &path, bool useTouchID)
{
    if (useTouchID) {
        startJob([this, path] { return protect(path, QString(), true); });
        return;
    }
    const auto reply = m_dialogs.passwordInput.ask({.title = QStringLiteral("Set Protection"),
                                                    .message = QStringLiteral("Enter a password to protect this item:"),
                                                    .requiresConfirmation = true});
    startJob([this, path, reply] { return protectByPassword(path, reply); });
}

QCoro::Task<> DashboardViewModel::protectByPassword(QString path, Answer<PasswordInputDialogManager::Reply> reply)
{
    const PasswordInputDialogManager::Reply given = co_await reply;
    if (given.end == DialogEnd::Confirmed) {
        co_await protect(path, given.password, false);
    } else if (given.end == DialogEnd::Cancelled) {
        m_masterPasswordManager.endSession();
    }
}

QCoro::Task<> DashboardViewModel::protect(QString path, QString password, bool useTouchID)
{
    const QString name = lastPathComponent(path);
    const ProtectingName marked(*this, name);
    try {
        co_await m_quillhavenManager.protectItem(path, password, useTouchID);
        if (useTouchID) {
            printLogger(QStringLiteral("✅ Protected with Touch ID: ") + name);
        }
    } catch (...) {
        m_errors.report(std::current_exception());
    }
}

void DashboardViewModel::onToggleLock(const QString &id)
{
    const std::optional<ProtectedItem> shown = liveItem(id);
    if (!shown || m_rows.isBusy(id)) {
        return;
    }
    startJob([this, id, wasMounted = shown->isMounted] { return toggleLock(id, wasMounted); });
}

QCoro::Task<> DashboardViewModel::toggleLock(QString id, bool wasMounted)
{
    if (!co_await m_masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    // Something else may have locked or unlocked it meanwhile, and locking a locked item destroys its data.
    const std::optional<ProtectedItem> item = liveItem(id);
    if (!item || item->isMounted != wasMounted || m_rows.isBusy(id)) {
        co_return;
    }
    const BusyItems busy(m_rows, {id});
    try {
        if (wasMounted) {
            co_await m_quillhavenManager.lockItem(*item);
        } else {
            co_await m_quillhavenManager.unlockItem(*item);
        }
    } catch (...) {
        m_errors.report(std::current_exception());
    }
}

void DashboardViewModel::askToRemove(const QString &id)
{
    const std::optional<ProtectedItem> item = liveItem(id);
    if (item && !m_rows.isBusy(id)) {
        m_removeDialogManager.show(item->originalName, [this, id] { onRemove(id); }, {});
    }
}

void DashboardViewModel::onRemove(const QString &id)
{
    startJob([this, id] { return remove(id); });
}

QCoro::Task<> DashboardViewModel::remove(QString id)
{
    if (!co_await m_masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    const std::optional<ProtectedItem> item = liveItem(id);
    if (!item || m_rows.isBusy(id)) {
        co_return;
    }
    const BusyItems busy(m_rows, {id});
    try {
        co_await m_quillhavenManager.removeProtection(*item);
    } catch (...) {
        m_errors.report(std::current_exception());
    }
}

void DashboardViewModel::deleteFilteredItems(const QList<int> &offsets)
{
    QStringList ids;
    for (const int offset : offsets) {
        if (offset >= 0 && offset < m_items.count()) {
            ids.append(m_items.idAt(offset));
        }
    }
    for (const QString &id : std::as_const(ids)) {
        onRemove(id);
    }
}

void DashboardViewModel::onDelete(int row)
{
    if (m_selection.selectedCount() > 0) {
        m_bulk.performBulkRemove();
    } else {
        deleteFilteredItems({row});
    }
}

void DashboardViewModel::duplicateAsEncryptedCopy(const QString &id)
{
    startJob([this, id] { return duplicate(id); });
}

QCoro::Task<> DashboardViewModel::duplicate(QString id)
{
    const std::optional<ProtectedItem> item = liveItem(id);
    if (!item || m_rows.isBusy(id)) {
        co_return;
    }
    const BusyItems busy(m_rows, {id});
    const auto logProgress = [](const QString &, double progress) {
        printLogger(QStringLiteral("Duplicate progress: ") + QString::number(progress));
    };
    try {
        co_await m_quillhavenManager.duplicateAsEncryptedCopy(*item, logProgress);
        printLogger(QStringLiteral("✅ Successfully duplicated: ") + item->originalName);
    } catch (...) {
        m_errors.report(std::current_exception());
    }
}

void DashboardViewModel::onDrop(const QList<QUrl> &urls)
{
    QStringList paths;
    for (const QUrl &url : urls) {
        if (url.isLocalFile()) {
            // As the panel does: a link stands for what it points to.
            const QFileInfo info(url.toLocalFile());
            paths.append(info.isSymLink() ? info.symLinkTarget() : QDir::cleanPath(info.absoluteFilePath()));
        }
    }
    if (paths.isEmpty()) {
        return;
    }
    if (paths.size() == 1) {
        handleFileSelection(paths.constFirst());
        return;
    }
    const QStringList protectable = m_quillhavenManager.protectablePaths(paths);
    if (protectable.isEmpty()) {
        m_errors.showError(QStringLiteral("None of the selected items can be protected"));
    } else {
        m_bulk.performBulkProtect(protectable);
    }
}

void DashboardViewModel::handleFinderAction(const QVariantMap &userInfo)
{
    const QVariant action = userInfo.value(QStringLiteral("action"));
    const QVariant path = userInfo.value(QStringLiteral("path"));
    if (action.metaType() != QMetaType::fromType<QString>() || path.metaType() != QMetaType::fromType<QString>()) {
        return;
    }
    if (action == QStringLiteral("protect")) {
        showProtectionDialog(path.toString());
    } else if (action == QStringLiteral("unlock")) {
        toggleLockAt(path.toString(), false);
    } else if (action == QStringLiteral("lock")) {
        toggleLockAt(path.toString(), true);
    } else if (action == QStringLiteral("shred")) {
        m_shredding.handleShredAction(path.toString());
    }
}

void DashboardViewModel::toggleLockAt(const QString &path, bool isMounted)
{
    const ProtectedItem *item = m_quillhavenManager.catalogue().itemAt(path);
    if (item && item->isMounted == isMounted) {
        onToggleLock(item->id);
    }
}

void DashboardViewModel::copyPathToClipboard(const QString &id)
{
    const std::optional<ProtectedItem> item = liveItem(id);
    if (!item) {
        return;
    }
    QGuiApplication::clipboard()->setText(item->originalPath);
    m_rows.setShowingCopySuccess(id, true);
    if (m_runningCopyTimers == 0) {
        m_copyTimers.clear();
    }
    ++m_runningCopyTimers;
    m_copyTimers.push_back(m_platform.clock.startOneShot(copySuccessDuration, [this, id] {
        --m_runningCopyTimers;
        m_rows.setShowingCopySuccess(id, false);
    }));
}

void DashboardViewModel::chooseMasterPassword()
{
    m_dialogs.masterPassword.show(
        {.title = masterPasswordText(),
         .message = QStringLiteral("Enter a strong password (8+ characters with uppercase, lowercase, and numbers):"),
         .isPasswordSetting = true},
        [this](const QString &entered) { startJob([this, entered] { return setMasterPassword(entered); }); });
}

QCoro::Task<> DashboardViewModel::setMasterPassword(QString password)
{
    try {
        co_await m_masterPasswordManager.setMasterPassword(password);
    } catch (...) {
        m_errors.report(std::current_exception());
    }
}

} // namespace quillhaven
