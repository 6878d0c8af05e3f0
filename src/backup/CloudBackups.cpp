// SPDX-License-Identifier: GPL-3.0-or-later

#include "backup/CloudBackups.h"

#include "catalogue/QuillhavenError.h"
#include "platform/CloudStorage.h"
#include "platform/FileManager.h"
#include "support/Paths.h"
#include "support/printLogger.h"

namespace quillhaven {

namespace {

const QString containerIdentifier = QStringLiteral("iCloud.com.tarnwick.quillhaven");
const QString suffix = QStringLiteral(".backup");

QString directoryIn(const QString &container)
{
    return pathInDirectory(container, QStringLiteral("Documents/QuillhavenBackups"));
}

} // namespace

CloudBackups::CloudBackups(CloudStorage &cloud, FileManager &fileManager) : m_cloud(cloud), m_fileManager(fileManager)
{
}

std::optional<QString> CloudBackups::containerDirectory() const
{
    return m_cloud.containerDirectory(containerIdentifier);
}

void CloudBackups::useContainerDirectory(const QString &folder)
{
    m_cloud.setContainerDirectory(containerIdentifier, folder);
}

bool CloudBackups::isiCloudAvailable() const
{
    printLogger(QStringLiteral("🌩️ DEBUG: Checking iCloud availability..."));
    printLogger(QStringLiteral("🌩️ DEBUG: Container identifier: ") + containerIdentifier);
    const std::optional<QString> container = containerDirectory();
    if (container) {
        printLogger(QStringLiteral("🌩️ DEBUG: iCloud container URL found: ") + *container);
        printLogger(QStringLiteral("🌩️ DEBUG: iCloud is available ✅"));
        return true;
    }
    printLogger(QStringLiteral("🌩️ DEBUG: iCloud container URL is nil - iCloud not available"));
    printLogger(QStringLiteral("🌩️ DEBUG: This could mean:"));
    printLogger(QStringLiteral("🌩️ DEBUG: 1. iCloud is not signed in"));
    printLogger(QStringLiteral("🌩️ DEBUG: 2. iCloud Drive is disabled"));
    printLogger(QStringLiteral("🌩️ DEBUG: 3. App doesn't have iCloud entitlements"));
    printLogger(QStringLiteral("🌩️ DEBUG: 4. Container identifier is incorrect"));
    return false;
}

QString CloudBackups::getiCloudBackupDirectory() const
{
    const std::optional<QString> container = containerDirectory();
    if (!container) {
        throw QuillhavenError(
            QuillhavenError::accessDenied,
            QStringLiteral("iCloud is not available. Please sign in to iCloud in System Preferences."));
    }
    QString directory = directoryIn(*container);
    if (!m_fileManager.fileExists(directory)) {
        m_fileManager.createDirectory(directory);
    }
    return directory;
}

QString CloudBackups::backupPath(const QString &itemId) const
{
    return pathInDirectory(getiCloudBackupDirectory(), itemId + suffix);
}

QString CloudBackups::itemId(const QString &backupPath)
{
    return lastPathComponent(backupPath).chopped(suffix.size());
}

QStringList CloudBackups::backupPaths() const
{
    const std::optional<QString> container = containerDirectory();
    if (!container) {
        throw QuillhavenError(QuillhavenError::iCloudNotAvailable);
    }
    const QString directory = directoryIn(*container);
    QStringList paths;
    for (const QString &name : m_fileManager.contentsOfDirectory(directory)) {
        if (name.endsWith(suffix) && name != suffix) {
            paths.append(pathInDirectory(directory, name));
        }
    }
    if (paths.isEmpty()) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    return paths;
}

} // namespace quillhaven
