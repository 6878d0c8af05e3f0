#include "formats/SecuredContainer.h"

#include "formats/FolderArchive.h"
#include "formats/SealedBox.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <limits>
#include <thread>

namespace quillhaven {

namespace {

/// Seals the box of a container on a thread of its own, so that what is sealed can be written meanwhile.
class Sealing
{
public:
    Sealing(const SymmetricKey &key, std::span<std::byte> container)
        : m_thread([this, key, box = container.subspan(secured_container::boxOffset)] { run(key, box); })
    {
    }
    ~Sealing() { m_thread.join(); }
    Sealing(const Sealing &) = delete;
    Sealing &operator=(const Sealing &) = delete;

    /// Blocks until more than `done` bytes of the container are final; how many are. Throws what the sealing threw.
    size_t finalBytes(size_t done)
    {
        size_t known = m_final.load();
        while (known <= done) {
            m_final.wait(known);
            known = m_final.load();
        }
        if (known == failed) {
            std::rethrow_exception(m_error);
        }
        return known;
    }

private:
    static constexpr size_t failed = std::numeric_limits<size_t>::max();

    void run(const SymmetricKey &key, std::span<std::byte> box)
    {
        try {
            sealed_box::sealInPlace(key, box, [this](size_t count) { publish(secured_container::boxOffset + count); });
        } catch (...) {
            m_error = std::current_exception();
            publish(failed);
        }
    }

    void publish(size_t count)
    {
        m_final.store(count);
        m_final.notify_one();
    }

    std::atomic<size_t> m_final = 0;
    std::exception_ptr m_error; ///< set before `failed` is published
    std::thread m_thread;       ///< last, since it uses the others
};

} // namespace

QByteArray secured_container::folderMarker(const QString &backupPath)
{
    return "FOLDER:" + backupPath.toUtf8();
}

QByteArray generateRandomData(RandomSource &random, qsizetype count)
{
    QByteArray data(count, '\0');
    // A failing generator is not reported; the bytes then stay zero.
    random.fill(std::as_writable_bytes(std::span(data.data(), static_cast<size_t>(data.size()))));
    return data;
}

void createEncryptedContainer(FileManager &fileManager, RandomSource &random, const UserDirectories &directories,
                              const QString &source, const QString &containerPath, const QString &password,
                              const QString & /*itemId*/)
{
    using namespace secured_container;
    const QByteArray salt = generateRandomData(random, static_cast<qsizetype>(saltSize));
    const auto saltBytes = std::as_bytes(std::span(salt.constData(), saltSize));
    const SymmetricKey key = deriveRecoveryKey(password, saltBytes);

    constexpr size_t headroom = boxOffset + sealed_box::nonceSize;
    FileBuffer output = fileManager.isDirectory(source) ? createFolderArchive(fileManager, random, directories, source,
                                                                              headroom, sealed_box::tagSize)
                                                        : fileManager.readFile(source, headroom, sealed_box::tagSize);
    const std::span<std::byte> bytes = output.bytes();
    std::ranges::copy(std::as_bytes(std::span(magic, magicSize)), bytes.begin());
    std::ranges::copy(saltBytes, bytes.subspan(magicSize).begin());
    const std::span<std::byte> box = bytes.subspan(boxOffset);
    random.fill(box.first(sealed_box::nonceSize));
    Sealing sealing(key, output.bytes());
    fileManager.writeFile(containerPath, output.bytes(), [&sealing](size_t done) { return sealing.finalBytes(done); });
}

} // namespace quillhaven
