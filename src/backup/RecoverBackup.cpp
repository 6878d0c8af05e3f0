// SPDX-License-Identifier: GPL-3.0-or-later

#include "backup/RecoverBackup.h"

#include "backup/CloudBackups.h"
#include "backup/RecoveryName.h"
#include "formats/RecoveryBackup.h"
#include "platform/FileManager.h"
#include "support/CharacterCount.h"
#include "support/Paths.h"
#include "support/printLogger.h"

namespace quillhaven {

namespace {

std::optional<FileBuffer> readBackup(const FileManager &files, const QString &path)
{
    try {
        return files.readFile(path);
    } catch (const LocalizedError &error) {
        printLogger(QStringLiteral("⚠️ Could not read backup file metadata: ") + error.errorDescription());
        return std::nullopt;
    }
}

/// A write would go through a link, to a file that may be outside the chosen folder.
void removeLink(FileManager &files, const QString &path)
{
    const std::optional<FileIdentity> item = files.identityOfItem(path, Links::Keep);
    if (item && item != files.identityOfItem(path, Links::Follow)) {
        files.removeItem(path);
    }
}

/// Writes the contents of the backup; false if it could not be decrypted or written.
bool writeDecrypted(FileManager &files, FileBuffer backup, const QString &masterPassword, const QString &output)
{
    try {
        const OwnedBytes plain = decryptBackup(std::move(backup), masterPassword);
        removeLink(files, output);
        files.writeFile(output, plain.bytes);
        return true;
    } catch (const FileError &error) {
        if (error.kind() == FileError::Kind::NoSpace && files.fileExists(output)) {
            files.removeItem(output); // a truncated file could be mistaken for the whole
        }
        return false;
    } catch (const LocalizedError &) {
        return false;
    }
}

QString nameInCatalogue(const QString &itemId, const std::optional<QString> &listedName)
{
    constexpr qsizetype maxLengthOfOtherNames = 20; // An id is longer.
    if (characterCount(itemId) <= maxLengthOfOtherNames) {
        return itemId;
    }
    if (listedName) {
        printLogger(QStringLiteral("✅ Found original filename from protected items: ") + *listedName);
        return *listedName;
    }
    printLogger(QStringLiteral("⚠️ Could not find original filename for backup: ") + itemId);
    return itemId;
}

} // namespace

QString recoverBackup(FileManager &files, const QString &backupPath, const QString &folder,
                      const QString &masterPassword, const std::optional<QString> &listedName)
{
    const QString itemId = CloudBackups::itemId(backupPath);
    std::optional<FileBuffer> backup = readBackup(files, backupPath);
    QString name = backup ? nameInMetadata(backup->bytes()).value_or(itemId) : itemId;
    if (name == itemId) {
        name = nameInCatalogue(itemId, listedName);
    }
    QString output = pathInDirectory(folder, name);
    if (backup && writeDecrypted(files, std::move(*backup), masterPassword, output)) {
        printLogger(QStringLiteral("✅ Successfully decrypted and recovered: ") + name);
    } else {
        printLogger(QStringLiteral("⚠️ Decryption failed for ") + name + QStringLiteral(", copying raw backup file"));
        files.copyItem(backupPath, output);
    }
    return output;
}

} // namespace quillhaven
