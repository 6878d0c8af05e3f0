// SPDX-License-Identifier: GPL-3.0-or-later

#include "backup/RecoveryName.h"

#include "formats/RecoveryBackup.h"
#include "support/printLogger.h"

#include <QStringList>

namespace quillhaven {

namespace {

/// Whether a name can only mean a file in the chosen folder, and nothing outside it.
bool isFileName(const QString &name)
{
    return !name.isEmpty() && name != QStringLiteral(".") && name != QStringLiteral("..") &&
           !name.contains(QLatin1Char('/')) && !name.contains(QChar(u'\0'));
}

} // namespace

std::optional<QString> nameInMetadata(std::span<const std::byte> backup)
{
    if (backup.size() <= recovery_backup::metadataOffset) {
        return std::nullopt;
    }
    if (!recovery_backup::hasMagic(backup)) {
        printLogger(QStringLiteral("⚠️ Backup file doesn't have RECOVERY header, trying to find in protected items"));
        return std::nullopt;
    }
    const std::optional<QString> metadata = recovery_backup::metadata(backup);
    if (!metadata) {
        return std::nullopt;
    }
    printLogger(QStringLiteral("🔍 Found metadata: ") + *metadata);
    const QStringList pieces = metadata->split(QLatin1Char(':'));
    if (pieces.size() < 2) {
        return std::nullopt;
    }
    if (!isFileName(pieces.at(1))) {
        printLogger(QStringLiteral("⚠️ The metadata does not contain a valid filename: ") + pieces.at(1));
        return std::nullopt;
    }
    printLogger(QStringLiteral("✅ Using original filename from metadata: ") + pieces.at(1));
    return pieces.at(1);
}

} // namespace quillhaven
