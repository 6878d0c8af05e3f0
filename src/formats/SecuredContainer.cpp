// SPDX-License-Identifier: GPL-3.0-or-later

#include "formats/SecuredContainer.h"

namespace quillhaven {

QByteArray secured_container::folderMarker(const QString &backupPath)
{
    return "FOLDER:" + backupPath.toUtf8();
}

void createEncryptedContainer(FileManager &fileManager, RandomSource &random, const UserDirectories &directories,
                              const QString &source, const QString &containerPath, const QString &password,
                              const QString & /*itemId*/)
{
    using namespace secured_container;
    const QByteArray salt = generateRandomData(random, static_cast<qsizetype>(saltSize));
    const SymmetricKey key = deriveRecoveryKey(password, std::as_bytes(std::span(salt)));
    writeSealedFile(fileManager, random, directories, source, containerPath, magic + salt, key);
}

} // namespace quillhaven
