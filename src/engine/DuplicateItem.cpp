// SPDX-License-Identifier: GPL-3.0-or-later

// A duplicate is made of the private copy, so only of a locked item: the copy is put beside the original place under a
// free name, protected there, and its placeholder removed. What stands after a stop:
//
// - after the copy: plain data beside the original place, and no record of it;
// - after the protection: a protected item whose placeholder still stands.

#include "async/OffMainThread.h"
#include "catalogue/QuillhavenError.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/QuillhavenManager.h"
#include "platform/FileManager.h"
#include "support/Paths.h"
#include "support/printLogger.h"

#include <QRegularExpression>

#include <algorithm>

namespace quillhaven {

namespace {

/// A name beside the original that neither a file nor another item's record has: nothing stands at the place of a
/// duplicate, and two of one place would take each other for a placeholder.
QString freeDuplicatePath(const FileManager &files, const QList<ProtectedItem> &items, const ProtectedItem &item)
{
    const QString &originalName = item.originalName;
    static const QRegularExpression lastExtension(QStringLiteral(R"(\.[^.]*$)"));
    static const QRegularExpression untilLastDot(QStringLiteral(R"(^.*\.)"));
    const QString base = QString(originalName).remove(lastExtension);
    const QString behindDot = QString(originalName).remove(untilLastDot);
    const bool hasExtension = !behindDot.isEmpty() && behindDot != originalName;
    const QString extension = hasExtension ? QLatin1Char('.') + behindDot : QString();
    const QString directory = parentDirectory(item.originalPath);
    const auto isRecorded = [&items](const QString &path) {
        return std::ranges::find(items, path, &ProtectedItem::originalPath) != items.end();
    };
    QString candidate = pathInDirectory(directory, base + QStringLiteral(" Copy") + extension);
    for (int number = 2; isRecorded(candidate) || files.fileExists(candidate); ++number) {
        if (!isRecorded(candidate)) {
            (void)files.sizeOfItem(candidate); // throws for a place that cannot be looked at
        }
        candidate = pathInDirectory(directory, base + QStringLiteral(" Copy %1").arg(number) + extension);
    }
    return candidate;
}

} // namespace

QCoro::Task<> QuillhavenManager::duplicateAsEncryptedCopy(ProtectedItem item, ProgressCallback progressCallback)
{
    if (!co_await m_masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    setIsProcessing(true);
    try {
        co_await duplicate(item, progressCallback);
    } catch (...) {
        stopProcessingLater();
        throw;
    }
    m_masterPasswordManager.endSession();
    stopProcessingLater();
}

QCoro::Task<> QuillhavenManager::duplicate(ProtectedItem item, ProgressCallback progressCallback)
{
    FileManager &files = m_platform.fileManager;
    progressCallback(QStringLiteral("Preparing to duplicate item..."), 0.1);
    if (!files.fileExists(item.originalBackupPath)) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    progressCallback(QStringLiteral("Creating duplicate..."), 0.3);
    const QString destination = freeDuplicatePath(files, m_protectedItems, item);

    progressCallback(QStringLiteral("Protecting duplicate..."), 0.6);
    auto copy = [&files, source = item.originalBackupPath, destination] { files.copyItem(source, destination); };
    co_await offMainThread(std::move(copy));

    progressCallback(QStringLiteral("Finalizing..."), 0.8);
    QString password;
    if (!item.useTouchID) {
        auto retrieve = [keychain = m_keychain, id = item.id] { return keychain->retrievePassword(id); };
        password = co_await offMainThread(m_platform.credentialQueue, std::move(retrieve));
    }
    co_await protectItem(destination, password, item.useTouchID);

    progressCallback(QStringLiteral("Duplicate created successfully!"), 1.0);
    auto removePlaceholder = [&files, destination] { files.removeItem(destination); };
    co_await offMainThread(std::move(removePlaceholder));
    printLogger(QStringLiteral("🗑️ Removed placeholder file"));
}

} // namespace quillhaven
