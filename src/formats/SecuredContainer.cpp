#include "formats/SecuredContainer.h"

#include "formats/FolderArchive.h"
#include "formats/SealedBox.h"

#include <algorithm>

namespace quillhaven {

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
    sealed_box::sealInPlace(key, box);
    fileManager.writeFile(containerPath, output.bytes());
}

} // namespace quillhaven
