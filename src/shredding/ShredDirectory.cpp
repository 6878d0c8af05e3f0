// SPDX-License-Identifier: GPL-3.0-or-later

// Every regular file of the folder is listed before the first one is touched, so that what cannot be read fails with
// the folder whole. A failure at a file leaves those before it destroyed and those behind it whole.

#include "async/OffMainThread.h"
#include "platform/FileManager.h"
#include "shredding/QuillhavenShredder.h"
#include "support/Paths.h"

namespace quillhaven {

QCoro::Task<> QuillhavenShredder::shredDirectory(QString path, ProgressCallback progressCallback)
{
    const QString name = lastPathComponent(path);
    report(progressCallback, QStringLiteral("Analyzing directory: ") + name, 0.05);
    FileManager &fileManager = m_platform.fileManager;
    auto list = [&fileManager, path] { return fileManager.regularFilesBelow(path); };
    const QList<FileEntry> files = co_await offMainThread(std::move(list));
    int64_t totalSize = 0;
    for (const FileEntry &file : files) {
        totalSize += file.size;
    }

    report(progressCallback, QStringLiteral("Found %1 files to shred").arg(files.size()), 0.1);
    int64_t processedSize = 0;
    for (const FileEntry &file : files) {
        // A file is one piece of work: with many small ones the way to a worker and back would cost more than the work.
        auto work = [this, file](quint64 run) {
            for (int pass = 1; pass <= passes; ++pass) {
                Q_EMIT passAdvanced(run, pass, 0.0);
                performSecureOverwrite(file.path, pass, file.size, {});
            }
            secureDelete(file.path);
        };
        // Not a number when every file is empty; whoever shows it copes with that.
        const double progress = static_cast<double>(processedSize) / static_cast<double>(totalSize) * 0.8 + 0.1;
        auto passBegan = [this, progressCallback, fileName = lastPathComponent(file.path), progress](int pass, double) {
            report(progressCallback, QStringLiteral("Pass %1/%2: ").arg(pass).arg(passes) + fileName, progress);
        };
        co_await overwriting(std::move(work), std::move(passBegan));
        processedSize += file.size;
    }

    report(progressCallback, QStringLiteral("Removing directory structure"), 0.95);
    auto remove = [&fileManager, path] { fileManager.removeItem(path); };
    co_await offMainThread(std::move(remove));
    progressCallback(QStringLiteral("Directory shredded successfully: ") + name, 1.0);
}

} // namespace quillhaven
