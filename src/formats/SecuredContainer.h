// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "formats/SealedFile.h"

#include <QByteArray>
#include <QString>

namespace quillhaven {

/// The container: an encrypted snapshot of a file at the time it was protected. docs/formats.md describes the layout.
///
/// | Offset | Size | Field |
/// |---|---|---|
/// | 0 | 10 | magic "QUILLHAVEN" |
/// | 10 | 32 | salt of the key derivation |
/// | 42 | 12 | nonce |
/// | 54 | n | ciphertext, as long as the plaintext |
/// | 54 + n | 16 | tag |
namespace secured_container {

inline constexpr char magic[] = "QUILLHAVEN";
inline constexpr size_t magicSize = sizeof magic - 1;
inline constexpr size_t saltSize = 32;
inline constexpr size_t boxOffset = magicSize + saltSize;

/// The text that a folder's container has instead of encrypted bytes.
[[nodiscard]] QByteArray folderMarker(const QString &backupPath);

} // namespace secured_container

/// Writes the container of `source` to `containerPath`, as `writeSealedFile` does. `itemId` is not used.
void createEncryptedContainer(FileManager &fileManager, RandomSource &random, const UserDirectories &directories,
                              const QString &source, const QString &containerPath, const QString &password,
                              const QString &itemId);

} // namespace quillhaven
