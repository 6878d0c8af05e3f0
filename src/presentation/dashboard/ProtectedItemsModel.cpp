// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/ProtectedItemsModel.h"

#include "presentation/dashboard/FinderRowViewModel.h"

#include <algorithm>

namespace quillhaven {

namespace {

// Beyond this many moved rows nobody follows a row with the eye, and one reset is cheaper.
constexpr qsizetype mostMoves = 256;

/// The positions of a longest ascending selection of `ranks`: the rows that need not move.
QSet<qsizetype> longestAscendingSelection(const QList<qsizetype> &ranks)
{
    QList<qsizetype> tails; // positions, by length of the selection that ends there
    QList<qsizetype> previous(ranks.size(), -1);
    for (qsizetype position = 0; position < ranks.size(); ++position) {
        const auto place = std::lower_bound(tails.begin(), tails.end(), ranks[position],
                                            [&ranks](qsizetype tail, qsizetype rank) { return ranks[tail] < rank; });
        const qsizetype length = place - tails.begin();
        previous[position] = length == 0 ? -1 : tails[length - 1];
        if (length == tails.size()) {
            tails.append(position);
        } else {
            tails[length] = position;
        }
    }
    QSet<qsizetype> selection;
    for (qsizetype position = tails.isEmpty() ? -1 : tails.last(); position != -1; position = previous[position]) {
        selection.insert(position);
    }
    return selection;
}

} // namespace

ProtectedItemsModel::ProtectedItemsModel(const QString &homePath, QObject *parent)
    : QAbstractListModel(parent), m_homePath(homePath)
{
}

int ProtectedItemsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ProtectedItemsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const ProtectedItem &item = m_items.at(index.row());
    switch (role) {
    case ItemIdRole:
        return item.id;
    case Qt::DisplayRole:
    case OriginalNameRole:
        return item.originalName;
    case ShortenedPathRole:
        return finder_row::shortenedPath(item.originalPath, m_homePath);
    case OriginalPathRole:
        return item.originalPath;
    case LeadingIconRole:
        return finder_row::leadingIcon(item);
    case IsMountedRole:
        return item.isMounted;
    case ToggleLockTextRole:
        return finder_row::toggleLockText(item);
    case ToggleLockIconRole:
        return finder_row::toggleLockIcon(item);
    case AccessibleTextRole:
        return finder_row::accessibleText(item);
    case IsBusyRole:
        return m_busy.contains(item.id);
    case ShowingCopySuccessRole:
        return m_copied.contains(item.id);
    case IsSelectedRole:
        return m_selected.contains(item.id);
    default:
        return {};
    }
}

QHash<int, QByteArray> ProtectedItemsModel::roleNames() const
{
    return {{ItemIdRole, "itemId"},
            {OriginalNameRole, "originalName"},
            {ShortenedPathRole, "shortenedPath"},
            {OriginalPathRole, "originalPath"},
            {LeadingIconRole, "leadingIcon"},
            {IsMountedRole, "isMounted"},
            {ToggleLockTextRole, "toggleLockText"},
            {ToggleLockIconRole, "toggleLockIcon"},
            {AccessibleTextRole, "accessibleText"},
            {IsBusyRole, "isBusy"},
            {ShowingCopySuccessRole, "showingCopySuccess"},
            {IsSelectedRole, "isSelected"}};
}

int ProtectedItemsModel::rowOf(const QString &id) const
{
    const auto found =
        std::find_if(m_items.begin(), m_items.end(), [&id](const ProtectedItem &item) { return item.id == id; });
    return found == m_items.end() ? -1 : static_cast<int>(found - m_items.begin());
}

void ProtectedItemsModel::setItems(const QList<ProtectedItem> &items)
{
    const int countBefore = count();
    QSet<QString> present;
    for (const ProtectedItem &item : std::as_const(m_items)) {
        present.insert(item.id);
    }
    QSet<QString> wanted;
    QStringList keptOrder;
    for (const ProtectedItem &item : items) {
        wanted.insert(item.id);
        if (present.contains(item.id)) {
            keptOrder.append(item.id);
        }
    }
    removeMissing(wanted);
    reorder(keptOrder);
    insertAndUpdate(items);
    if (m_items != items) {
        // Only a damaged catalogue repeats an id.
        beginResetModel();
        m_items = items;
        endResetModel();
    }
    if (count() != countBefore) {
        Q_EMIT countChanged();
    }
    Q_EMIT itemsChanged();
}

void ProtectedItemsModel::removeMissing(const QSet<QString> &kept)
{
    for (qsizetype last = m_items.size() - 1; last >= 0; --last) {
        if (kept.contains(m_items.at(last).id)) {
            continue;
        }
        qsizetype first = last;
        while (first > 0 && !kept.contains(m_items.at(first - 1).id)) {
            --first;
        }
        beginRemoveRows({}, static_cast<int>(first), static_cast<int>(last));
        m_items.remove(first, last - first + 1);
        endRemoveRows();
        last = first;
    }
}

void ProtectedItemsModel::reorder(const QStringList &order)
{
    QHash<QString, qsizetype> rankOf;
    for (const QString &id : order) {
        rankOf.insert(id, rankOf.size());
    }
    QList<qsizetype> ranks;
    for (const ProtectedItem &item : std::as_const(m_items)) {
        ranks.append(rankOf.value(item.id));
    }
    const QSet<qsizetype> staying = longestAscendingSelection(ranks);
    if (ranks.size() - staying.size() > mostMoves) {
        beginResetModel();
        std::sort(m_items.begin(), m_items.end(), [&rankOf](const ProtectedItem &left, const ProtectedItem &right) {
            return rankOf.value(left.id) < rankOf.value(right.id);
        });
        endResetModel();
        return;
    }
    QSet<QString> placed;
    for (const qsizetype position : staying) {
        placed.insert(m_items.at(position).id);
    }
    for (qsizetype rank = 0; rank < order.size(); ++rank) {
        if (placed.contains(order.at(rank))) {
            continue;
        }
        // Every row that comes before it in the new order is in place already.
        const int from = rowOf(order.at(rank));
        const int to = rank == 0 ? 0 : rowOf(order.at(rank - 1)) + 1;
        if (from != to && beginMoveRows({}, from, from, {}, to)) {
            m_items.move(from, to > from ? to - 1 : to); // `to` counts the row itself, as Qt's own moves do
            endMoveRows();
        }
    }
}

void ProtectedItemsModel::insertAndUpdate(const QList<ProtectedItem> &items)
{
    for (qsizetype row = 0; row < items.size(); ++row) {
        if (row < m_items.size() && m_items.at(row).id == items.at(row).id) {
            if (m_items.at(row) != items.at(row)) {
                m_items[row] = items.at(row);
                const QModelIndex changed = index(static_cast<int>(row));
                Q_EMIT dataChanged(changed, changed);
            }
            continue;
        }
        const QString nextKept = row < m_items.size() ? m_items.at(row).id : QString();
        qsizetype last = row;
        while (last + 1 < items.size() && items.at(last + 1).id != nextKept) {
            ++last;
        }
        beginInsertRows({}, static_cast<int>(row), static_cast<int>(last));
        m_items.insert(row, last - row + 1, ProtectedItem());
        std::copy(items.begin() + row, items.begin() + last + 1, m_items.begin() + row);
        endInsertRows();
        row = last;
    }
}

void ProtectedItemsModel::setBusy(const QSet<QString> &ids, bool value)
{
    setFlag(m_busy, ids, value, IsBusyRole);
}

void ProtectedItemsModel::setShowingCopySuccess(const QString &id, bool value)
{
    setFlag(m_copied, {id}, value, ShowingCopySuccessRole);
}

void ProtectedItemsModel::setSelected(const QSet<QString> &ids)
{
    if (m_selected == ids) {
        return;
    }
    m_selected = ids;
    if (!m_items.isEmpty()) {
        Q_EMIT dataChanged(index(0), index(count() - 1), {IsSelectedRole});
    }
}

void ProtectedItemsModel::setFlag(QSet<QString> &flagged, const QSet<QString> &ids, bool value, Role role)
{
    const QSet<QString> after = value ? flagged + ids : flagged - ids;
    if (flagged == after) {
        return;
    }
    flagged = after;
    const auto isMeant = [&ids](const ProtectedItem &item) { return ids.contains(item.id); };
    const auto first = std::find_if(m_items.cbegin(), m_items.cend(), isMeant);
    if (first == m_items.cend()) {
        return;
    }
    const auto last = std::find_if(m_items.crbegin(), m_items.crend(), isMeant).base() - 1;
    Q_EMIT dataChanged(index(static_cast<int>(first - m_items.cbegin())),
                       index(static_cast<int>(last - m_items.cbegin())), {role});
}

} // namespace quillhaven
