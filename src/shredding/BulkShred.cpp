// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/AfterPosted.h"
#include "credentials/MasterPasswordManager.h"
#include "shredding/QuillhavenShredder.h"
#include "shredding/ShredEach.h"
#include "support/Paths.h"

namespace quillhaven {

QCoro::Task<> QuillhavenShredder::bulkShredItems(QStringList paths, ProgressCallback progressCallback)
{
    if (!co_await m_masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    co_await afterPosted();
    begin();
    QStringList names;
    for (const QString &path : paths) {
        names.append(lastPathComponent(path));
    }
    const auto shredOne = [this, paths](qsizetype index, ProgressCallback itemProgress) {
        return shredItem(paths.at(index), std::move(itemProgress));
    };
    const ShredOutcome outcome = co_await shredEach(names, ShredCounter::Succeeded, shredOne, progressCallback);
    finishLater();
    outcome.report(progressCallback);
    m_masterPasswordManager.endSession();
}

} // namespace quillhaven
