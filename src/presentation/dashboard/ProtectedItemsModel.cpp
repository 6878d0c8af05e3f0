// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/ProtectedItemsModel.h"

#include "catalogue/ItemCatalogue.h"
#include "presentation/dashboard/FinderRowTexts.h"
#include "support/DisplayName.h"

#include <algorithm>
#include <utility>

namespace quillhaven {

namespace {

const QList<int> busyRoles{ProtectedItemsModel::IsBusyRole, ProtectedItemsModel::AccessibleDescriptionRole};

} // namespace

ProtectedItemsModel::ProtectedItemsModel(const ItemCatalogue &catalogue, const QString &homePath, QObject *parent)
    : QAbstractListModel(parent), m_catalogue(catalogue), m_homePath(homePath), m_items(catalogue.items())
{
    connect(&catalogue, &ItemCatalogue::itemAdded, this, &ProtectedItemsModel::addItem);
    connect(&catalogue, &ItemCatalogue::itemChanged, this, &ProtectedItemsModel::updateItem);
    connect(&catalogue, &ItemCatalogue::itemRemoved, this, &ProtectedItemsModel::removeItem);
    connect(&catalogue, &ItemCatalogue::reset, this, &ProtectedItemsModel::reload);
    connect(&catalogue, &ItemCatalogue::leaseChanged, this, [this](const QString &id) {
        if (const int row = rowOf(id); row >= 0) {
            Q_EMIT dataChanged(index(row), index(row), busyRoles);
        }
    });
}

int ProtectedItemsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
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
        return displayName(item.originalName);
    case ShortenedPathRole:
        return finder_row::shortenedPath(item.originalPath, m_homePath);
    case LeadingIconRole:
        return finder_row::leadingIcon(item);
    case IsMountedRole:
        return item.isMounted;
    case StatusTextRole:
        return finder_row::statusText(item);
    case ToggleLockTextRole:
        return finder_row::toggleLockText(item);
    case ToggleLockIconRole:
        return finder_row::toggleLockIcon(item);
    case AccessibleTextRole:
        return finder_row::accessibleText(item);
    case AccessibleDescriptionRole:
        return isBusy(item.id) ? QStringLiteral("Busy") : displayName(item.originalPath);
    case IsBusyRole:
        return isBusy(item.id);
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
            {LeadingIconRole, "leadingIcon"},
            {IsMountedRole, "isMounted"},
            {StatusTextRole, "statusText"},
            {ToggleLockTextRole, "toggleLockText"},
            {ToggleLockIconRole, "toggleLockIcon"},
            {AccessibleTextRole, "accessibleText"},
            {AccessibleDescriptionRole, "accessibleDescription"},
            {IsBusyRole, "isBusy"},
            {ShowingCopySuccessRole, "showingCopySuccess"},
            {IsSelectedRole, "isSelected"}};
}

int ProtectedItemsModel::rowOf(const QString &id) const
{
    // Except while several records leave, the catalogue has the item in the same place.
    if (const ProtectedItem *item = m_catalogue.item(id)) {
        const qsizetype row = item - m_catalogue.items().constData();
        if (row < m_items.size() && m_items.at(row).id == id) {
            return static_cast<int>(row);
        }
    }
    const auto found = std::ranges::find(m_items, id, &ProtectedItem::id);
    return found == m_items.cend() ? -1 : static_cast<int>(found - m_items.cbegin());
}

void ProtectedItemsModel::addItem()
{
    const int row = rowCount();
    beginInsertRows({}, row, row);
    m_items.append(m_catalogue.items().at(row));
    endInsertRows();
    Q_EMIT itemsChanged();
}

void ProtectedItemsModel::updateItem(const QString &id)
{
    const int row = rowOf(id);
    const ProtectedItem *item = m_catalogue.item(id);
    if (row >= 0 && item) {
        m_items[row] = *item;
        Q_EMIT dataChanged(index(row), index(row));
        Q_EMIT itemsChanged();
    }
}

void ProtectedItemsModel::removeItem(const QString &id)
{
    const int row = rowOf(id);
    if (row >= 0) {
        beginRemoveRows({}, row, row);
        m_items.removeAt(row);
        endRemoveRows();
        Q_EMIT itemsChanged();
    }
}

void ProtectedItemsModel::reload()
{
    beginResetModel();
    m_items = m_catalogue.items();
    endResetModel();
    Q_EMIT itemsChanged();
}

bool ProtectedItemsModel::isBusy(const QString &id) const
{
    return m_busy.contains(id) || m_catalogue.isLeased(id);
}

void ProtectedItemsModel::setBusy(const QSet<QString> &ids, bool value)
{
    setFlag(m_busy, ids, value, busyRoles);
}

void ProtectedItemsModel::setShowingCopySuccess(const QString &id, bool value)
{
    setFlag(m_copied, {id}, value, {ShowingCopySuccessRole});
}

void ProtectedItemsModel::setSelected(const QSet<QString> &ids)
{
    const QSet<QString> before = std::exchange(m_selected, ids);
    publish([&](const QString &id) { return before.contains(id) != ids.contains(id); }, {IsSelectedRole});
}

void ProtectedItemsModel::setFlag(QSet<QString> &flagged, const QSet<QString> &ids, bool value, const QList<int> &roles)
{
    const QSet<QString> after = value ? flagged + ids : flagged - ids;
    if (flagged != after) {
        flagged = after;
        publish([&](const QString &id) { return ids.contains(id); }, roles);
    }
}

void ProtectedItemsModel::publish(const std::function<bool(const QString &id)> &isMeant, const QList<int> &roles)
{
    const auto first = std::ranges::find_if(m_items.cbegin(), m_items.cend(), isMeant, &ProtectedItem::id);
    if (first == m_items.cend()) {
        return;
    }
    const auto last = std::ranges::find_if(m_items.crbegin(), m_items.crend(), isMeant, &ProtectedItem::id);
    Q_EMIT dataChanged(index(static_cast<int>(first - m_items.cbegin())),
                       index(static_cast<int>(m_items.crend() - last) - 1), roles);
}

} // namespace quillhaven
