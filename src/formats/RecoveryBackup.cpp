// SPDX-License-Identifier: GPL-3.0-or-later

#include "formats/RecoveryBackup.h"

#include "catalogue/QuillhavenError.h"
#include "cipher/SealedBox.h"
#include "formats/SecuredContainer.h"
#include "support/Utf8.h"
#include "support/printLogger.h"

#include <QtEndian>

#include <algorithm>

namespace quillhaven {

namespace {

bool startsWith(std::span<const std::byte> file, std::span<const char> magic)
{
    return file.size() >= magic.size() && std::ranges::equal(file.first(magic.size()), std::as_bytes(magic));
}

size_t metadataLength(std::span<const std::byte> file)
{
    return qFromLittleEndian<quint32>(file.data() + recovery_backup::lengthOffset);
}

OwnedBytes wholeOf(FileBuffer file)
{
    const std::span<std::byte> bytes = file.bytes();
    return {std::move(file), bytes};
}

} // namespace

bool recovery_backup::hasMagic(std::span<const std::byte> file)
{
    return startsWith(file, std::span(magic, magicSize));
}

std::optional<QString> recovery_backup::metadata(std::span<const std::byte> file)
{
    const size_t length = metadataLength(file);
    if (length > file.size() - metadataOffset) {
        return std::nullopt;
    }
    const auto text = file.subspan(metadataOffset, length);
    return decodedUtf8(
        QByteArrayView(reinterpret_cast<const char *>(text.data()), static_cast<qsizetype>(text.size())));
}

void createRecoveryBackup(FileManager &fileManager, RandomSource &random, const UserDirectories &directories,
                          const QString &source, const QString &backupPath, const QString &masterPassword,
                          const ProtectedItem &item)
{
    using namespace recovery_backup;
    const QByteArray salt = generateRandomData(random, static_cast<qsizetype>(saltSize));
    const SymmetricKey key = deriveRecoveryKey(masterPassword, std::as_bytes(std::span(salt)));
    const QByteArray metadata = QString(item.id + QLatin1Char(':') + item.originalName).toUtf8();
    QByteArray length(sizeof(quint32), '\0');
    qToLittleEndian(static_cast<quint32>(metadata.size()), length.data());
    writeSealedFile(fileManager, random, directories, source, backupPath, magic + salt + length + metadata, key);
}

OwnedBytes decryptRecoveryBackup(FileBuffer file, const QString &masterPassword)
{
    using namespace recovery_backup;
    const std::span<std::byte> bytes = file.bytes();
    if (bytes.size() <= metadataOffset) {
        throw QuillhavenError(QuillhavenError::encryptionFailed, QStringLiteral("Invalid recovery backup format"));
    }
    const size_t boxOffset = metadataOffset + metadataLength(bytes);
    if (boxOffset >= bytes.size()) {
        throw QuillhavenError(QuillhavenError::encryptionFailed, QStringLiteral("Invalid recovery backup metadata"));
    }
    const SymmetricKey key = deriveRecoveryKey(masterPassword, bytes.subspan(magicSize, saltSize));
    const std::span<std::byte> plaintext = sealed_box::openInPlace(key, bytes.subspan(boxOffset));
    return {std::move(file), plaintext};
}

OwnedBytes decryptLegacyBackup(FileBuffer file)
{
    if (file.size() <= secured_container::boxOffset) {
        throw QuillhavenError(QuillhavenError::encryptionFailed, QStringLiteral("Invalid legacy backup format"));
    }
    printLogger(QStringLiteral("⚠️ Legacy backup format detected - cannot decrypt without original password"));
    return wholeOf(std::move(file));
}

OwnedBytes decryptBackup(FileBuffer file, const QString &masterPassword)
{
    // A file that contains only a magic is not a backup.
    const std::span<const std::byte> bytes = file.bytes();
    if (bytes.size() > recovery_backup::magicSize && recovery_backup::hasMagic(bytes)) {
        return decryptRecoveryBackup(std::move(file), masterPassword);
    }
    const std::span containerMagic(secured_container::magic, secured_container::magicSize);
    if (bytes.size() > secured_container::magicSize && startsWith(bytes, containerMagic)) {
        return decryptLegacyBackup(std::move(file));
    }
    return wholeOf(std::move(file));
}

OwnedBytes decryptBackupFile(const FileManager &fileManager, const QString &path, const QString &masterPassword)
{
    return decryptBackup(fileManager.readFile(path), masterPassword);
}

} // namespace quillhaven
