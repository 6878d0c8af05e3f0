// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/dashboard/DashboardContext.h"
#include "presentation/dialogs/RemoveProtectionDialogManager.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace quillhaven {

class BulkActions;
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
    /// The objects that the context refers to, and the bulk actions must outlive this object and its jobs.
    ItemActions(const DashboardContext &context, BulkActions &bulk, QObject *parent = nullptr);

    [[nodiscard]] RemoveProtectionDialogManager &removeProtectionDialogManager() { return m_removeDialogManager; }

    /// Locks an unlocked item and unlocks a locked one.
    Q_INVOKABLE void onToggleLock(const QString &id);
    /// Unlocks the item with this original path, or locks it. Nothing happens when there is none, or when it is in that
    /// state already.
    void handleUnlockAction(const QString &path);
    void handleLockAction(const QString &path);
    /// Asks, then removes the item's protection.
    Q_INVOKABLE void askToRemove(const QString &id);
    void onRemove(const QString &id);
    /// The list's delete gesture: removes the protection of the rows without asking.
    void deleteFilteredItems(const QList<int> &offsets);
    /// The delete key on a row: asks about the selected items, or else removes the protection of the row's item.
    Q_INVOKABLE void onDelete(int row);

private:
    void toggleLockAt(const QString &path, bool isMounted);
    /// The current record, unless the item is busy.
    [[nodiscard]] std::optional<ProtectedItem> idleItem(const QString &id) const;
    [[nodiscard]] QCoro::Task<> toggleLock(QString id, bool wasMounted);
    [[nodiscard]] QCoro::Task<> remove(QString id);

    DashboardContext m_context;
    BulkActions &m_bulk;
    RemoveProtectionDialogManager m_removeDialogManager;
};

} // namespace quillhaven
