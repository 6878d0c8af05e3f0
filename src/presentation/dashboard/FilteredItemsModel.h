// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"

#include <QAbstractListModel>
#include <QCollator>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class ProtectedItemsModel;
class SearchFilterBarModel;

/// The rows that the dashboard's list shows: those that pass the filters, in the chosen order. Rows that compare equal
/// keep the order of the catalogue. Main thread only.
///
/// Another search, filter or order is signalled in such a way that a view keeps its rows and shows other items in them:
/// a new row of the view costs much more than another text in it.
class FilteredItemsModel : public QAbstractListModel
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

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

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
    /// The row of an item or, if it is not shown, of the item that comes after it or, if there is
    /// none, the last row. -1 if the item does not exist.
    [[nodiscard]] Q_INVOKABLE int rowNear(const QString &id) const;

Q_SIGNALS:
    /// Emitted after each change of the catalogue, the filters or the order, when the rows are up to date.
    void itemsChanged();
    /// Emitted before and after the remaining rows change their order; the second from the event loop, when the view is
    /// up to date. The view uses them to keep the same item current.
    void orderAboutToChange();
    void orderChanged();

private:
    // A place is the row of an item in the unfiltered model.
    using Places = QList<int>;

    [[nodiscard]] const ProtectedItem &itemIn(int place) const;
    [[nodiscard]] bool passes(int place) const;
    [[nodiscard]] bool hasLesserName(int left, int right) const;
    [[nodiscard]] bool precedes(int left, int right) const;
    /// The row that an item which is not shown would have.
    [[nodiscard]] qsizetype rowFor(int place) const;
    [[nodiscard]] Places passing() const;

    void reload();
    void sortNames();
    void rankNames();
    void addPlace(const QModelIndex &parent, int place);
    void hidePlace(const QModelIndex &parent, int place);
    void removePlace(const QModelIndex &parent, int place);
    void changePlaces(const QModelIndex &first, const QModelIndex &last, const QList<int> &roles);
    void changePlace(int place);
    /// Applies the filters and the order again.
    void update();
    /// Shows these places: rows are added and removed only at the end, and the others are reordered.
    void replace(const Places &places);
    void reorder(const Places &places);
    void insert(qsizetype row, const Places &places);
    void remove(qsizetype row, qsizetype count);

    ProtectedItemsModel &m_rows;
    const SearchFilterBarModel &m_filters;
    QCollator m_collator;
    Places m_byName;   ///< every place in the order of the names: comparing names is slow
    QList<int> m_rank; ///< of each place in m_byName
    Places m_shown;
};

} // namespace quillhaven
