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

void ItemSelection::toggleSelectionMode()
{
    m_isInSelectionMode = !m_isInSelectionMode;
    setSelectedItems(m_isInSelectionMode ? m_selectedItems : QSet<QString>());
}

void ItemSelection::toggleSelectAll()
{
    if (isEverythingSelected()) {
        setSelectedItems({});
    } else {
        selectShownItems();
    }
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

void ItemSelection::selectRange(int from, int to)
{
    m_isInSelectionMode = true;
    QSet<QString> ids = m_selectedItems;
    for (int row = qMax(0, qMin(from, to)); row <= qMax(from, to) && row < m_items.count(); ++row) {
        ids.insert(m_items.idAt(row));
    }
    setSelectedItems(ids);
}

void ItemSelection::selectAll()
{
    m_isInSelectionMode = true;
    selectShownItems();
}

void ItemSelection::clearSelection()
{
    m_isInSelectionMode = false;
    setSelectedItems({});
}

void ItemSelection::selectShownItems()
{
    QSet<QString> ids;
    ids.reserve(m_items.count());
    SelectionCounts counts;
    for (int row = 0; row < m_items.count(); ++row) {
        const ProtectedItem &item = m_items.itemAt(row);
        ids.insert(item.id);
        counts.add(item);
    }
    setSelectedItems(ids, counts);
}

void ItemSelection::setSelectedItems(const QSet<QString> &ids, const std::optional<SelectionCounts> &counts)
{
    m_selectedItems = ids;
    m_counts = counts;
    m_items.rows().setSelected(ids);
    Q_EMIT changed();
}

const SelectionCounts &ItemSelection::counts() const
{
    if (!m_counts) {
        m_counts.emplace();
        for (int row = 0; row < m_items.count() && !m_selectedItems.isEmpty(); ++row) {
            if (const ProtectedItem &item = m_items.itemAt(row); m_selectedItems.contains(item.id)) {
                m_counts->add(item);
            }
        }
    }
    return *m_counts;
}

void ItemSelection::reportLater()
{
    m_counts.reset();
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
