// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"

#include <QAbstractListModel>
#include <QSet>

namespace quillhaven {

/// The rows of the dashboard's list. A new list is met by the fewest changes of rows, so that the view keeps its
/// position and the keyboard's place in it.
class ProtectedItemsModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        ItemIdRole = Qt::UserRole + 1,
        OriginalNameRole,
        ShortenedPathRole,
        OriginalPathRole,
        LeadingIconRole,
        IsMountedRole,
        ToggleLockTextRole,
        ToggleLockIconRole,
        AccessibleTextRole,
        IsBusyRole,             ///< a job of this window runs for the item
        ShowingCopySuccessRole, ///< its path was copied just now
        IsSelectedRole,
    };

    explicit ProtectedItemsModel(const QString &homePath, QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] int count() const { return static_cast<int>(m_items.size()); }
    [[nodiscard]] const QList<ProtectedItem> &items() const { return m_items; }
    /// The row of an item, or -1.
    [[nodiscard]] Q_INVOKABLE int rowOf(const QString &id) const;

    void setItems(const QList<ProtectedItem> &items);
    [[nodiscard]] bool isBusy(const QString &id) const { return m_busy.contains(id); }
    void setBusy(const QSet<QString> &ids, bool value);
    void setShowingCopySuccess(const QString &id, bool value);
    /// Which rows are marked as selected; ids without a row are kept for when they have one.
    void setSelected(const QSet<QString> &ids);

Q_SIGNALS:
    void countChanged();
    /// The list was set anew, be it with the same rows.
    void itemsChanged();

private:
    void removeMissing(const QSet<QString> &kept);
    /// Puts the rows that stay in the order of `order`, which holds exactly their ids.
    void reorder(const QStringList &order);
    void insertAndUpdate(const QList<ProtectedItem> &items);
    void setFlag(QSet<QString> &flagged, const QSet<QString> &ids, bool value, Role role);

    QString m_homePath;
    QList<ProtectedItem> m_items;
    QSet<QString> m_busy;
    QSet<QString> m_copied;
    QSet<QString> m_selected;
};

} // namespace quillhaven
