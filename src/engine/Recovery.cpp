// SPDX-License-Identifier: GPL-3.0-or-later

// Recovery writes every backup of the cloud folder as a plain file into a folder that the user chooses. It works from
// the backups themselves: the catalogue is only a second source of names. A backup that cannot be opened is copied as
// it is, under the name that the file would have had. The program does nothing else while it runs.

#include "async/OffMainThread.h"
#include "backup/RecoveryName.h"
#include "catalogue/QuillhavenError.h"
#include "engine/CloudBackups.h"
#include "engine/QuillhavenManager.h"
#include "formats/RecoveryBackup.h"
#include "platform/CloudStorage.h"
#include "platform/FileManager.h"
#include "platform/FilePanels.h"
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

/// Writes what the backup holds; false when it could not be opened or written.
bool writeDecrypted(FileManager &files, FileBuffer backup, const QString &masterPassword, const QString &output)
{
    try {
        const OwnedBytes plain = decryptBackup(std::move(backup), masterPassword);
        files.writeFile(output, plain.bytes);
        return true;
    } catch (const FileError &error) {
        if (error.kind() == FileError::Kind::NoSpace && files.fileExists(output)) {
            files.removeItem(output); // a piece of a file that nobody may take for the whole
        }
        return false;
    } catch (const LocalizedError &) {
        return false;
    }
}

} // namespace

QStringList QuillhavenManager::backupFilePaths() const
{
    const std::optional<QString> container = m_platform.cloud.containerDirectory(cloud_backups::containerIdentifier);
    if (!container) {
        throw QuillhavenError(QuillhavenError::iCloudNotAvailable);
    }
    const QString directory = cloud_backups::directoryIn(*container);
    QStringList paths;
    for (const QString &name : m_platform.fileManager.contentsOfDirectory(directory)) {
        if (name.endsWith(cloud_backups::suffix) && name != cloud_backups::suffix) {
            paths.append(pathInDirectory(directory, name));
        }
    }
    if (paths.isEmpty()) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    return paths;
}

QCoro::Task<QStringList> QuillhavenManager::recoverFromiCloud(QString masterPassword)
{
    const QStringList backups = backupFilePaths();
    auto retrieve = [keychain = m_keychain] { return keychain->retrieveMasterPassword(); };
    const QString stored = co_await offMainThread(m_platform.credentialQueue, std::move(retrieve));
    if (stored != masterPassword) {
        throw QuillhavenError(QuillhavenError::accessDenied, QStringLiteral("Invalid master password"));
    }

    OpenPanelRequest request;
    request.canChooseFiles = false;
    request.canChooseDirectories = true;
    request.canCreateDirectories = true;
    request.title = QStringLiteral("Choose Recovery Location");
    request.message = QStringLiteral("Select a folder where your recovered files will be saved");
    request.prompt = QStringLiteral("Recover Files");
    const std::optional<QString> folder = m_platform.panels.runModal(request);
    if (!folder) {
        throw QuillhavenError(QuillhavenError::authenticationCancelled);
    }
    QStringList recovered;
    for (const QString &backup : backups) {
        recovered.append(recoverBackup(backup, *folder, masterPassword));
    }
    co_return recovered;
}

QString QuillhavenManager::recoverBackup(const QString &backupPath, const QString &folder,
                                         const QString &masterPassword)
{
    FileManager &files = m_platform.fileManager;
    const QString backupId = lastPathComponent(backupPath).chopped(cloud_backups::suffix.size());
    std::optional<FileBuffer> backup = readBackup(files, backupPath);
    QString name = backup ? nameInMetadata(backup->bytes()).value_or(backupId) : backupId;
    if (name == backupId) {
        name = nameInCatalogue(backupId);
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

QString QuillhavenManager::nameInCatalogue(const QString &backupId)
{
    constexpr qsizetype longestOtherName = 20; // An id is longer.
    if (backupId.size() <= longestOtherName) {
        return backupId;
    }
    if (const ProtectedItem *item = m_catalogue.item(backupId)) {
        printLogger(QStringLiteral("✅ Found original filename from protected items: ") + item->originalName);
        return item->originalName;
    }
    printLogger(QStringLiteral("⚠️ Could not find original filename for backup: ") + backupId);
    return backupId;
}

} // namespace quillhaven
