// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"
#include "formats/SealedFile.h"

#include <optional>

namespace quillhaven {

/// The recovery backup: an encrypted copy that can be opened with only the master password. docs/formats.md describes
/// the layout; the fields before the nonce are neither encrypted nor authenticated.
///
/// | Offset | Size | Field |
/// |---|---|---|
/// | 0 | 8 | magic "RECOVERY" |
/// | 8 | 32 | salt of the key derivation |
/// | 40 | 4 | L, the size of the metadata, little-endian |
/// | 44 | L | metadata, UTF-8: id, colon, original name |
/// | 44 + L | 12 | nonce |
/// | 56 + L | n | ciphertext, as long as the plaintext |
/// | 56 + L + n | 16 | tag |
namespace recovery_backup {

inline constexpr char magic[] = "RECOVERY";
inline constexpr size_t magicSize = sizeof magic - 1;
inline constexpr size_t saltSize = 32;
inline constexpr size_t lengthOffset = magicSize + saltSize;
inline constexpr size_t metadataOffset = lengthOffset + sizeof(uint32_t);

[[nodiscard]] bool hasMagic(std::span<const std::byte> file);
/// The metadata's text; nothing if its length points past the end of the file or it is not valid UTF-8. `file` has at
/// least 45 bytes.
[[nodiscard]] std::optional<QString> metadata(std::span<const std::byte> file);

} // namespace recovery_backup

/// Bytes and the buffer that they are in.
struct OwnedBytes
{
    FileBuffer memory;
    std::span<std::byte> bytes;
};

/// Writes the recovery backup of an item, whose data is at `source`, to `backupPath`, as `writeSealedFile` does.
void createRecoveryBackup(FileManager &fileManager, RandomSource &random, const UserDirectories &directories,
                          const QString &source, const QString &backupPath, const QString &masterPassword,
                          const ProtectedItem &item);

/// Decrypts a recovery backup in place. Throws QuillhavenError::encryptionFailed if the layout is invalid, and
/// CipherError if the password is wrong or bytes were changed.
[[nodiscard]] OwnedBytes decryptRecoveryBackup(FileBuffer file, const QString &masterPassword);

/// Returns the bytes of a container unchanged, as ciphertext, since only its own password could open it. Logs that.
[[nodiscard]] OwnedBytes decryptLegacyBackup(FileBuffer file);

/// The contents of a file of any kind: decrypted if it is a recovery backup, unchanged otherwise.
[[nodiscard]] OwnedBytes decryptBackup(FileBuffer file, const QString &masterPassword);

/// Reads the file and does the same.
[[nodiscard]] OwnedBytes decryptBackupFile(const FileManager &fileManager, const QString &path,
                                           const QString &masterPassword);

} // namespace quillhaven
