// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/FilteredItemsModel.h"

#include "presentation/dashboard/ProtectedItemsModel.h"
#include "presentation/dashboard/SearchFilterBarModel.h"

namespace quillhaven {

FilteredItemsModel::FilteredItemsModel(ProtectedItemsModel &rows, const SearchFilterBarModel &filters, QObject *parent)
    : QSortFilterProxyModel(parent), m_rows(rows), m_filters(filters)
{
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    connect(this, &QAbstractItemModel::layoutAboutToBeChanged, this, &FilteredItemsModel::orderAboutToChange);
    connect(this, &QAbstractItemModel::layoutChanged, this, &FilteredItemsModel::orderChanged, Qt::QueuedConnection);
    connect(&filters, &SearchFilterBarModel::filtersChanged, this, [this] {
        invalidateFilter();
        Q_EMIT itemsChanged();
    });
    connect(&filters, &SearchFilterBarModel::sortOptionChanged, this, [this] {
        invalidate();
        Q_EMIT itemsChanged();
    });
    setSourceModel(&rows);
    sort(0);
    connect(&rows, &ProtectedItemsModel::itemsChanged, this, &FilteredItemsModel::itemsChanged);
}

bool FilteredItemsModel::showFilters() const
{
    return !m_rows.items().isEmpty();
}

const ProtectedItem &FilteredItemsModel::itemAt(int row) const
{
    return m_rows.items().at(mapToSource(index(row, 0)).row());
}

QList<ProtectedItem> FilteredItemsModel::filteredAndSortedItems() const
{
    QList<ProtectedItem> items;
    for (int row = 0; row < count(); ++row) {
        items.append(itemAt(row));
    }
    return items;
}

QString FilteredItemsModel::idAt(int row) const
{
    return row >= 0 && row < count() ? itemAt(row).id : QString();
}

int FilteredItemsModel::rowOf(const QString &id) const
{
    return mapFromSource(m_rows.index(m_rows.rowOf(id))).row();
}

bool FilteredItemsModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    Q_UNUSED(sourceParent)
    return m_filters.passes(m_rows.items().at(sourceRow));
}

bool FilteredItemsModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const ProtectedItem &leftItem = m_rows.items().at(left.row());
    const ProtectedItem &rightItem = m_rows.items().at(right.row());
    const int order = m_filters.sortOption() == SearchFilterBarModel::SortOption::name
                          ? m_collator.compare(leftItem.originalName, rightItem.originalName)
                          : int(leftItem.isMounted) - int(rightItem.isMounted);
    return order != 0 ? order < 0 : left.row() < right.row();
}

} // namespace quillhaven
