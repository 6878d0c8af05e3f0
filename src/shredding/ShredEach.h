// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/ProgressCallback.h"

#include <QCoroTask>
#include <QStringList>

#include <functional>

namespace quillhaven {

/// What the counter " (n/total)" at the end of the status texts counts.
enum class ShredCounter {
    Succeeded, ///< the items that have succeeded and this one; the status that names the item has no counter
    Position,  ///< the items of the list up to this one
};

/// The outcome of a run over a list.
struct ShredOutcome
{
    qsizetype totalItems = 0;
    qsizetype completedCount = 0;
    QStringList errorLines; ///< "name: description" for each item that failed

    /// Reports the last status. Throws QuillhavenError::bulkOperationFailed with the lines if there are any.
    void report(const ProgressCallback &progressCallback) const;
};

/// Calls `shredOne` for each name in turn, with its index and a callback that maps the item's progress to its share of
/// the list and appends the counter to its status texts. An item that fails does not end the run.
[[nodiscard]] QCoro::Task<ShredOutcome>
shredEach(QStringList names, ShredCounter counter,
          std::function<QCoro::Task<>(qsizetype index, ProgressCallback itemProgress)> shredOne,
          ProgressCallback progressCallback);

} // namespace quillhaven
