// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/FilteredItemsModel.h"

#include "presentation/dashboard/ProtectedItemsModel.h"
#include "presentation/dashboard/SearchFilterBarModel.h"

#include <algorithm>
#include <numeric>

namespace quillhaven {

namespace {

/// Removes a place that is no longer there: the ones after it move up.
void closeGap(QList<int> &places, int removed)
{
    places.removeOne(removed);
    for (int &place : places) {
        place -= place > removed ? 1 : 0;
    }
}

} // namespace

FilteredItemsModel::FilteredItemsModel(ProtectedItemsModel &rows, const SearchFilterBarModel &filters, QObject *parent)
    : QAbstractListModel(parent), m_rows(rows), m_filters(filters)
{
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    connect(this, &QAbstractItemModel::layoutAboutToBeChanged, this, &FilteredItemsModel::orderAboutToChange);
    connect(this, &QAbstractItemModel::layoutChanged, this, &FilteredItemsModel::orderChanged, Qt::QueuedConnection);
    for (const auto changed : {&SearchFilterBarModel::filtersChanged, &SearchFilterBarModel::sortOptionChanged}) {
        connect(&filters, changed, this, [this] {
            update();
            Q_EMIT itemsChanged();
        });
    }
    connect(&rows, &QAbstractItemModel::rowsInserted, this, &FilteredItemsModel::addPlace);
    connect(&rows, &QAbstractItemModel::rowsAboutToBeRemoved, this, &FilteredItemsModel::hidePlace);
    connect(&rows, &QAbstractItemModel::rowsRemoved, this, &FilteredItemsModel::removePlace);
    connect(&rows, &QAbstractItemModel::dataChanged, this, &FilteredItemsModel::changePlaces);
    connect(&rows, &QAbstractItemModel::modelAboutToBeReset, this, [this] { beginResetModel(); });
    connect(&rows, &QAbstractItemModel::modelReset, this, [this] {
        reload();
        endResetModel();
    });
    connect(&rows, &ProtectedItemsModel::itemsChanged, this, &FilteredItemsModel::itemsChanged);
    reload();
}

int FilteredItemsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

QVariant FilteredItemsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    return m_rows.data(m_rows.index(m_shown.at(index.row())), role);
}

QHash<int, QByteArray> FilteredItemsModel::roleNames() const
{
    return m_rows.roleNames();
}

bool FilteredItemsModel::showFilters() const
{
    return !m_rows.items().isEmpty();
}

const ProtectedItem &FilteredItemsModel::itemAt(int row) const
{
    return itemIn(m_shown.at(row));
}

QList<ProtectedItem> FilteredItemsModel::filteredAndSortedItems() const
{
    QList<ProtectedItem> items;
    for (const int place : m_shown) {
        items.append(itemIn(place));
    }
    return items;
}

QString FilteredItemsModel::idAt(int row) const
{
    return row >= 0 && row < count() ? itemAt(row).id : QString();
}

int FilteredItemsModel::rowOf(const QString &id) const
{
    return static_cast<int>(m_shown.indexOf(m_rows.rowOf(id)));
}

int FilteredItemsModel::rowNear(const QString &id) const
{
    const int place = m_rows.rowOf(id);
    return place < 0 ? -1 : std::min(static_cast<int>(rowFor(place)), count() - 1);
}

const ProtectedItem &FilteredItemsModel::itemIn(int place) const
{
    return m_rows.items().at(place);
}

bool FilteredItemsModel::passes(int place) const
{
    return m_filters.passes(itemIn(place));
}

bool FilteredItemsModel::hasLesserName(int left, int right) const
{
    const int order = m_collator.compare(itemIn(left).originalName, itemIn(right).originalName);
    return order != 0 ? order < 0 : left < right;
}

bool FilteredItemsModel::precedes(int left, int right) const
{
    if (m_filters.sortOption() == SearchFilterBarModel::SortOption::name) {
        return m_rank.at(left) < m_rank.at(right);
    }
    const int order = int(itemIn(left).isMounted) - int(itemIn(right).isMounted);
    return order != 0 ? order < 0 : left < right;
}

qsizetype FilteredItemsModel::rowFor(int place) const
{
    return std::ranges::lower_bound(m_shown, place, [this](int left, int right) { return precedes(left, right); }) -
           m_shown.begin();
}

FilteredItemsModel::Places FilteredItemsModel::passing() const
{
    Places places;
    std::ranges::copy_if(m_byName, std::back_inserter(places), [this](int place) { return passes(place); });
    if (m_filters.sortOption() != SearchFilterBarModel::SortOption::name) {
        std::ranges::sort(places, [this](int left, int right) { return precedes(left, right); });
    }
    return places;
}

void FilteredItemsModel::reload()
{
    m_byName.resize(m_rows.rowCount());
    std::iota(m_byName.begin(), m_byName.end(), 0);
    sortNames();
    m_shown = passing();
}

void FilteredItemsModel::sortNames()
{
    std::ranges::sort(m_byName, [this](int left, int right) { return hasLesserName(left, right); });
    rankNames();
}

void FilteredItemsModel::rankNames()
{
    m_rank.resize(m_byName.size());
    for (qsizetype rank = 0; rank < m_byName.size(); ++rank) {
        m_rank[m_byName.at(rank)] = static_cast<int>(rank);
    }
}

void FilteredItemsModel::addPlace(const QModelIndex &, int place)
{
    const auto next =
        std::ranges::upper_bound(m_byName, place, [this](int left, int right) { return hasLesserName(left, right); });
    m_byName.insert(next, place);
    rankNames();
    if (passes(place)) {
        insert(rowFor(place), {place});
    }
}

void FilteredItemsModel::hidePlace(const QModelIndex &, int place)
{
    if (const qsizetype row = m_shown.indexOf(place); row >= 0) {
        remove(row, 1);
    }
}

void FilteredItemsModel::removePlace(const QModelIndex &, int place)
{
    closeGap(m_shown, place);
    closeGap(m_byName, place);
    rankNames();
}

void FilteredItemsModel::changePlaces(const QModelIndex &first, const QModelIndex &last, const QList<int> &roles)
{
    if (roles.isEmpty() && first == last) {
        changePlace(first.row());
        return;
    }
    const auto isMeant = [&](int place) { return place >= first.row() && place <= last.row(); };
    const auto begin = std::ranges::find_if(m_shown, isMeant);
    if (begin != m_shown.end()) {
        const auto end = std::find_if(m_shown.crbegin(), m_shown.crend(), isMeant).base();
        Q_EMIT dataChanged(index(static_cast<int>(begin - m_shown.begin())),
                           index(static_cast<int>(end - m_shown.cbegin()) - 1), roles);
    }
}

void FilteredItemsModel::changePlace(int place)
{
    const int rank = m_rank.at(place);
    if ((rank > 0 && !hasLesserName(m_byName.at(rank - 1), place)) ||
        (rank + 1 < m_byName.size() && !hasLesserName(place, m_byName.at(rank + 1)))) {
        sortNames(); // it was renamed
    }
    const qsizetype row = m_shown.indexOf(place);
    if (row < 0) {
        if (passes(place)) {
            insert(rowFor(place), {place});
        }
    } else if (!passes(place)) {
        remove(row, 1);
    } else {
        Places places = m_shown;
        places.removeAt(row);
        const auto next =
            std::ranges::lower_bound(places, place, [this](int left, int right) { return precedes(left, right); });
        const qsizetype newRow = next - places.begin();
        if (newRow != row) {
            places.insert(newRow, place);
            reorder(places);
        }
        const QModelIndex changed = index(static_cast<int>(newRow));
        Q_EMIT dataChanged(changed, changed);
    }
}

void FilteredItemsModel::update()
{
    const Places places = passing();
    const qsizetype head = std::ranges::mismatch(m_shown, places).in1 - m_shown.begin();
    const qsizetype tail =
        std::mismatch(m_shown.crbegin(), m_shown.crend() - head, places.crbegin(), places.crend() - head).first -
        m_shown.crbegin();
    const qsizetype leaving = m_shown.size() - head - tail;
    const qsizetype coming = places.size() - head - tail;
    if (coming == 0) {
        remove(head, leaving);
    } else if (leaving == 0) {
        insert(head, places.mid(head, coming));
    } else {
        replace(places);
    }
}

void FilteredItemsModel::replace(const Places &places)
{
    const auto without = [this](const Places &from, const Places &others) {
        QList<bool> isOther(m_rows.rowCount(), false);
        for (const int place : others) {
            isOther[place] = true;
        }
        Places rest;
        std::ranges::copy_if(from, std::back_inserter(rest), [&](int place) { return !isOther.at(place); });
        return rest;
    };
    const Places leaving = without(m_shown, places);
    insert(m_shown.size(), without(places, m_shown));
    reorder(places + leaving);
    remove(places.size(), leaving.size());
}

void FilteredItemsModel::reorder(const Places &places)
{
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex &each : before) {
        after.append(index(static_cast<int>(places.indexOf(m_shown.at(each.row())))));
    }
    m_shown = places;
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void FilteredItemsModel::insert(qsizetype row, const Places &places)
{
    if (!places.isEmpty()) {
        beginInsertRows({}, static_cast<int>(row), static_cast<int>(row + places.size()) - 1);
        m_shown = m_shown.first(row) + places + m_shown.sliced(row);
        endInsertRows();
    }
}

void FilteredItemsModel::remove(qsizetype row, qsizetype count)
{
    if (count > 0) {
        beginRemoveRows({}, static_cast<int>(row), static_cast<int>(row + count) - 1);
        m_shown.remove(row, count);
        endRemoveRows();
    }
}

} // namespace quillhaven
