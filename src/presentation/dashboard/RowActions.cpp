// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/RowActions.h"

#include "async/Jobs.h"
#include "async/OffMainThread.h"
#include "catalogue/QuillhavenError.h"
#include "engine/QuillhavenManager.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "platform/FileViewer.h"
#include "platform/Platform.h"
#include "presentation/dashboard/BusyItems.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "support/DisplayName.h"
#include "support/Paths.h"
#include "support/printLogger.h"

#include <QClipboard>
#include <QGuiApplication>

namespace quillhaven {

using namespace std::chrono_literals;

namespace {

constexpr auto copySuccessDuration = 2s;

QString troubleshootingText()
{
    return QStringLiteral("If you're getting permission errors when trying to remove protection:\n\n"
                          "1. Make sure the file is not currently open in another application\n"
                          "2. Check that you have write permissions for the folder containing the file\n"
                          "3. Try moving the file to your Desktop or Documents folder first\n"
                          "4. Make sure the file is not in a system-protected location\n"
                          "5. If the file is on an external drive, ensure it's properly mounted\n\n"
                          "The app needs write access to restore your original file to its location.");
}

/// What a duplicate leaves in the open: a copy of the data exists beside the original place until it is protected.
QString duplicateText(const ProtectedItem &item)
{
    const QString folder = displayName(parentDirectory(item.originalPath));
    if (item.isFolder && !item.useTouchID) {
        return QStringLiteral("The copy of this folder would stay unprotected in \"") + folder +
               QStringLiteral("\": no password is kept for a folder, with which the copy could be protected.");
    }
    return QStringLiteral("Until the copy is protected, its data can be read by everyone who can open \"") + folder +
           QStringLiteral("\". The copy appears in the list, locked.");
}

/// A sentence for the failure of a move to the trash.
QString trashFailure(const ProtectedItem &item, const std::exception_ptr &failure)
{
    QString description = localizedDescription(failure);
    if (description.contains(QLatin1String("could not be found"))) {
        return QStringLiteral("The file '") + displayName(item.originalName) +
               QStringLiteral("' could not be found. It may have been moved or deleted.");
    }
    return description;
}

} // namespace

RowActions::RowActions(const DashboardContext &context, const Platform &platform, QObject *parent)
    : QObject(parent),
      m_context(context),
      m_files(platform.fileManager),
      m_viewer(platform.fileViewer),
      m_clock(platform.clock)
{
    m_errorSheet.onShowTroubleshooting = [this] { showTroubleshootingInfo(); };
}

RowActions::~RowActions() = default;

std::optional<ProtectedItem> RowActions::idleItem(const QString &id) const
{
    const ProtectedItem *item = m_context.quillhavenManager.catalogue().item(id);
    return item && !m_context.rows.isMarkedBusy(id) ? std::optional(*item) : std::nullopt;
}

bool RowActions::isListed(const QString &id) const
{
    return m_context.quillhavenManager.catalogue().item(id) != nullptr;
}

void RowActions::logButton(const QString &helpText) const
{
    printLogger(QStringLiteral("🔘 Button clicked: ") + helpText);
}

void RowActions::revealInFinder(const QString &id)
{
    if (const ProtectedItem *item = m_context.quillhavenManager.catalogue().item(id)) {
        startJob([this, copy = *item] { return reveal(copy); });
    }
}

void RowActions::onRevealInFinder(const QString &id)
{
    const ProtectedItem *item = m_context.quillhavenManager.catalogue().item(id);
    if (item && item->isMounted) {
        revealInFinder(id);
    }
}

QCoro::Task<> RowActions::reveal(ProtectedItem item)
{
    const bool isShown = item.isMounted || m_files.fileExists(item.originalPath);
    const QString path = isShown ? item.originalPath : QString();
    const QString root = isShown ? QString() : parentDirectory(item.originalPath);
    QString failure;
    try {
        if (!co_await m_viewer.selectFile(path, root)) {
            failure = QStringLiteral("There is no file manager that can show '") + displayName(item.originalName) +
                      QStringLiteral("'.");
        }
    } catch (...) {
        failure = localizedDescription(std::current_exception());
    }
    if (!failure.isEmpty()) {
        m_errorSheet.show(failure);
    }
}

void RowActions::copyPathToClipboard(const QString &id)
{
    const ProtectedItem *item = m_context.quillhavenManager.catalogue().item(id);
    if (!item) {
        return;
    }
    QGuiApplication::clipboard()->setText(item->originalPath);
    m_context.rows.setShowingCopySuccess(id, true);
    if (m_runningCopyTimers == 0) {
        m_copyTimers.clear();
    }
    ++m_runningCopyTimers;
    m_copyTimers.push_back(m_clock.startOneShot(copySuccessDuration, [this, id] {
        --m_runningCopyTimers;
        m_context.rows.setShowingCopySuccess(id, false);
    }));
}

void RowActions::duplicateAsEncryptedCopy(const QString &id)
{
    startJob([this, id] { return duplicate(id); });
}

QCoro::Task<> RowActions::duplicate(QString id)
{
    std::optional<ProtectedItem> item = idleItem(id);
    if (item && !item->isMounted) {
        const auto answer = m_context.dialogs.confirmation.ask({.title = QStringLiteral("Duplicate as Encrypted Copy"),
                                                                .message = duplicateText(*item),
                                                                .confirmTitle = QStringLiteral("Duplicate")});
        if (co_await answer != DialogEnd::Confirmed) {
            co_return;
        }
        item = idleItem(id);
    }
    if (!item) {
        co_return;
    }
    const BusyItems busy(m_context, {*item});
    const auto logProgress = [](const QString &, double progress) {
        printLogger(QStringLiteral("Duplicate progress: ") + QString::number(progress));
    };
    try {
        co_await m_context.quillhavenManager.duplicateAsEncryptedCopy(*item, logProgress);
        printLogger(QStringLiteral("✅ Successfully duplicated: ") + item->originalName);
    } catch (...) {
        m_errorSheet.show(localizedDescription(std::current_exception()));
    }
}

void RowActions::askToDelete(const QString &id)
{
    const std::optional<ProtectedItem> item = idleItem(id);
    if (!item) {
        return;
    }
    m_deleteConfirmation.onSecureDelete = [this, id] {
        if (onShred) {
            onShred(id);
        }
    };
    m_deleteConfirmation.onMoveToTrash = [this, id, wasMounted = item->isMounted] {
        const std::optional<ProtectedItem> current = idleItem(id);
        if (current && current->isMounted != wasMounted) {
            askToDelete(id); // the trash would get something else now
        } else {
            moveToTrash(id);
        }
    };
    m_deleteConfirmation.show(item->originalName, !item->isMounted);
}

void RowActions::moveToTrash(const QString &id)
{
    startJob([this, id] { return trash(id); });
}

QCoro::Task<> RowActions::trash(QString id)
{
    const std::optional<ProtectedItem> item = idleItem(id);
    if (!item) {
        co_return;
    }
    const BusyItems busy(m_context, {*item});
    try {
        co_await moveItemToTrash(*item);
    } catch (...) {
        m_errorSheet.show(trashFailure(*item, std::current_exception()));
    }
}

QCoro::Task<> RowActions::moveItemToTrash(ProtectedItem item)
{
    QuillhavenManager &manager = m_context.quillhavenManager;
    auto moveIt = [&files = m_files, place = item.originalPath] { files.trashItem(place); };
    if (m_files.fileExists(item.originalPath)) {
        const ItemLease lease = co_await manager.catalogue().lease(item.id);
        if (isListed(item.id)) { // no other operation has taken the item away meanwhile
            co_await offMainThread(std::move(moveIt));
            manager.removeFromProtectedItems(item.id);
            manager.saveProtectedItems();
        }
        co_return;
    }
    printLogger(QStringLiteral("🔓 File is locked, removing protection first"));
    co_await manager.removeProtection(item);
    if (!m_files.fileExists(item.originalPath)) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    co_await offMainThread(std::move(moveIt));
}

void RowActions::showTroubleshootingInfo()
{
    m_context.dialogs.confirmation.show({.title = QStringLiteral("Troubleshooting Permission Issues"),
                                         .message = troubleshootingText(),
                                         .confirmTitle = QStringLiteral("OK"),
                                         .cancelTitle = QStringLiteral("Cancel"),
                                         .isDestructive = false,
                                         .showCancelButton = false});
}

} // namespace quillhaven
