// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/ItemActions.h"

#include "async/Jobs.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/QuillhavenManager.h"
#include "presentation/dashboard/BulkActions.h"
#include "presentation/dashboard/BusyItems.h"
#include "presentation/dashboard/FilteredItemsModel.h"
#include "presentation/dashboard/ItemSelection.h"
#include "presentation/dialogs/OperationErrors.h"

namespace quillhaven {

ItemActions::ItemActions(const DashboardContext &context, BulkActions &bulk, QObject *parent)
    : QObject(parent), m_context(context), m_bulk(bulk)
{
}

std::optional<ProtectedItem> ItemActions::idleItem(const QString &id) const
{
    const ProtectedItem *item = m_context.quillhavenManager.catalogue().item(id);
    return item && !m_context.rows.isMarkedBusy(id) ? std::optional(*item) : std::nullopt;
}

void ItemActions::onToggleLock(const QString &id)
{
    if (const std::optional<ProtectedItem> item = idleItem(id)) {
        startJob([this, id, wasMounted = item->isMounted] { return toggleLock(id, wasMounted); });
    }
}

QCoro::Task<> ItemActions::toggleLock(QString id, bool wasMounted)
{
    if (!co_await m_context.masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    // Another operation may have locked or unlocked the item meanwhile; the user's request is then out of date.
    const std::optional<ProtectedItem> item = idleItem(id);
    if (!item || item->isMounted != wasMounted) {
        co_return;
    }
    const BusyItems busy(m_context, {*item});
    try {
        if (wasMounted) {
            co_await m_context.quillhavenManager.lockItem(*item);
        } else {
            co_await m_context.quillhavenManager.unlockItem(*item);
        }
    } catch (...) {
        m_context.errors.report(std::current_exception());
    }
}

void ItemActions::handleUnlockAction(const QString &path)
{
    toggleLockAt(path, false);
}

void ItemActions::handleLockAction(const QString &path)
{
    toggleLockAt(path, true);
}

void ItemActions::toggleLockAt(const QString &path, bool isMounted)
{
    const ProtectedItem *item = m_context.quillhavenManager.catalogue().itemAt(path);
    if (item && item->isMounted == isMounted) {
        onToggleLock(item->id);
    }
}

void ItemActions::askToRemove(const QString &id)
{
    if (const std::optional<ProtectedItem> item = idleItem(id)) {
        m_removeDialogManager.show(item->originalName, [this, id] { onRemove(id); }, {});
    }
}

void ItemActions::onRemove(const QString &id)
{
    startJob([this, id] { return remove(id); });
}

QCoro::Task<> ItemActions::remove(QString id)
{
    if (!co_await m_context.masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    const std::optional<ProtectedItem> item = idleItem(id);
    if (!item) {
        co_return;
    }
    const BusyItems busy(m_context, {*item});
    try {
        co_await m_context.quillhavenManager.removeProtection(*item);
    } catch (...) {
        m_context.errors.report(std::current_exception());
    }
}

void ItemActions::deleteFilteredItems(const QList<int> &offsets)
{
    QStringList ids;
    for (const int offset : offsets) {
        if (const QString id = m_context.items.idAt(offset); !id.isEmpty()) {
            ids.append(id);
        }
    }
    for (const QString &id : std::as_const(ids)) {
        onRemove(id);
    }
}

void ItemActions::onDelete(int row)
{
    if (m_context.selection.selectedCount() > 0) {
        m_bulk.performBulkRemove();
    } else {
        deleteFilteredItems({row});
    }
}

} // namespace quillhaven
