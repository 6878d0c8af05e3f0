// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/BulkActions.h"

#include "async/Jobs.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/QuillhavenManager.h"
#include "presentation/dashboard/BusyItems.h"
#include "presentation/dashboard/ItemSelection.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/OperationErrors.h"

namespace quillhaven {

namespace {

QString itemCount(qsizetype count)
{
    return QString::number(count) + QStringLiteral(" Items");
}

} // namespace

BulkActions::BulkActions(const DashboardContext &context, FilePanels &panels, const Clock &clock, QObject *parent)
    : QObject(parent),
      m_context(context),
      m_progress(clock),
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
    lock(m_context.selection.getSelectedItems(true), true);
}

void BulkActions::lockEverything()
{
    QList<ProtectedItem> unlocked;
    for (const ProtectedItem &item : m_context.quillhavenManager.protectedItems()) {
        if (item.isMounted) {
            unlocked.append(item);
        }
    }
    lock(unlocked, false);
}

void BulkActions::lock(const QList<ProtectedItem> &items, bool endsSelection)
{
    start(
        items, [](const ProtectedItem &item) { return item.isMounted; },
        [this](QList<ProtectedItem> items, ProgressCallback callback) {
            return m_context.quillhavenManager.bulkLockItems(std::move(items), std::move(callback));
        },
        endsSelection);
}

void BulkActions::performBulkRemove()
{
    const QList<ProtectedItem> items = m_context.selection.getSelectedItems();
    if (items.isEmpty()) {
        return;
    }
    const auto answer = m_context.dialogs.confirmation.ask(
        {.title = QStringLiteral("Remove Protection from ") + itemCount(items.size()),
         .message = QStringLiteral("This will restore all selected items to their original locations and remove them "
                                   "from Quillhaven's protection. Your original files will NOT be deleted."),
         .confirmTitle = QStringLiteral("Remove Protection"),
         .isDestructive = true});
    startJob([this, items, answer] { return removeOnceConfirmed(items, answer); });
}

QCoro::Task<> BulkActions::removeOnceConfirmed(QList<ProtectedItem> items, Answer<DialogEnd> answer)
{
    if (co_await answer == DialogEnd::Confirmed) {
        start(
            items, [](const ProtectedItem &) { return true; },
            [this](QList<ProtectedItem> due, ProgressCallback callback) {
                return m_context.quillhavenManager.bulkRemoveProtection(std::move(due), std::move(callback));
            });
    }
}

void BulkActions::start(const QList<ProtectedItem> &items, Condition isDue, Operation operation, bool endsSelection)
{
    Job job{.ids = {}, .isDue = std::move(isDue), .operation = std::move(operation), .endsSelection = endsSelection};
    for (const ProtectedItem &item : items) {
        if (!m_context.rows.isMarkedBusy(item.id)) {
            job.ids.append(item.id);
        }
    }
    if (!job.ids.isEmpty()) {
        startJob([this, job = std::move(job)] { return run(job); });
    }
}

QCoro::Task<> BulkActions::run(Job job)
{
    std::exception_ptr failure;
    try {
        const ShownOperation shown(m_progress);
        // This opens the session, so the engine's own check does not ask again.
        if (co_await m_context.masterPasswordManager.requireAuthenticationOrCancel()) {
            const QList<ProtectedItem> due = liveItems(job);
            if (due.isEmpty()) {
                m_context.masterPasswordManager.endSession();
            } else {
                const BusyItems busy(m_context, due, [&shown] { shown.hide(); });
                co_await job.operation(due, shown.callback());
            }
        }
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure) {
        m_context.errors.report(failure);
    } else if (job.endsSelection) {
        m_context.selection.clearSelection();
    }
}

QList<ProtectedItem> BulkActions::liveItems(const Job &job) const
{
    QList<ProtectedItem> items = m_context.quillhavenManager.catalogue().items(job.ids);
    items.removeIf([&](const ProtectedItem &item) { return !job.isDue(item) || m_context.rows.isMarkedBusy(item.id); });
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
    const auto choice = m_context.dialogs.protectionMethod.ask(QStringLiteral("Protect ") + itemCount(paths.size()));
    startJob([this, paths, choice] { return continueWithMethod(paths, choice); });
}

QCoro::Task<> BulkActions::continueWithMethod(QStringList paths, Answer<ProtectionMethodDialogManager::Choice> choice)
{
    using Choice = ProtectionMethodDialogManager::Choice;
    switch (co_await choice) {
    case Choice::Password:
        showBulkPasswordDialog(paths, false);
        break;
    case Choice::TouchID:
        showBulkPasswordDialog(paths, true);
        break;
    case Choice::Cancelled:
        m_context.masterPasswordManager.endSession();
        break;
    case Choice::Replaced:
        break;
    }
}

void BulkActions::showBulkPasswordDialog(const QStringList &paths, bool useTouchID)
{
    const QString title = QStringLiteral("Set Protection for ") + itemCount(paths.size());
    if (useTouchID) {
        const auto answer = m_context.dialogs.confirmation.ask(
            {.title = title,
             .message = QStringLiteral("These items will be protected with Touch ID."),
             .confirmTitle = QStringLiteral("Protect")});
        startJob([this, paths, answer] { return protectOnceConfirmed(paths, answer); });
    } else {
        const auto reply =
            m_context.dialogs.passwordInput.ask({.title = title,
                                                 .message = QStringLiteral("Enter a password to protect these items:"),
                                                 .requiresConfirmation = true});
        startJob([this, paths, reply] { return protectByPassword(paths, reply); });
    }
}

QCoro::Task<> BulkActions::protectOnceConfirmed(QStringList paths, Answer<DialogEnd> answer)
{
    if (co_await answer == DialogEnd::Confirmed) {
        co_await bulkProtect(paths, QString(), true);
    }
}

QCoro::Task<> BulkActions::protectByPassword(QStringList paths, Answer<PasswordInputDialogManager::Reply> reply)
{
    const PasswordInputDialogManager::Reply given = co_await reply;
    if (given.end == DialogEnd::Confirmed) {
        co_await bulkProtect(paths, given.password, false);
    } else if (given.end == DialogEnd::Cancelled) {
        m_context.masterPasswordManager.endSession();
    }
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

} // namespace quillhaven
