// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QString>

namespace quillhaven {

/// What became of the items that one run of locking was started for.
class LockReport
{
public:
    explicit LockReport(qsizetype items) : m_pending(items) {}

    // Each item ends with one of these.
    void locked();
    void leftUnlocked(); ///< since the user did not want it to be locked
    void failed(const QString &reason);

    /// Whether all items have ended.
    [[nodiscard]] bool isComplete() const { return m_pending == 0; }
    /// Sentences for the user, without the names of the items. `cause` completes "2 items were locked ...", without a
    /// full stop. Empty when no item was locked and none failed.
    [[nodiscard]] QString text(const QString &cause) const;

private:
    struct Failure
    {
        QString reason;
        qsizetype items;
    };

    qsizetype m_pending;
    qsizetype m_locked = 0;
    QList<Failure> m_failures; ///< a reason once, in the order of their first items
};

} // namespace quillhaven
