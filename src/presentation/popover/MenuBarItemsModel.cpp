// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/popover/MenuBarItemsModel.h"

#include "presentation/dashboard/FinderRowTexts.h"
#include "support/DisplayName.h"

namespace quillhaven {

MenuBarItemsModel::MenuBarItemsModel(const ItemCatalogue &catalogue, QObject *parent)
    : QIdentityProxyModel(parent), m_rows(catalogue, QString())
{
    setSourceModel(&m_rows);
    connect(&m_rows, &ProtectedItemsModel::itemsChanged, this, &MenuBarItemsModel::itemsChanged);
}

QVariant MenuBarItemsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const ProtectedItem &item = items().at(index.row());
    switch (role) {
    case SymbolRole:
        return item.isFolder ? QStringLiteral("folder.fill") : QStringLiteral("doc.fill");
    case Qt::DisplayRole:
    case NameRole:
        return displayName(item.originalName);
    case PathRole:
        return displayName(item.originalPath);
    case IsMountedRole:
        return item.isMounted;
    case BadgeTextRole:
        return item.isMounted ? QStringLiteral("Active") : QStringLiteral("Secured");
    case AccessibleTextRole:
        return finder_row::accessibleText(item);
    case AccessibleDescriptionRole:
        return item.isMounted ? QStringLiteral("Press to lock it.") : QStringLiteral("Press to unlock it.");
    default:
        return {};
    }
}

QHash<int, QByteArray> MenuBarItemsModel::roleNames() const
{
    return {{SymbolRole, "symbol"},
            {NameRole, "name"},
            {PathRole, "path"},
            {IsMountedRole, "isMounted"},
            {BadgeTextRole, "badgeText"},
            {AccessibleTextRole, "accessibleText"},
            {AccessibleDescriptionRole, "accessibleDescription"}};
}

} // namespace quillhaven
