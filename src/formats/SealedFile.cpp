// SPDX-License-Identifier: GPL-3.0-or-later

#include "formats/SealedFile.h"

#include "cipher/CipherError.h"
#include "cipher/SealedBox.h"
#include "formats/FolderArchive.h"
#include "platform/ReadWholeFile.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <limits>
#include <memory>
#include <thread>
#include <utility>

namespace quillhaven {

namespace {

/// A count that one thread raises and another waits for.
class Counter
{
public:
    /// More than any count of bytes: ends the waiting, since no more bytes will come.
    static constexpr size_t ended = std::numeric_limits<size_t>::max();

    void set(size_t count)
    {
        m_count.store(count);
        m_count.notify_one();
    }

    /// Blocks until the count is above `done`.
    [[nodiscard]] size_t above(size_t done) const
    {
        size_t known = m_count.load();
        while (known <= done) {
            m_count.wait(known);
            known = m_count.load();
        }
        return known;
    }

private:
    std::atomic<size_t> m_count = 0;
};

/// Seals bytes on its own thread while they are being read, so that sealed ones can be written meanwhile.
class Sealing final : public ReadListener
{
public:
    Sealing(RandomSource &random, const QByteArray &header, const SymmetricKey &key)
        : m_random(random), m_header(std::as_bytes(std::span(header))), m_key(key)
    {
    }
    ~Sealing() override { end(); }
    Sealing(const Sealing &) = delete;
    Sealing &operator=(const Sealing &) = delete;

    [[nodiscard]] size_t headroom() const { return m_header.size() + sealed_box::nonceSize; }

    void began(std::span<std::byte> buffer) override
    {
        std::ranges::copy(m_header, buffer.begin());
        const std::span<std::byte> box = buffer.subspan(m_header.size());
        if (!m_random.fill(box.first(sealed_box::nonceSize))) {
            throw CipherError(CipherError::libraryFailure); // A nonce used twice would reveal the contents.
        }
        m_arrived.set(0);
        m_final.set(0);
        m_thread = std::thread([this, box] { run(box); });
    }
    void arrived(size_t count) override { m_arrived.set(count); }
    void abandoned() override { end(); }

    /// Blocks until more than `done` bytes of the result are final, and returns how many are. Rethrows the exception of
    /// the sealing thread.
    [[nodiscard]] size_t finalBytes(size_t done) const
    {
        const size_t count = m_final.above(done);
        if (count == Counter::ended) {
            std::rethrow_exception(m_error);
        }
        return count;
    }

private:
    struct Abandoned
    {
    };

    void run(std::span<std::byte> box)
    {
        const auto arrived = [this](size_t done) {
            const size_t count = m_arrived.above(done);
            return count == Counter::ended ? throw Abandoned() : count;
        };
        try {
            sealed_box::sealInPlace(m_key, box, arrived,
                                    [this](size_t count) { m_final.set(m_header.size() + count); });
        } catch (...) {
            m_error = std::current_exception();
            m_final.set(Counter::ended);
        }
    }

    /// Returns when the sealing thread no longer uses the buffer.
    void end()
    {
        if (m_thread.joinable()) {
            m_arrived.set(Counter::ended);
            m_thread.join();
        }
    }

    RandomSource &m_random;
    std::span<const std::byte> m_header;
    SymmetricKey m_key;
    Counter m_arrived;
    Counter m_final;
    std::exception_ptr m_error; ///< set before `m_final` is set to `ended`
    std::thread m_thread;
};

/// Writes the bytes of `output` as they become final, and releases the memory of those that are written.
void writeWhileSealing(FileManager &fileManager, const QString &path, FileBuffer &output, const Sealing &sealing)
{
    constexpr size_t maxWrite = size_t(8) << 20; // bytes; small, so that memory is released continuously
    const std::unique_ptr<FileWriter> file = fileManager.openForWriting(path);
    for (size_t done = 0; done < output.size();) {
        output.release(done);
        const size_t count = std::min(sealing.finalBytes(done) - done, maxWrite);
        file->write(std::as_const(output).bytes().subspan(done, count));
        done += count;
    }
    file->close();
}

} // namespace

QByteArray generateRandomData(RandomSource &random, qsizetype count)
{
    QByteArray data(count, '\0');
    // A failure of the generator is not reported; the bytes are then zero.
    random.fill(std::as_writable_bytes(std::span(data.data(), static_cast<size_t>(data.size()))));
    return data;
}

void writeSealedFile(FileManager &fileManager, RandomSource &random, const UserDirectories &directories,
                     const QString &source, const QString &path, const QByteArray &header, const SymmetricKey &key)
{
    FileBuffer output; // must outlive the sealing, which works in it
    Sealing sealing(random, header, key);
    output = fileManager.isDirectory(source) ? createFolderArchive(fileManager, random, directories, source,
                                                                   sealing.headroom(), sealed_box::tagSize, sealing)
                                             : readWholeFile(*fileManager.openForReading(source), source,
                                                             sealing.headroom(), sealed_box::tagSize, sealing);
    writeWhileSealing(fileManager, path, output, sealing);
}

} // namespace quillhaven
