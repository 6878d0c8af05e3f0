// SPDX-License-Identifier: GPL-3.0-or-later

// Where the engine keeps private copies, and the move from the older place in the temporary directory. Runs at every
// start: once everything has moved it costs two existence checks and one pass over the list.

#include "engine/QuillhavenManager.h"
#include "formats/FolderArchive.h"
#include "platform/FileManager.h"
#include "support/Paths.h"
#include "support/printLogger.h"

namespace quillhaven {

namespace {

const QString storageFolderName = QStringLiteral("quillhaven");

void moveEntries(FileManager &files, const QString &oldDirectory, const QString &newDirectory)
{
    const QStringList names = files.contentsOfDirectory(oldDirectory);
    for (const QString &name : names) {
        const QString destination = pathInDirectory(newDirectory, name);
        if (files.fileExists(destination)) {
            continue;
        }
        files.moveItem(pathInDirectory(oldDirectory, name), destination);
        printLogger(QStringLiteral("📍 DEBUG: Migrated backup file: ") + name +
                    QStringLiteral(" from temp to persistent storage"));
    }
    if (files.contentsOfDirectory(oldDirectory).isEmpty()) {
        files.removeItem(oldDirectory);
        printLogger(QStringLiteral("Removed empty temp directory"));
    }
}

} // namespace

QString QuillhavenManager::secureStorageDirectory() const
{
    return pathInDirectory(m_platform.directories.applicationSupport, storageFolderName);
}

QString QuillhavenManager::oldStorageDirectory() const
{
    return pathInDirectory(m_platform.directories.temporary, storageFolderName);
}

void QuillhavenManager::migrateBackupFiles()
{
    FileManager &files = m_platform.fileManager;
    const QString oldDirectory = oldStorageDirectory();
    const QString newDirectory = secureStorageDirectory();
    if (!files.fileExists(newDirectory)) {
        try {
            files.createDirectory(newDirectory);
        } catch (const LocalizedError &) {
            // Later operations try again and report it to their callers.
        }
    }
    files.discardAbandonedItems(newDirectory);
    discardAbandonedArchives(files, m_platform.directories);
    if (!files.fileExists(oldDirectory)) {
        return;
    }
    try {
        moveEntries(files, oldDirectory, newDirectory);
    } catch (const LocalizedError &error) {
        printLogger(QStringLiteral("Migration warning: ") + error.errorDescription());
    }
}

void QuillhavenManager::migrateBackupPaths()
{
    const QString oldDirectory = oldStorageDirectory();
    const QString newDirectory = secureStorageDirectory();
    bool hasChanged = false;
    const QList<ProtectedItem> items = protectedItems();
    for (const ProtectedItem &item : items) {
        if (!item.originalBackupPath.startsWith(oldDirectory)) {
            continue;
        }
        const QString newPath = pathInDirectory(newDirectory, lastPathComponent(item.originalBackupPath));
        m_catalogue.updateUnsaved(item.id, [&newPath](ProtectedItem &live) { live.originalBackupPath = newPath; });
        printLogger(QStringLiteral("📍 DEBUG: Migrated backup path for ") + item.originalName + QStringLiteral(": ") +
                    newPath);
        hasChanged = true;
    }
    if (hasChanged) {
        saveProtectedItems();
        printLogger(QStringLiteral("✅ Backup paths migration completed"));
    }
}

} // namespace quillhaven
