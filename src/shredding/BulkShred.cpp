// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/AfterPosted.h"
#include "catalogue/QuillhavenError.h"
#include "credentials/MasterPasswordManager.h"
#include "shredding/QuillhavenShredder.h"
#include "support/Paths.h"

namespace quillhaven {

QCoro::Task<> QuillhavenShredder::bulkShredItems(QStringList paths, ProgressCallback progressCallback)
{
    if (!co_await m_masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    co_await afterPosted();
    begin();
    const qsizetype totalItems = paths.size();
    qsizetype completedCount = 0;
    QStringList errorLines;
    for (qsizetype index = 0; index < totalItems; ++index) {
        const QString path = paths.at(index);
        const double start = static_cast<double>(index) / static_cast<double>(totalItems);
        progressCallback(QStringLiteral("Shredding ") + lastPathComponent(path) + QStringLiteral("..."), start);
        // Counts what succeeded, so after a failed item the number lags behind the position.
        const QString counter = QStringLiteral(" (%1/%2)").arg(completedCount + 1).arg(totalItems);
        const auto itemProgress = [progressCallback, counter, start, totalItems](const QString &status,
                                                                                 double progress) {
            progressCallback(status + counter, start + progress / static_cast<double>(totalItems));
        };
        try {
            co_await shredItem(path, itemProgress);
            ++completedCount;
        } catch (...) {
            errorLines.append(lastPathComponent(path) + QStringLiteral(": ") +
                              localizedDescription(std::current_exception()));
        }
    }

    finishLater();
    if (errorLines.isEmpty()) {
        progressCallback(QStringLiteral("Successfully shredded %1 items").arg(completedCount), 1.0);
        m_masterPasswordManager.endSession();
        co_return;
    }
    const QString lines = errorLines.join(QLatin1Char('\n'));
    progressCallback(QStringLiteral("Completed %1 of %2 items. Errors:\n").arg(completedCount).arg(totalItems) + lines,
                     1.0);
    throw QuillhavenError(QuillhavenError::bulkOperationFailed,
                          QStringLiteral("Some items failed to shred:\n") + lines);
}

} // namespace quillhaven
