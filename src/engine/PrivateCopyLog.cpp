// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/PrivateCopyLog.h"

#include "platform/FileManager.h"
#include "support/Paths.h"
#include "support/printLogger.h"

namespace quillhaven {

namespace {

QString printedList(const QStringList &names)
{
    QStringList quoted;
    quoted.reserve(names.size());
    for (const QString &name : names) {
        quoted.append(QLatin1Char('"') + name + QLatin1Char('"'));
    }
    return QLatin1Char('[') + quoted.join(QStringLiteral(", ")) + QLatin1Char(']');
}

} // namespace

void logPrivateCopySearch(const FileManager &fileManager, const QString &backupPath)
{
    const QString directory = parentDirectory(backupPath);
    printLogger(QStringLiteral("📍 DEBUG: Checking if backup exists at: ") + backupPath);
    printLogger(QStringLiteral("📍 DEBUG: Backup directory: ") + directory);
    printLogger(QStringLiteral("📍 DEBUG: Backup directory exists: ") + printed(fileManager.fileExists(directory)));
}

void logPrivateCopyIsMissing(const FileManager &fileManager, const QString &backupPath)
{
    const QString directory = parentDirectory(backupPath);
    if (!fileManager.fileExists(directory)) {
        printLogger(QStringLiteral("📍 DEBUG: Backup directory does not exist: ") + directory);
        return;
    }
    try {
        printLogger(QStringLiteral("📍 DEBUG: Backup directory contents: ") +
                    printedList(fileManager.contentsOfDirectory(directory)));
    } catch (const LocalizedError &error) {
        printLogger(QStringLiteral("📍 DEBUG: Could not list backup directory: ") + error.errorDescription());
    }
}

} // namespace quillhaven
