// SPDX-License-Identifier: GPL-3.0-or-later

// All regular files of the folder are listed before the first one is touched, so that a part that cannot be read is
// reported while the folder is still intact. If a file fails, those before it are destroyed and those after it intact.

#include "async/MainThread.h"
#include "async/OffMainThread.h"
#include "platform/FileManager.h"
#include "shredding/Overwriting.h"
#include "shredding/QuillhavenShredder.h"
#include "support/DisplayName.h"
#include "support/Paths.h"

namespace quillhaven {

QCoro::Task<> QuillhavenShredder::shredDirectory(QString path, ProgressCallback progressCallback)
{
    const QString name = displayName(lastPathComponent(path));
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
        // NaN if all files are empty; the receiver handles that.
        const double progress = static_cast<double>(processedSize) / static_cast<double>(totalSize) * 0.8 + 0.1;
        const std::function reportPass = [this, progressCallback, fileName = displayName(lastPathComponent(file.path)),
                                          progress](int pass) {
            report(progressCallback, passText(pass, fileName), progress);
        };
        const auto passBegins = onMainThread(reportPass);
        // One task for a whole file: with many small files, going to a worker for each pass would cost more than the
        // work itself.
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
