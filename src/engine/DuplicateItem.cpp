// SPDX-License-Identifier: GPL-3.0-or-later

// A duplicate is made of the private copy, so only of a locked item: the copy is put beside the original place under a
// free name, protected there, and its placeholder removed. What exists after a stop:
//
// - after the copy: plain data beside the original place, and no record of it;
// - after the protection: a protected item that still has its placeholder.

#include "async/OffMainThread.h"
#include "catalogue/QuillhavenError.h"
#include "engine/OperationScope.h"
#include "engine/QuillhavenManager.h"
#include "platform/FileManager.h"
#include "support/Paths.h"
#include "support/printLogger.h"

#include <QRegularExpression>

#include <algorithm>

namespace quillhaven {

namespace {

/// A name beside the original that neither a file nor another item's record has. Records count too: a duplicate has no
/// file at its place, and two records with one path would mistake each other's data for a placeholder.
QString freeDuplicatePath(const FileManager &files, const QList<ProtectedItem> &items, const ProtectedItem &item)
{
    const QString &originalName = item.originalName;
    static const QRegularExpression lastExtension(QStringLiteral(R"(\.[^.]*$)"));
    static const QRegularExpression untilLastDot(QStringLiteral(R"(^.*\.)"));
    const QString base = QString(originalName).remove(lastExtension);
    const QString afterDot = QString(originalName).remove(untilLastDot);
    const bool hasExtension = !afterDot.isEmpty() && afterDot != originalName;
    const QString extension = hasExtension ? QLatin1Char('.') + afterDot : QString();
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
    const auto operation = co_await OperationScope::begin(*this, OperationScope::Mark::EngineLater, item.id);
    if (!operation) {
        co_return;
    }
    co_await duplicate(item, *operation, progressCallback);
    operation->endSession();
}

QCoro::Task<> QuillhavenManager::duplicate(ProtectedItem item, OperationScope &operation,
                                           ProgressCallback progressCallback)
{
    requireKeptRecords(); // before there is a copy, which lies open
    FileManager &files = m_platform.fileManager;
    if (!item.isFolder) {
        co_await prepareToStoreCredentials(); // before there is a copy that could not be protected
    }
    co_await operation.lease(); // until the copy is made
    progressCallback(QStringLiteral("Preparing to duplicate item..."), 0.1);
    if (!files.fileExists(item.originalBackupPath)) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    progressCallback(QStringLiteral("Creating duplicate..."), 0.3);
    const QString destination = freeDuplicatePath(files, protectedItems(), item);

    progressCallback(QStringLiteral("Protecting duplicate..."), 0.6);
    auto copy = [&files, source = item.originalBackupPath, destination] { files.copyItem(source, destination); };
    co_await offMainThread(std::move(copy));
    operation.releaseLease();

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
