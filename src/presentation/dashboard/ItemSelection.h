// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"

#include <QObject>
#include <QSet>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class FilteredItemsModel;

/// Which items the user has picked. The set of ids is not tied to what the list shows at the moment: an id that a
/// filter hides stays in it, counts, and is left out of what is done with the selection.
class ItemSelection : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of the dashboard")
    Q_PROPERTY(bool isInSelectionMode READ isInSelectionMode NOTIFY changed)
    Q_PROPERTY(int selectedCount READ selectedCount NOTIFY changed)
    Q_PROPERTY(int canUnlockCount READ canUnlockCount NOTIFY changed)
    Q_PROPERTY(int canLockCount READ canLockCount NOTIFY changed)
    Q_PROPERTY(QString modeText READ modeText NOTIFY changed)
    Q_PROPERTY(QString selectAllText READ selectAllText NOTIFY changed)

public:
    /// `items` is what the list shows, in its order. It must outlive this object.
    explicit ItemSelection(const FilteredItemsModel &items, QObject *parent = nullptr);

    [[nodiscard]] bool isInSelectionMode() const { return m_isInSelectionMode; }
    [[nodiscard]] const QSet<QString> &selectedItems() const { return m_selectedItems; }
    /// Hidden ids included.
    [[nodiscard]] int selectedCount() const { return static_cast<int>(m_selectedItems.size()); }
    /// The selected items that the list shows, in its order.
    [[nodiscard]] QList<ProtectedItem> getSelectedItems() const;
    /// The same, the locked ones or the unlocked ones alone.
    [[nodiscard]] QList<ProtectedItem> getSelectedItems(bool isMounted) const;
    [[nodiscard]] int canUnlockCount() const { return m_canUnlockCount; }
    [[nodiscard]] int canLockCount() const { return m_canLockCount; }

    [[nodiscard]] QString modeText() const;
    [[nodiscard]] QString selectAllText() const;

    /// "Select" and "Done": leaving the mode empties the selection.
    Q_INVOKABLE void toggleSelectionMode();
    /// "Select All" and "Deselect All": decided by the counts alone.
    Q_INVOKABLE void toggleSelectAll();
    Q_INVOKABLE void onSelectionToggle(const QString &id);
    /// The same outside the mode too, which it enters.
    Q_INVOKABLE void extendSelection(const QString &id);
    /// Enters the mode with everything selected that the list shows.
    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void clearSelection();

Q_SIGNALS:
    /// The selection, the mode, or what the list shows of the selection.
    void changed();

private:
    void setSelectedItems(const QSet<QString> &ids);
    [[nodiscard]] bool isEverythingSelected() const;
    [[nodiscard]] QSet<QString> shownIds() const;
    /// Counts what can be done with the selection, and publishes.
    void update();

    const FilteredItemsModel &m_items;
    QSet<QString> m_selectedItems;
    int m_canUnlockCount = 0;
    int m_canLockCount = 0;
    bool m_isInSelectionMode = false;
};

} // namespace quillhaven
