// SPDX-License-Identifier: GPL-3.0-or-later

// A file is overwritten with one byte value a pass: 0x00, then 0xFF, then a random one. The size is taken once, so what
// another program appends meanwhile is not overwritten. A failure leaves the file partly overwritten under its own
// name, or, when only the removal failed, overwritten under the random one.

#include "async/OffMainThread.h"
#include "platform/FileManager.h"
#include "platform/RandomSource.h"
#include "shredding/QuillhavenShredder.h"
#include "support/Paths.h"

#include <algorithm>
#include <array>
#include <vector>

namespace quillhaven {

namespace {

std::byte patternOf(int pass, RandomSource &random)
{
    if (pass == 2) {
        return std::byte{0xFF};
    }
    if (pass == 3) {
        std::array<std::byte, 8> drawn{};
        random.fill(drawn);
        return drawn.front();
    }
    return std::byte{0};
}

} // namespace

QCoro::Task<> QuillhavenShredder::shredFile(QString path, ProgressCallback progressCallback)
{
    constexpr double start = 0.1;
    constexpr double share = 0.8;
    const QString name = lastPathComponent(path);
    report(progressCallback, QStringLiteral("Analyzing file: ") + name, start);
    auto size = [&files = m_platform.fileManager, path] { return files.sizeOfItem(path); };
    const int64_t fileSize = co_await offMainThread(std::move(size));

    for (int pass = 1; pass <= passes; ++pass) {
        const double passStart = static_cast<double>(pass - 1) / passes * share + start;
        report(progressCallback, QStringLiteral("Pass %1/%2: ").arg(pass).arg(passes) + name, passStart);
        auto work = [this, path, pass, fileSize](quint64 run) {
            performSecureOverwrite(path, pass, fileSize,
                                   [this, run, pass](double fraction) { Q_EMIT passAdvanced(run, pass, fraction); });
        };
        auto chunkDone = [this, progressCallback, passStart](int, double fraction) {
            progressCallback(m_currentOperation, passStart + fraction / passes * share);
        };
        co_await overwriting(std::move(work), std::move(chunkDone));
    }

    report(progressCallback, QStringLiteral("Removing file metadata: ") + name, 0.95);
    auto remove = [this, path] { secureDelete(path); };
    co_await offMainThread(std::move(remove));
    progressCallback(QStringLiteral("File shredded successfully: ") + name, 1.0);
}

QCoro::Task<> QuillhavenShredder::overwriting(std::function<void(quint64 run)> work, PassListener listener)
{
    const quint64 run = ++m_runs;
    m_listeners.insert(run, std::move(listener));
    auto numbered = [work = std::move(work), run] { work(run); };
    std::exception_ptr failure;
    try {
        co_await offMainThread(std::move(numbered));
    } catch (...) {
        failure = std::current_exception();
    }
    m_listeners.remove(run);
    if (failure) {
        std::rethrow_exception(failure);
    }
}

void QuillhavenShredder::tellListener(quint64 run, int pass, double fraction)
{
    if (const PassListener listener = m_listeners.value(run)) {
        listener(pass, fraction);
    }
}

void QuillhavenShredder::performSecureOverwrite(const QString &path, int pass, int64_t fileSize,
                                                const std::function<void(double fraction)> &progress)
{
    const std::unique_ptr<FileHandle> file = m_platform.fileManager.openForOverwriting(path);
    const auto longest = static_cast<size_t>(std::min(chunkSize, fileSize));
    const std::vector<std::byte> pattern(longest, patternOf(pass, m_platform.random));
    file->seek(0);
    const int64_t chunks = (fileSize + chunkSize - 1) / chunkSize;
    for (int64_t chunk = 0; chunk < chunks; ++chunk) {
        const int64_t length = std::min(chunkSize, fileSize - chunk * chunkSize);
        file->writeThrough(std::span(pattern).first(static_cast<size_t>(length)));
        if (progress) {
            progress(static_cast<double>(chunk + 1) / static_cast<double>(chunks));
        }
    }
    file->synchronizeFile();
    file->closeFile();
}

void QuillhavenShredder::secureDelete(const QString &path)
{
    FileManager &files = m_platform.fileManager;
    const QString renamed = pathInDirectory(parentDirectory(path), m_platform.random.uuidString());
    files.renameItem(path, renamed);
    files.removeItem(renamed);
    files.sync(); // brings the new name and its removal to the device too
}

} // namespace quillhaven
