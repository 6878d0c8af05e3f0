// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/BulkActions.h"

#include "async/Jobs.h"
#include "credentials/MasterPasswordManager.h"
#include "credentials/PasswordInputDialogManager.h"
#include "engine/QuillhavenManager.h"
#include "presentation/dashboard/BusyItems.h"
#include "presentation/dashboard/DashboardErrors.h"
#include "presentation/dashboard/ItemSelection.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"

namespace quillhaven {

namespace {

QString itemCount(qsizetype count)
{
    return QString::number(count) + QStringLiteral(" Items");
}

QString protectionTitle(const QStringList &paths)
{
    return QStringLiteral("Set Protection for ") + itemCount(paths.size());
}

} // namespace

BulkActions::BulkActions(const DashboardContext &context, FilePanels &panels, QObject *parent)
    : QObject(parent),
      m_context(context),
      m_picker(panels, [&manager = context.quillhavenManager](const QStringList &paths) {
          return manager.protectablePaths(paths);
      })
{
    m_picker.onFilesSelected = [this](const QStringList &paths) { performBulkProtect(paths); };
}

void BulkActions::performBulkUnlock()
{
    start(
        m_context.selection.getSelectedItems(false), [](const ProtectedItem &item) { return !item.isMounted; },
        [this](QList<ProtectedItem> items, ProgressCallback callback) {
            return m_context.quillhavenManager.bulkUnlockItems(std::move(items), std::move(callback));
        });
}

void BulkActions::performBulkLock()
{
    start(
        m_context.selection.getSelectedItems(true), [](const ProtectedItem &item) { return item.isMounted; },
        [this](QList<ProtectedItem> items, ProgressCallback callback) {
            return m_context.quillhavenManager.bulkLockItems(std::move(items), std::move(callback));
        });
}

void BulkActions::performBulkRemove()
{
    const QList<ProtectedItem> items = m_context.selection.getSelectedItems();
    if (items.isEmpty()) {
        return;
    }
    ConfirmationDialogManager &dialog = m_context.dialogs.confirmation;
    dialog.setTitle(QStringLiteral("Remove Protection from ") + itemCount(items.size()));
    dialog.setMessage(QStringLiteral("This will restore all selected items to their original locations and remove them "
                                     "from Quillhaven's protection. Your original files will NOT be deleted."));
    dialog.setConfirmTitle(QStringLiteral("Remove Protection"));
    dialog.setCancelTitle(QStringLiteral("Cancel"));
    dialog.setIsDestructive(true);
    dialog.setShowCancelButton(true);
    dialog.onConfirm = [this, items] {
        start(
            items, [](const ProtectedItem &) { return true; },
            [this](QList<ProtectedItem> due, ProgressCallback callback) {
                return m_context.quillhavenManager.bulkRemoveProtection(std::move(due), std::move(callback));
            });
    };
    dialog.onCancel = {};
    dialog.setIsPresented(true);
}

void BulkActions::start(const QList<ProtectedItem> &items, Condition isDue, Operation operation)
{
    Job job{.ids = {}, .isDue = std::move(isDue), .operation = std::move(operation), .busy = {}};
    for (const ProtectedItem &item : items) {
        if (!m_context.items.isBusy(item.id)) {
            job.ids.append(item.id);
        }
    }
    if (job.ids.isEmpty()) {
        return;
    }
    job.busy = std::make_shared<BusyItems>(m_context.items, job.ids);
    startJob([this, job = std::move(job)] { return run(job); });
}

QCoro::Task<> BulkActions::run(Job job)
{
    std::exception_ptr failure;
    try {
        const ShownOperation shown(m_progress);
        // The engine's own check finds the session open then.
        if (co_await m_context.masterPasswordManager.requireAuthenticationOrCancel()) {
            const QList<ProtectedItem> due = liveItems(job);
            if (!due.isEmpty()) {
                co_await job.operation(due, shown.callback());
            }
        }
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure) {
        m_context.errors.report(failure);
    } else {
        m_context.selection.clearSelection();
    }
}

QList<ProtectedItem> BulkActions::liveItems(const Job &job) const
{
    QHash<QString, ProtectedItem> live;
    for (const ProtectedItem &item : m_context.quillhavenManager.protectedItems()) {
        live.insert(item.id, item);
    }
    QList<ProtectedItem> items;
    for (const QString &id : job.ids) {
        const auto item = live.constFind(id);
        if (item != live.constEnd() && job.isDue(*item)) {
            items.append(*item);
        }
    }
    return items;
}

void BulkActions::showBulkFilePicker()
{
    if (!m_picker.isPresented()) {
        m_picker.show();
    }
}

void BulkActions::performBulkProtect(const QStringList &paths)
{
    if (paths.isEmpty()) {
        return;
    }
    ProtectionMethodDialogManager &dialog = m_context.dialogs.protectionMethod;
    dialog.setTitle(QStringLiteral("Protect ") + itemCount(paths.size()));
    dialog.onPasswordProtection = [this, paths] { showBulkPasswordDialog(paths, false); };
    dialog.onTouchIDProtection = [this, paths] { showBulkPasswordDialog(paths, true); };
    dialog.onCancel = [this] { startJob([this] { return endSession(); }); };
    dialog.setIsPresented(true);
}

void BulkActions::showBulkPasswordDialog(const QStringList &paths, bool useTouchID)
{
    if (useTouchID) {
        ConfirmationDialogManager &dialog = m_context.dialogs.confirmation;
        dialog.setTitle(protectionTitle(paths));
        dialog.setMessage(QStringLiteral("These items will be protected with Touch ID."));
        dialog.setConfirmTitle(QStringLiteral("Protect"));
        dialog.setCancelTitle(QStringLiteral("Cancel"));
        dialog.setIsDestructive(false);
        dialog.setShowCancelButton(true);
        dialog.onConfirm = [this, paths] { startJob([this, paths] { return bulkProtect(paths, QString(), true); }); };
        dialog.onCancel = {};
        dialog.setIsPresented(true);
        return;
    }
    PasswordInputDialogManager &dialog = m_context.dialogs.passwordInput;
    dialog.setTitle(protectionTitle(paths));
    dialog.setMessage(QStringLiteral("Enter a password to protect these items:"));
    dialog.setRequiresConfirmation(true);
    dialog.onConfirm = [this, paths](const QString &password) {
        startJob([this, paths, password] { return bulkProtect(paths, password, false); });
    };
    dialog.onCancel = [this] { startJob([this] { return endSession(); }); };
    dialog.setIsPresented(true);
}

QCoro::Task<> BulkActions::bulkProtect(QStringList paths, QString password, bool useTouchID)
{
    if (!co_await m_context.masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    std::exception_ptr failure;
    try {
        const ShownOperation shown(m_progress);
        co_await m_context.quillhavenManager.bulkProtectItems(paths, password, useTouchID, shown.callback());
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure) {
        m_context.errors.report(failure);
    }
}

QCoro::Task<> BulkActions::endSession()
{
    m_context.masterPasswordManager.endSession();
    co_return;
}

} // namespace quillhaven
