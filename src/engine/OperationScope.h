// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ItemLease.h"

#include <QCoroTask>
#include <QString>

#include <memory>

namespace quillhaven {

class QuillhavenManager;

/// One run of an operation of the engine, from the master password's guard to the end: it marks what is busy, holds the
/// lease of the item whose files it touches, and gives both back however the run ends. Main thread only.
class OperationScope
{
public:
    /// What is marked busy, and when the mark is taken away at the end of the run.
    enum class Mark {
        Engine,      ///< the engine, at once
        EngineLater, ///< the engine, from the main loop
        Item,        ///< the record that was named, at once
    };

    /// Passes the guard, then marks. Nothing when the user cancelled: the operation is to stop silently. The engine
    /// must outlive the scope.
    [[nodiscard]] static QCoro::Task<std::unique_ptr<OperationScope>> begin(QuillhavenManager &engine, Mark mark,
                                                                            QString itemId = {});
    /// The same without the guard.
    [[nodiscard]] static std::unique_ptr<OperationScope> beginUnattended(QuillhavenManager &engine, Mark mark,
                                                                         QString itemId);
    ~OperationScope();
    OperationScope(const OperationScope &) = delete;
    OperationScope &operator=(const OperationScope &) = delete;

    /// Whether the item was in the list when the run began.
    [[nodiscard]] bool wasListed() const { return m_wasListed; }
    /// Waits until no other operation touches the files of the run's item, and keeps others away until the end of the
    /// run.
    [[nodiscard]] QCoro::Task<> lease();
    /// Ends with the lease held and the master password's session open, for work that has a guard of its own: it asks
    /// nothing then. A lease that is held already is given back for as long as the question lasts. False, and no lease,
    /// when the user cancelled.
    [[nodiscard]] QCoro::Task<bool> leaseInSession();
    void releaseLease() { m_lease.release(); }
    /// Takes the mark away before the end.
    void clearMark();
    /// Leaves the mark as it is at the end.
    void keepMark() { m_isMarked = false; }
    /// Closes the master password's session, as every operation does that has succeeded.
    void endSession();

private:
    OperationScope(QuillhavenManager &engine, Mark mark, QString itemId, bool wasListed);

    QuillhavenManager &m_engine;
    Mark m_mark;
    QString m_itemId;
    bool m_wasListed;
    bool m_isMarked = true;
    ItemLease m_lease;
};

} // namespace quillhaven
