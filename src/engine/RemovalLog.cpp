// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/RemovalLog.h"

#include "engine/PrivateCopyLog.h"
#include "support/printLogger.h"

namespace quillhaven {

void RemovalLog::print(const QString &line) const
{
    if (m_isPrinted) {
        printLogger(line);
    }
}

void RemovalLog::requested(const ProtectedItem &item) const
{
    print(QStringLiteral("🔓 Starting removeProtection for: ") + item.originalName);
    print(QStringLiteral("📍 DEBUG: Item uses Touch ID: ") + printed(item.useTouchID));
    print(QStringLiteral("📍 DEBUG: Item is folder: ") + printed(item.isFolder));
    print(QStringLiteral("📍 DEBUG: Item is mounted: ") + printed(item.isMounted));
}

void RemovalLog::guardCancelled() const
{
    print(QStringLiteral("❌ Master password authentication cancelled"));
}

void RemovalLog::guardPassed(const ProtectedItem &item) const
{
    print(QStringLiteral("✅ Master password authentication successful"));
    print(QStringLiteral("🔓 Removing protection from: ") + item.originalName);
    print(QStringLiteral("📁 Original path: ") + item.originalPath);
    print(QStringLiteral("💾 Backup path: ") + item.originalBackupPath);
    print(QStringLiteral("📦 Container path: ") + item.containerPath);
}

void RemovalLog::lookedAtOriginalPath(const ProtectedItem &item, bool exists) const
{
    print(QStringLiteral("📍 DEBUG: Item is mounted - file should be at original location"));
    print(QStringLiteral("📍 DEBUG: Checking if file exists at original path: ") + item.originalPath);
    print(QStringLiteral("📍 DEBUG: File exists at original path: ") + printed(exists));
}

void RemovalLog::foundInPlace() const
{
    print(QStringLiteral("✅ File is already at original location, removing protection metadata only"));
}

void RemovalLog::searchesPrivateCopy(const FileManager &files, const ProtectedItem &item) const
{
    if (m_isPrinted) {
        print(QStringLiteral("📍 DEBUG: Item is locked or file not at original location, checking backup"));
        logPrivateCopySearch(files, item.originalBackupPath);
    }
}

void RemovalLog::accessGranted(const QString &place, bool hasPrivateCopy) const
{
    print(QStringLiteral("📍 DEBUG: File access granted for restoration: ") + place);
    print(QStringLiteral("📍 DEBUG: Backup file exists: ") + printed(hasPrivateCopy));
}

void RemovalLog::privateCopyIsMissing(const FileManager &files, const QString &privateCopy) const
{
    if (m_isPrinted) {
        logPrivateCopyIsMissing(files, privateCopy);
        print(QStringLiteral("⚠️ Warning: Backup file not found at ") + privateCopy);
    }
}

void RemovalLog::restores(const QString &place) const
{
    print(QStringLiteral("📁 Restoring file to original location: ") + place);
}

void RemovalLog::replacesPlaceholder() const
{
    print(QStringLiteral("⚠️ File already exists at original location, will replace it"));
}

void RemovalLog::replaceFailed(const QString &description) const
{
    print(QStringLiteral("❌ Could not replace file: ") + description);
}

void RemovalLog::replaced(const QString &place) const
{
    print(QStringLiteral("✅ File replaced at original location: ") + place);
    print(QStringLiteral("🗑️ Backup file automatically removed by replaceItem"));
}

void RemovalLog::moved(const QString &place) const
{
    print(QStringLiteral("✅ File moved to original location: ") + place);
    print(QStringLiteral("🗑️ Backup file removed by move operation"));
}

void RemovalLog::removesContainer() const
{
    print(QStringLiteral("🗑️ Removing container metadata file"));
}

void RemovalLog::containerNotRemoved(const QString &description) const
{
    print(QStringLiteral("⚠️ Could not remove container file: ") + description);
}

void RemovalLog::skipsCredentials() const
{
    print(QStringLiteral("📁 Skipping keychain cleanup for folder"));
}

void RemovalLog::removesCredentials(const QString &id) const
{
    print(QStringLiteral("🔑 Removing keychain credentials for item: ") + id);
}

void RemovalLog::credentialsNotRemoved(const QString &description) const
{
    print(QStringLiteral("⚠️ Could not remove keychain credentials: ") + description);
}

void RemovalLog::credentialsRemoved() const
{
    print(QStringLiteral("✅ Successfully removed keychain credentials"));
}

void RemovalLog::endedInPlace() const
{
    print(QStringLiteral("🎉 Protection successfully removed - file is already at original location!"));
}

void RemovalLog::endedWithRestoration() const
{
    print(QStringLiteral("🎉 Protection successfully removed - file extracted to Desktop!"));
}

void RemovalLog::failed(const QString &description) const
{
    print(QStringLiteral("❌ Error removing protection: ") + description);
}

} // namespace quillhaven
