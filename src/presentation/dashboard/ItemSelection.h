// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"

#include <QObject>
#include <QSet>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace quillhaven {

class FilteredItemsModel;

/// How many items can be unlocked and locked.
struct SelectionCounts
{
    void add(const ProtectedItem &item) { ++(item.isMounted ? canLock : canUnlock); }

    int canUnlock = 0;
    int canLock = 0;
};

/// The items that the user has selected. An item that a filter hides stays selected and is counted, but operations on
/// the selection leave it out.
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
    /// `items` are the rows of the list, in its order. They must outlive this object.
    explicit ItemSelection(const FilteredItemsModel &items, QObject *parent = nullptr);

    [[nodiscard]] bool isInSelectionMode() const { return m_isInSelectionMode; }
    [[nodiscard]] const QSet<QString> &selectedItems() const { return m_selectedItems; }
    /// Includes hidden items.
    [[nodiscard]] int selectedCount() const { return static_cast<int>(m_selectedItems.size()); }
    /// The selected items that the list shows, in its order.
    [[nodiscard]] QList<ProtectedItem> getSelectedItems() const;
    /// The same, but only the unlocked or only the locked ones.
    [[nodiscard]] QList<ProtectedItem> getSelectedItems(bool isMounted) const;
    [[nodiscard]] int canUnlockCount() const { return counts().canUnlock; }
    [[nodiscard]] int canLockCount() const { return counts().canLock; }

    [[nodiscard]] QString modeText() const;
    [[nodiscard]] QString selectAllText() const;

    /// "Select" and "Done": leaving the mode clears the selection.
    Q_INVOKABLE void toggleSelectionMode();
    /// "Select All" and "Deselect All": which one it is depends only on the counts.
    Q_INVOKABLE void toggleSelectAll();
    Q_INVOKABLE void onSelectionToggle(const QString &id);
    /// The same, but enters the selection mode first if necessary.
    Q_INVOKABLE void extendSelection(const QString &id);
    /// Enters the selection mode if necessary, and also selects the rows from `from` to `to`, in either direction.
    Q_INVOKABLE void selectRange(int from, int to);
    /// Enters the selection mode and selects all items that the list shows.
    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void clearSelection();

Q_SIGNALS:
    /// The selection changed, or the mode. Emitted from the event loop when the list has changed, once for many
    /// changes.
    void changed();

private:
    void selectShownItems();
    void setSelectedItems(const QSet<QString> &ids, const std::optional<SelectionCounts> &counts = {});
    [[nodiscard]] bool isEverythingSelected() const;
    [[nodiscard]] const SelectionCounts &counts() const;
    void reportLater();

    const FilteredItemsModel &m_items;
    QSet<QString> m_selectedItems;
    mutable std::optional<SelectionCounts> m_counts; ///< of the selected items that the list shows
    bool m_willReport = false;
    bool m_isInSelectionMode = false;
};

} // namespace quillhaven
