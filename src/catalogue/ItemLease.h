// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"

#include <QCoroTask>
#include <QObject>
#include <QString>

#include <vector>

namespace quillhaven {

class ItemLeases;

/// The right to touch one item's files, for as long as it lives. Movable, not copyable; an empty one holds nothing.
class ItemLease
{
public:
    ItemLease() = default;
    ItemLease(ItemLease &&other) noexcept;
    ItemLease &operator=(ItemLease &&other) noexcept;
    ItemLease(const ItemLease &) = delete;
    ItemLease &operator=(const ItemLease &) = delete;
    ~ItemLease();

    /// Gives the lease to the operation that has waited longest, if any.
    void release();
    [[nodiscard]] bool isHeld() const { return m_leases != nullptr; }

private:
    friend class ItemLeases;
    ItemLease(ItemLeases &leases, QString id);

    ItemLeases *m_leases = nullptr;
    QString m_id;
};

/// Who may touch which item's files: one operation on an item at a time, in the order of asking. Items that are placed
/// one within the other count as one: what moves a folder moves the file in it. This object must outlive its leases.
/// Main thread only.
///
/// A lease is taken after the last question to the user, never before: a question that another one replaces suspends
/// its operation for good, and would keep the item from every other operation. An operation holds one lease at a time.
class ItemLeases : public QObject
{
    Q_OBJECT

public:
    explicit ItemLeases(QObject *parent = nullptr);

    /// Returns the lease of the item at `path`, at once when no other operation holds it or one of an item above or
    /// below. What was read of the item before must then be read again. An empty path conflicts with none.
    [[nodiscard]] QCoro::Task<ItemLease> acquire(QString id, QString path);
    /// An operation holds the lease of the item itself.
    [[nodiscard]] bool isLeased(const QString &id) const;

Q_SIGNALS:
    /// An item is leased now, or no longer.
    void leaseChanged(const QString &id);

private:
    friend class ItemLease;
    struct Turn
    {
        QString id;
        QString path;
        Answer<bool> answer;

        [[nodiscard]] bool conflictsWith(const Turn &other) const;
    };
    void release(const QString &id);
    [[nodiscard]] bool isBlocked(const Turn &turn, std::vector<Turn>::const_iterator endOfWaiting) const;

    std::vector<Turn> m_held;
    std::vector<Turn> m_waiting; ///< in the order of asking
};

} // namespace quillhaven
