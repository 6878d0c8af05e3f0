// SPDX-License-Identifier: GPL-3.0-or-later

// What happens to the catalogue at the start. A record that is removed here leaves its files and credentials as they
// are.

#include "catalogue/QuillhavenError.h"
#include "engine/QuillhavenManager.h"
#include "platform/FileManager.h"
#include "support/printLogger.h"

namespace quillhaven {

void QuillhavenManager::loadProtectedItems()
{
    printLogger(QStringLiteral("DEBUG: Loading protected items from UserDefaults"));
    switch (m_catalogue.load()) {
    case ItemCatalogue::Loaded::Nothing:
        printLogger(QStringLiteral("DEBUG: No data found in UserDefaults, keeping empty array"));
        return;
    case ItemCatalogue::Loaded::Undecodable:
        printLogger(QStringLiteral("DEBUG: Failed to decode protected items from UserDefaults"));
        return;
    case ItemCatalogue::Loaded::Unreadable:
        return;
    case ItemCatalogue::Loaded::Items:
        break;
    }
    printLogger(QStringLiteral("DEBUG: Loaded ") + QString::number(protectedItems().size()) +
                QStringLiteral(" protected items from UserDefaults"));
    migrateBackupPaths();
    cleanupMissingFiles();
    m_catalogue.publish();
}

bool QuillhavenManager::retryLoading()
{
    if (!m_catalogue.retry()) {
        return false;
    }
    migrateBackupPaths();
    cleanupMissingFiles();
    return true;
}

void QuillhavenManager::requireKeptRecords() const
{
    if (const auto problem = m_catalogue.problem()) {
        throw QuillhavenError(QuillhavenError::accessDenied, *problem);
    }
}

void QuillhavenManager::cleanupMissingFiles()
{
    const FileManager &files = m_platform.fileManager;
    QSet<QString> missing;
    qsizetype count = 0;
    for (const ProtectedItem &item : protectedItems()) {
        if (!files.fileExists(item.originalPath) && !files.fileExists(item.originalBackupPath)) {
            missing.insert(item.id);
            ++count;
        }
    }
    if (missing.isEmpty()) {
        return;
    }
    printLogger(QStringLiteral("🧹 Cleaning up ") + QString::number(count) + QStringLiteral(" missing files"));
    m_catalogue.remove(missing);
    saveProtectedItems();
}

} // namespace quillhaven
