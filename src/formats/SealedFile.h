// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cipher/KeyDerivation.h"
#include "platform/FileManager.h"
#include "platform/RandomSource.h"
#include "platform/UserDirectories.h"

#include <QByteArray>

namespace quillhaven {

/// Writes `header`, then the combined box of `source` under `key`, to `path`, in place. A folder is sealed as the tar
/// archive that `createFolderArchive` makes of it. Bytes are sealed while further ones are read, and written while the
/// rest is sealed, but nothing is written before the whole plaintext was read; peak memory use is little more than the
/// size of the result. Blocks. Throws FileError, CipherError, or an exception of the archive. A partial file that a
/// failed write leaves at `path` is not removed.
void writeSealedFile(FileManager &fileManager, RandomSource &random, const UserDirectories &directories,
                     const QString &source, const QString &path, const QByteArray &header, const SymmetricKey &key);

/// Returns `count` random bytes, or zero bytes if the generator fails.
[[nodiscard]] QByteArray generateRandomData(RandomSource &random, qsizetype count);

} // namespace quillhaven
