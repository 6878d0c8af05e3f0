// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/dashboard/DashboardContext.h"
#include "presentation/dialogs/RemoveProtectionDialogManager.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>
#include <vector>

namespace quillhaven {

class BulkActions;
class Clock;
class RunningTimer;
struct ProtectedItem;

/// The dashboard's operations on one protected item. Each is a job on the main thread that passes the master password's
/// guard first, and reports a failure through `OperationErrors`. An operation that touches the item's files is ignored
/// while the item is busy. Main thread only.
class ItemActions : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of the dashboard")

public:
    /// The objects that the context refers to, the bulk actions and the clock must outlive this object and its jobs.
    ItemActions(const DashboardContext &context, BulkActions &bulk, Clock &clock, QObject *parent = nullptr);
    ~ItemActions() override;

    [[nodiscard]] RemoveProtectionDialogManager &removeProtectionDialogManager() { return m_removeDialogManager; }

    /// Locks an unlocked item and unlocks a locked one.
    Q_INVOKABLE void onToggleLock(const QString &id);
    /// Does the same for the item with this original path if it is in that state. Otherwise nothing happens.
    void toggleLockAt(const QString &path, bool isMounted);
    /// Asks, then removes the item's protection.
    Q_INVOKABLE void askToRemove(const QString &id);
    void onRemove(const QString &id);
    /// The list's delete gesture: removes the protection of the rows without asking.
    void deleteFilteredItems(const QList<int> &offsets);
    /// The delete key on a row: asks about the selected items, or else removes the protection of the row's item.
    Q_INVOKABLE void onDelete(int row);
    Q_INVOKABLE void copyPathToClipboard(const QString &id);
    Q_INVOKABLE void duplicateAsEncryptedCopy(const QString &id);

private:
    /// The current record, unless the item is busy.
    [[nodiscard]] std::optional<ProtectedItem> idleItem(const QString &id) const;
    [[nodiscard]] QCoro::Task<> toggleLock(QString id, bool wasMounted);
    [[nodiscard]] QCoro::Task<> remove(QString id);
    [[nodiscard]] QCoro::Task<> duplicate(QString id);

    DashboardContext m_context;
    BulkActions &m_bulk;
    Clock &m_clock;
    RemoveProtectionDialogManager m_removeDialogManager;
    std::vector<std::unique_ptr<RunningTimer>> m_copyTimers; ///< expired ones are kept until none is running
    size_t m_runningCopyTimers = 0;
};

} // namespace quillhaven
