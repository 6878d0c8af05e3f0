// SPDX-License-Identifier: GPL-3.0-or-later

// The size is read once, so data that another program appends meanwhile is not overwritten. After a failure the file is
// partly overwritten under its own name or, if only the removal failed, completely overwritten under the random name.

#include "async/MainThread.h"
#include "async/OffMainThread.h"
#include "platform/FileManager.h"
#include "shredding/Overwriting.h"
#include "shredding/QuillhavenShredder.h"
#include "support/DisplayName.h"
#include "support/Paths.h"

namespace quillhaven {

QCoro::Task<> QuillhavenShredder::shredFile(QString path, ProgressCallback progressCallback)
{
    constexpr double start = 0.1;
    constexpr double share = 0.8;
    const QString name = displayName(lastPathComponent(path));
    FileManager &files = m_platform.fileManager;
    RandomSource &random = m_platform.random;
    report(progressCallback, QStringLiteral("Analyzing file: ") + name, start);
    auto size = [&files, path] { return files.sizeOfItem(path); };
    const int64_t fileSize = co_await offMainThread(std::move(size));

    for (int pass = 1; pass <= overwritingPasses; ++pass) {
        const double passStart = static_cast<double>(pass - 1) / overwritingPasses * share + start;
        report(progressCallback, passText(pass, name), passStart);
        const std::function chunkDone = [this, progressCallback, passStart](double fraction) {
            progressCallback(m_currentOperation, passStart + fraction / overwritingPasses * share);
        };
        const auto progress = onMainThread(chunkDone);
        auto overwrite = [&files, &random, path, pass, fileSize, progress] {
            performSecureOverwrite(files, random, path, pass, fileSize, progress);
        };
        co_await offMainThread(std::move(overwrite));
    }

    report(progressCallback, QStringLiteral("Removing file metadata: ") + name, 0.95);
    auto remove = [&files, &random, path] { secureDelete(files, random, path); };
    co_await offMainThread(std::move(remove));
    progressCallback(QStringLiteral("File shredded successfully: ") + name, 1.0);
}

} // namespace quillhaven
