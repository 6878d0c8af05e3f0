// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"
#include "catalogue/ProtectedItem.h"
#include "credentials/PasswordInputDialogManager.h"
#include "presentation/dashboard/DashboardContext.h"
#include "presentation/dialogs/BulkFilePickerModel.h"
#include "presentation/dialogs/OperationProgress.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "support/ProgressCallback.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>

namespace quillhaven {

class Clock;
class FilePanels;

/// The dashboard's operations on several items at once, and their sheets. Each operation is a job on the main thread
/// that shows its progress until it ends. Main thread only.
class BulkActions : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of the dashboard")

public:
    BulkActions(const DashboardContext &context, FilePanels &panels, const Clock &clock, QObject *parent = nullptr);

    [[nodiscard]] OperationProgress *progress() { return &m_progress; }
    [[nodiscard]] BulkFilePickerModel *picker() { return &m_picker; }

    /// Unlocks the selected items that are locked, or locks those that are unlocked. If there are none, nothing happens
    /// and the selection is kept.
    Q_INVOKABLE void performBulkUnlock();
    Q_INVOKABLE void performBulkLock();
    /// Locks every unlocked item.
    Q_INVOKABLE void lockEverything();
    /// Asks, then removes the protection of the selected items.
    Q_INVOKABLE void performBulkRemove();
    /// "Bulk Protect": opens the sheet in which the user chooses the items.
    Q_INVOKABLE void showBulkFilePicker();
    /// Asks how to protect the items.
    void performBulkProtect(const QStringList &paths);
    void showBulkPasswordDialog(const QStringList &paths, bool useTouchID);

private:
    using Condition = std::function<bool(const ProtectedItem &item)>;
    using Operation = std::function<QCoro::Task<>(QList<ProtectedItem> items, ProgressCallback progressCallback)>;
    struct Job
    {
        QStringList ids;
        Condition isDue = {}; ///< checked after the master password was entered, on the current records
        Operation operation = {};
        bool endsSelection = true;
    };

    void lock(const QList<ProtectedItem> &items, bool endsSelection);
    /// `endsSelection` says whether a success ends the selection: not for items that were not chosen by it.
    void start(const QList<ProtectedItem> &items, Condition isDue, Operation operation, bool endsSelection = true);
    [[nodiscard]] QCoro::Task<> run(Job job);
    // The coroutines that continue after each question.
    [[nodiscard]] QCoro::Task<> removeOnceConfirmed(QList<ProtectedItem> items, Answer<DialogEnd> answer);
    [[nodiscard]] QCoro::Task<> continueWithMethod(QStringList paths,
                                                   Answer<ProtectionMethodDialogManager::Choice> choice);
    [[nodiscard]] QCoro::Task<> protectOnceConfirmed(QStringList paths, Answer<DialogEnd> answer);
    [[nodiscard]] QCoro::Task<> protectByPassword(QStringList paths, Answer<PasswordInputDialogManager::Reply> reply);

    [[nodiscard]] QCoro::Task<> bulkProtect(QStringList paths, QString password, bool useTouchID);
    /// The current records that are due, except those which another job of the window has begun to work on.
    [[nodiscard]] QList<ProtectedItem> liveItems(const Job &job) const;

    DashboardContext m_context;
    OperationProgress m_progress;
    BulkFilePickerModel m_picker;
};

} // namespace quillhaven
