// SPDX-License-Identifier: GPL-3.0-or-later

// The catalogue's load, save and clean-up. A record that is removed here leaves its files and credentials as they are.

#include "catalogue/CatalogueJson.h"
#include "engine/QuillhavenManager.h"
#include "platform/FileManager.h"
#include "platform/UserDefaults.h"
#include "settings/DefaultsKeys.h"
#include "support/printLogger.h"

#include <QSet>

#include <algorithm>

namespace quillhaven {

void QuillhavenManager::saveProtectedItems()
{
    const QByteArray items = encodeProtectedItems(m_protectedItems);
    if (items.isEmpty()) {
        return;
    }
    m_platform.defaults.standard().setData(defaults_keys::protectedItems, items);

    UserDefaults *suite = m_platform.defaults.suite(defaults_keys::sharedSuite);
    const QByteArray infos = encodeProtectedItemInfos(m_protectedItems);
    if (suite && !infos.isEmpty()) {
        suite->setData(defaults_keys::protectedItems, infos);
    }
}

void QuillhavenManager::loadProtectedItems()
{
    printLogger(QStringLiteral("DEBUG: Loading protected items from UserDefaults"));
    const auto data = m_platform.defaults.standard().dataForKey(defaults_keys::protectedItems);
    if (!data) {
        printLogger(QStringLiteral("DEBUG: No data found in UserDefaults, keeping empty array"));
        return;
    }
    const auto items = decodeProtectedItems(*data);
    if (!items) {
        printLogger(QStringLiteral("DEBUG: Failed to decode protected items from UserDefaults"));
        return;
    }
    printLogger(QStringLiteral("DEBUG: Loaded ") + QString::number(items->size()) +
                QStringLiteral(" protected items from UserDefaults"));
    m_protectedItems = *items;
    publishItems();
    migrateBackupPaths();
    cleanupMissingFiles();
}

void QuillhavenManager::cleanupMissingFiles()
{
    const FileManager &files = m_platform.fileManager;
    QSet<QString> missing;
    qsizetype count = 0;
    for (const ProtectedItem &item : std::as_const(m_protectedItems)) {
        if (!files.fileExists(item.originalPath) && !files.fileExists(item.originalBackupPath)) {
            missing.insert(item.id);
            ++count;
        }
    }
    if (missing.isEmpty()) {
        return;
    }
    printLogger(QStringLiteral("🧹 Cleaning up ") + QString::number(count) + QStringLiteral(" missing files"));
    m_protectedItems.removeIf([&missing](const ProtectedItem &item) { return missing.contains(item.id); });
    publishItems();
    saveProtectedItems();
}

void QuillhavenManager::removeFromProtectedItems(const QString &id)
{
    if (m_protectedItems.removeIf([&id](const ProtectedItem &item) { return item.id == id; }) > 0) {
        publishItems();
    }
}

ProtectedItem *QuillhavenManager::liveItem(const QString &id)
{
    const auto found = std::ranges::find(m_protectedItems, id, &ProtectedItem::id);
    return found == m_protectedItems.end() ? nullptr : &*found;
}

void QuillhavenManager::setItemIsProcessing(const QString &id, bool value)
{
    if (ProtectedItem *item = liveItem(id)) {
        item->isProcessing = value;
        publishItems();
    }
}

} // namespace quillhaven
