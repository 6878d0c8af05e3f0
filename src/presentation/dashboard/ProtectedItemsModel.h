// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"

#include <QAbstractListModel>
#include <QSet>

#include <functional>

namespace quillhaven {

class ItemCatalogue;

/// Has a row for each record of the catalogue, in its order, with the window's marks for it. A change of one record
/// changes one row. Main thread only.
class ProtectedItemsModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        ItemIdRole = Qt::UserRole + 1,
        OriginalNameRole,
        ShortenedPathRole,
        LeadingIconRole,
        IsMountedRole,
        StatusTextRole,
        ToggleLockTextRole,
        ToggleLockIconRole,
        AccessibleTextRole,
        AccessibleDescriptionRole,
        IsBusyRole,             ///< a job of this window or an operation of the engine works on the item
        ShowingCopySuccessRole, ///< its path has just been copied
        IsSelectedRole,
    };

    /// The catalogue must outlive this object.
    ProtectedItemsModel(const ItemCatalogue &catalogue, const QString &homePath, QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] const QList<ProtectedItem> &items() const { return m_items; }
    /// The row of an item, or -1.
    [[nodiscard]] int rowOf(const QString &id) const;

    /// Some operation is under way for the item, and its row says so.
    [[nodiscard]] bool isBusy(const QString &id) const;
    /// An action of the window is under way for the item. Other operations on it are waited for.
    [[nodiscard]] bool isMarkedBusy(const QString &id) const { return m_busy.contains(id); }
    void setBusy(const QSet<QString> &ids, bool value);
    void setShowingCopySuccess(const QString &id, bool value);
    /// Sets which rows are marked as selected. Ids without a row are kept, in case they get one.
    void setSelected(const QSet<QString> &ids);

Q_SIGNALS:
    /// Emitted after each change of the catalogue, when the rows are up to date.
    void itemsChanged();

private:
    void addItem();
    void updateItem(const QString &id);
    void removeItem(const QString &id);
    void reload();
    void setFlag(QSet<QString> &flagged, const QSet<QString> &ids, bool value, const QList<int> &roles);
    /// Emits `dataChanged` for the rows from the first to the last whose item is meant.
    void publish(const std::function<bool(const QString &id)> &isMeant, const QList<int> &roles);

    const ItemCatalogue &m_catalogue;
    QString m_homePath;
    QList<ProtectedItem> m_items; ///< a copy, since the catalogue signals changes only after making them
    QSet<QString> m_busy;
    QSet<QString> m_copied;
    QSet<QString> m_selected;
};

} // namespace quillhaven
