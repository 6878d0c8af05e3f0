// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/ItemSelection.h"

#include "presentation/dashboard/FilteredItemsModel.h"
#include "presentation/dashboard/ProtectedItemsModel.h"

namespace quillhaven {

ItemSelection::ItemSelection(const FilteredItemsModel &items, QObject *parent) : QObject(parent), m_items(items)
{
    connect(&items, &FilteredItemsModel::itemsChanged, this, &ItemSelection::reportLater);
}

QList<ProtectedItem> ItemSelection::getSelectedItems() const
{
    QList<ProtectedItem> selected;
    for (int row = 0; row < m_items.count(); ++row) {
        if (const ProtectedItem &item = m_items.itemAt(row); m_selectedItems.contains(item.id)) {
            selected.append(item);
        }
    }
    return selected;
}

QList<ProtectedItem> ItemSelection::getSelectedItems(bool isMounted) const
{
    QList<ProtectedItem> selected = getSelectedItems();
    selected.removeIf([isMounted](const ProtectedItem &item) { return item.isMounted != isMounted; });
    return selected;
}

QString ItemSelection::modeText() const
{
    return m_isInSelectionMode ? QStringLiteral("Done") : QStringLiteral("Select");
}

QString ItemSelection::selectAllText() const
{
    return isEverythingSelected() ? QStringLiteral("Deselect All") : QStringLiteral("Select All");
}

bool ItemSelection::isEverythingSelected() const
{
    return m_selectedItems.size() == m_items.count();
}

QSet<QString> ItemSelection::shownIds() const
{
    QSet<QString> ids;
    for (int row = 0; row < m_items.count(); ++row) {
        ids.insert(m_items.idAt(row));
    }
    return ids;
}

void ItemSelection::toggleSelectionMode()
{
    m_isInSelectionMode = !m_isInSelectionMode;
    setSelectedItems(m_isInSelectionMode ? m_selectedItems : QSet<QString>());
}

void ItemSelection::toggleSelectAll()
{
    setSelectedItems(isEverythingSelected() ? QSet<QString>() : shownIds());
}

void ItemSelection::onSelectionToggle(const QString &id)
{
    QSet<QString> ids = m_selectedItems;
    if (!ids.remove(id)) {
        ids.insert(id);
    }
    setSelectedItems(ids);
}

void ItemSelection::extendSelection(const QString &id)
{
    m_isInSelectionMode = true;
    onSelectionToggle(id);
}

void ItemSelection::selectAll()
{
    m_isInSelectionMode = true;
    setSelectedItems(shownIds());
}

void ItemSelection::clearSelection()
{
    m_isInSelectionMode = false;
    setSelectedItems({});
}

void ItemSelection::setSelectedItems(const QSet<QString> &ids)
{
    m_selectedItems = ids;
    m_items.rows().setSelected(ids);
    m_isCounted = false;
    Q_EMIT changed();
}

int ItemSelection::canUnlockCount() const
{
    count();
    return m_canUnlockCount;
}

int ItemSelection::canLockCount() const
{
    count();
    return m_canLockCount;
}

void ItemSelection::count() const
{
    if (m_isCounted) {
        return;
    }
    m_isCounted = true;
    m_canUnlockCount = 0;
    m_canLockCount = 0;
    for (int row = 0; row < m_items.count() && !m_selectedItems.isEmpty(); ++row) {
        const ProtectedItem &item = m_items.itemAt(row);
        if (m_selectedItems.contains(item.id)) {
            ++(item.isMounted ? m_canLockCount : m_canUnlockCount);
        }
    }
}

void ItemSelection::reportLater()
{
    m_isCounted = false;
    if (!m_willReport) {
        m_willReport = true;
        const auto report = [this] {
            m_willReport = false;
            Q_EMIT changed();
        };
        QMetaObject::invokeMethod(this, report, Qt::QueuedConnection);
    }
}

} // namespace quillhaven
