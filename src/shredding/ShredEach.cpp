// SPDX-License-Identifier: GPL-3.0-or-later

#include "shredding/ShredEach.h"

#include "async/StopForEnd.h"
#include "catalogue/QuillhavenError.h"
#include "support/DisplayName.h"

namespace quillhaven {

QCoro::Task<ShredOutcome> shredEach(QStringList names, ShredCounter counter,
                                    std::function<QCoro::Task<>(qsizetype, ProgressCallback)> shredOne,
                                    ProgressCallback progressCallback)
{
    ShredOutcome outcome;
    outcome.totalItems = names.size();
    const auto total = static_cast<double>(outcome.totalItems);
    for (qsizetype index = 0; index < outcome.totalItems && !stopsForEnd(index, outcome.totalItems); ++index) {
        const QString name = displayName(names.at(index));
        const bool countsPosition = counter == ShredCounter::Position;
        const qsizetype number = (countsPosition ? index : outcome.completedCount) + 1;
        const QString suffix = QStringLiteral(" (%1/%2)").arg(number).arg(outcome.totalItems);
        const double start = static_cast<double>(index) / total;
        const QString naming = QStringLiteral("Shredding ") + name + QStringLiteral("...");
        progressCallback(countsPosition ? naming + suffix : naming, start);
        const auto itemProgress = [progressCallback, suffix, start, total](const QString &status, double progress) {
            progressCallback(status + suffix, start + progress / total);
        };
        try {
            co_await shredOne(index, itemProgress);
            ++outcome.completedCount;
        } catch (...) {
            outcome.errorLines.append(name + QStringLiteral(": ") + localizedDescription(std::current_exception()));
        }
    }
    co_return outcome;
}

void ShredOutcome::report(const ProgressCallback &progressCallback) const
{
    if (errorLines.isEmpty()) {
        progressCallback(QStringLiteral("Successfully shredded %1 items").arg(completedCount), 1.0);
        return;
    }
    const QString lines = errorLines.join(QLatin1Char('\n'));
    progressCallback(QStringLiteral("Completed %1 of %2 items. Errors:\n").arg(completedCount).arg(totalItems) + lines,
                     1.0);
    throw QuillhavenError(QuillhavenError::bulkOperationFailed,
                          QStringLiteral("Some items failed to shred:\n") + lines);
}

} // namespace quillhaven
