// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/dashboard/ProtectedItemsModel.h"

#include <QIdentityProxyModel>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// The records of the catalogue, in its order, as the rows of the popover show them. Main thread only.
class MenuBarItemsModel : public QIdentityProxyModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")

public:
    enum Role {
        SymbolRole = Qt::UserRole + 1,
        NameRole,
        PathRole,
        IsMountedRole,
        BadgeTextRole,
        AccessibleTextRole,        ///< the name and the state
        AccessibleDescriptionRole, ///< what a press does
    };

    /// The catalogue must outlive this object.
    explicit MenuBarItemsModel(const ItemCatalogue &catalogue, QObject *parent = nullptr);

    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] const QList<ProtectedItem> &items() const { return m_rows.items(); }

Q_SIGNALS:
    /// Emitted after each change of the catalogue, when the rows are up to date.
    void itemsChanged();

private:
    ProtectedItemsModel m_rows;
};

} // namespace quillhaven
