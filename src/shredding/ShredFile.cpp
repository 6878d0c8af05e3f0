// A file is overwritten with one byte value a pass: 0x00, then 0xFF, then a random one. The size is taken once, so what
// another program appends meanwhile is not overwritten. A failure leaves the file partly overwritten under its own
// name, or, when only the removal failed, overwritten under the random one.

#include "platform/AfterPosted.h"
#include "platform/FileManager.h"
#include "platform/OffMainThread.h"
#include "platform/Paths.h"
#include "platform/RandomSource.h"
#include "shredding/QuillhavenShredder.h"

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

struct OverwriteWork
{
    FileManager &files;
    RandomSource &random;
    QString path;
    int pass;
    int64_t fileSize;
    std::function<void(double)> progress;
};

void overwrite(const OverwriteWork &work)
{
    const std::unique_ptr<FileHandle> file = work.files.openForOverwriting(work.path);
    constexpr int64_t chunkSize = QuillhavenShredder::chunkSize;
    const std::vector<std::byte> pattern(chunkSize, patternOf(work.pass, work.random));
    file->seek(0);
    const int64_t chunks = (work.fileSize + chunkSize - 1) / chunkSize;
    for (int64_t chunk = 0; chunk < chunks; ++chunk) {
        const int64_t length = std::min(chunkSize, work.fileSize - chunk * chunkSize);
        file->writeThrough(std::span(pattern).first(static_cast<size_t>(length)));
        if (work.progress) {
            work.progress(static_cast<double>(chunk + 1) / static_cast<double>(chunks));
        }
    }
    file->synchronizeFile();
    file->closeFile();
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
        auto chunkDone = [this, progressCallback, passStart](double fraction) {
            progressCallback(m_currentOperation, passStart + fraction / passes * share);
        };
        co_await performSecureOverwrite(path, pass, fileSize, std::move(chunkDone));
    }

    report(progressCallback, QStringLiteral("Removing file metadata: ") + name, 0.95);
    co_await secureDelete(path);
    progressCallback(QStringLiteral("File shredded successfully: ") + name, 1.0);
}

QCoro::Task<> QuillhavenShredder::performSecureOverwrite(QString path, int pass, int64_t fileSize,
                                                         std::function<void(double)> progress)
{
    // Queued, so that no chunk waits for the window.
    std::function<void(double)> tell;
    QMetaObject::Connection listening;
    if (progress) {
        const quint64 run = ++m_overwrites;
        tell = [this, run](double fraction) { Q_EMIT chunkWritten(run, fraction); };
        const auto listen = [run, progress](quint64 of, double fraction) {
            if (of == run) {
                progress(fraction);
            }
        };
        listening = connect(this, &QuillhavenShredder::chunkWritten, this, listen, Qt::QueuedConnection);
    }
    OverwriteWork work{m_platform.fileManager, m_platform.random, path, pass, fileSize, std::move(tell)};
    auto pieceOfWork = [work = std::move(work)] { overwrite(work); };
    std::exception_ptr failure;
    try {
        co_await offMainThread(std::move(pieceOfWork));
    } catch (...) {
        failure = std::current_exception();
    }
    if (listening) {
        // A quick worker is through before it is waited for, and what it told is then still on its way.
        co_await afterPosted();
        disconnect(listening);
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

QCoro::Task<> QuillhavenShredder::secureDelete(QString path)
{
    FileManager &files = m_platform.fileManager;
    const QString renamed = pathInDirectory(parentDirectory(path), m_platform.random.uuidString());
    auto work = [&files, path, renamed] {
        files.renameItem(path, renamed);
        files.removeItem(renamed);
        files.sync(); // brings the new name and its removal to the device too
    };
    co_await offMainThread(std::move(work));
}

} // namespace quillhaven
