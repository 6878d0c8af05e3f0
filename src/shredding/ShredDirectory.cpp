// SPDX-License-Identifier: GPL-3.0-or-later

// Every regular file of the folder is listed before the first one is touched, so that what cannot be read fails with
// the folder whole. A failure at a file leaves those before it destroyed and those after it whole.

#include "async/MainThread.h"
#include "async/OffMainThread.h"
#include "platform/FileManager.h"
#include "shredding/Overwriting.h"
#include "shredding/QuillhavenShredder.h"
#include "support/Paths.h"

namespace quillhaven {

QCoro::Task<> QuillhavenShredder::shredDirectory(QString path, ProgressCallback progressCallback)
{
    const QString name = lastPathComponent(path);
    report(progressCallback, QStringLiteral("Analyzing directory: ") + name, 0.05);
    FileManager &fileManager = m_platform.fileManager;
    RandomSource &random = m_platform.random;
    auto list = [&fileManager, path] { return fileManager.regularFilesBelow(path); };
    const QList<FileEntry> files = co_await offMainThread(std::move(list));
    int64_t totalSize = 0;
    for (const FileEntry &file : files) {
        totalSize += file.size;
    }

    report(progressCallback, QStringLiteral("Found %1 files to shred").arg(files.size()), 0.1);
    int64_t processedSize = 0;
    for (const FileEntry &file : files) {
        // Not a number when every file is empty; the receiver copes with that.
        const double progress = static_cast<double>(processedSize) / static_cast<double>(totalSize) * 0.8 + 0.1;
        const std::function reportPass = [this, progressCallback, fileName = lastPathComponent(file.path),
                                          progress](int pass) {
            report(progressCallback, passText(pass, fileName), progress);
        };
        const auto passBegins = onMainThread(reportPass);
        // A file is one piece of work: with many small ones the way to a worker and back would cost more than the work.
        auto shredOne = [&fileManager, &random, file, passBegins] {
            for (int pass = 1; pass <= overwritingPasses; ++pass) {
                passBegins(pass);
                performSecureOverwrite(fileManager, random, file.path, pass, file.size, {});
            }
            secureDelete(fileManager, random, file.path);
        };
        co_await offMainThread(std::move(shredOne));
        processedSize += file.size;
    }

    report(progressCallback, QStringLiteral("Removing directory structure"), 0.95);
    auto remove = [&fileManager, path] { fileManager.removeItem(path); };
    co_await offMainThread(std::move(remove));
    progressCallback(QStringLiteral("Directory shredded successfully: ") + name, 1.0);
}

} // namespace quillhaven
