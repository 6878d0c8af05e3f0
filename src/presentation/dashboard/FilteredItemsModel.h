// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"

#include <QCollator>
#include <QSortFilterProxyModel>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class ProtectedItemsModel;
class SearchFilterBarModel;

/// The rows that the dashboard's list shows: those that pass the filters, in the chosen order. Rows that compare equal
/// keep the order of the catalogue. Main thread only.
class FilteredItemsModel : public QSortFilterProxyModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of the dashboard")
    Q_PROPERTY(int count READ count NOTIFY itemsChanged)
    /// Whether there is anything to filter.
    Q_PROPERTY(bool showFilters READ showFilters NOTIFY itemsChanged)
    Q_PROPERTY(bool hasNoResults READ hasNoResults NOTIFY itemsChanged)

public:
    /// The references must outlive this object.
    FilteredItemsModel(ProtectedItemsModel &rows, const SearchFilterBarModel &filters, QObject *parent = nullptr);

    [[nodiscard]] int count() const { return rowCount(); }
    [[nodiscard]] bool showFilters() const;
    [[nodiscard]] bool hasNoResults() const { return showFilters() && count() == 0; }
    /// The rows before filtering and sorting.
    [[nodiscard]] ProtectedItemsModel &rows() const { return m_rows; }

    [[nodiscard]] const ProtectedItem &itemAt(int row) const;
    [[nodiscard]] QList<ProtectedItem> filteredAndSortedItems() const;
    /// The id of a row's item; empty if there is no such row.
    [[nodiscard]] Q_INVOKABLE QString idAt(int row) const;
    /// The row of an item, or -1.
    [[nodiscard]] Q_INVOKABLE int rowOf(const QString &id) const;

Q_SIGNALS:
    /// Emitted after each change of the catalogue, the filters or the order, when the rows are up to date.
    void itemsChanged();
    /// Emitted before and after the remaining rows change their order; the second from the event loop, when the view is
    /// up to date. The view uses them to keep the same item current.
    void orderAboutToChange();
    void orderChanged();

protected:
    [[nodiscard]] bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;
    [[nodiscard]] bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    ProtectedItemsModel &m_rows;
    const SearchFilterBarModel &m_filters;
    QCollator m_collator;
};

} // namespace quillhaven
