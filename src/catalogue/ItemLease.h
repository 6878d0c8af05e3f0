// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"

#include <QCoroTask>
#include <QHash>
#include <QObject>
#include <QString>

#include <deque>

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

/// Who may touch which item's files: one operation on an item at a time, in the order of asking. It must outlive its
/// leases. Main thread only.
///
/// A lease is taken after the last question to the user, never before: a question that another one replaces suspends
/// its operation for good, and would keep the item from every other operation.
class ItemLeases : public QObject
{
    Q_OBJECT

public:
    explicit ItemLeases(QObject *parent = nullptr);

    /// Ends with the lease of the item, at once when no other operation holds it. What was read of the item before is
    /// then to be read again.
    [[nodiscard]] QCoro::Task<ItemLease> acquire(QString id);
    [[nodiscard]] bool isLeased(const QString &id) const { return m_waiting.contains(id); }

Q_SIGNALS:
    /// An item is leased now, or not any longer.
    void leaseChanged(const QString &id);

private:
    friend class ItemLease;
    void release(const QString &id);

    QHash<QString, std::deque<Answer<bool>>> m_waiting; ///< for each leased item, the operations that wait for it
};

} // namespace quillhaven
