// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/PlaceholderFile.h"

#include "platform/FileManager.h"
#include "support/printLogger.h"

#include <algorithm>

namespace quillhaven {

namespace {

/// Removes what a failed write has left: a piece of a placeholder would be taken for the item itself.
void removePiece(FileManager &fileManager, const QString &path)
{
    try {
        if (holdsPieceOfPlaceholder(fileManager, path)) {
            fileManager.removeItem(path);
        }
    } catch (const FileError &error) {
        printLogger(QStringLiteral("⚠️ A piece of a placeholder could not be removed: ") + error.errorDescription());
    }
}

} // namespace

void writePlaceholder(FileManager &fileManager, const QString &path)
{
    const QByteArray bytes = placeholderText.toUtf8();
    if (holdsPieceOfPlaceholder(fileManager, path)) {
        fileManager.removeItem(path);
    }
    try {
        fileManager.createFile(path, std::as_bytes(std::span(bytes)));
    } catch (const FileError &error) {
        if (error.kind() == FileError::Kind::TargetExists) {
            // Someone has put something else there since the item left the place. It stays.
            printLogger(QStringLiteral("📦 There is no placeholder at ") + path +
                        QStringLiteral(": something else is there"));
            return;
        }
        removePiece(fileManager, path);
        throw;
    }
}

bool holdsPlaceholder(const FileManager &fileManager, const QString &path)
{
    const QByteArray placeholder = placeholderText.toUtf8();
    if (fileManager.isDirectory(path) || fileManager.sizeOfItem(path) != placeholder.size() ||
        fileManager.identityOfItem(path, Links::Keep) != fileManager.identityOfItem(path, Links::Follow)) {
        return false;
    }
    const FileBuffer content = fileManager.readFile(path);
    return std::ranges::equal(content.bytes(), std::as_bytes(std::span(placeholder)));
}

bool holdsPieceOfPlaceholder(const FileManager &fileManager, const QString &path)
{
    const QByteArray placeholder = placeholderText.toUtf8();
    if (!fileManager.fileExists(path) || fileManager.isDirectory(path) ||
        fileManager.sizeOfItem(path) > placeholder.size() ||
        fileManager.identityOfItem(path, Links::Keep) != fileManager.identityOfItem(path, Links::Follow)) {
        return false;
    }
    const FileBuffer content = fileManager.readFile(path);
    return std::ranges::equal(content.bytes(), std::as_bytes(std::span(placeholder)).first(content.size()));
}

bool isLockInterrupted(const FileManager &fileManager, const QString &path, const QString &privateCopy)
{
    return fileManager.fileExists(privateCopy) && holdsPieceOfPlaceholder(fileManager, path);
}

} // namespace quillhaven
