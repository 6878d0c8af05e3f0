// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/ShredActions.h"

#include "async/Jobs.h"
#include "async/OffMainThread.h"
#include "catalogue/QuillhavenError.h"
#include "engine/QuillhavenManager.h"
#include "platform/Platform.h"
#include "platform/VolumeInspector.h"
#include "presentation/dashboard/BusyItems.h"
#include "presentation/dashboard/ItemSelection.h"
#include "presentation/dialogs/OperationErrors.h"
#include "presentation/dialogs/StorageNote.h"
#include "support/DisplayName.h"
#include "support/Paths.h"

namespace quillhaven {

namespace {

QStringList idsOf(const QList<ProtectedItem> &items)
{
    QStringList ids;
    for (const ProtectedItem &item : items) {
        ids.append(item.id);
    }
    return ids;
}

/// A sentence for the confirmed items that were not touched.
QString passedOverText(const QList<ProtectedItem> &confirmed, const QStringList &shreddedIds)
{
    QStringList names;
    for (const ProtectedItem &item : confirmed) {
        if (!shreddedIds.contains(item.id)) {
            names.append(QLatin1Char('"') + displayName(item.originalName) + QLatin1Char('"'));
        }
    }
    const QString reason = QStringLiteral(" shredded: no longer in the list, or in use by another operation.");
    return names.size() == 1 ? names.constFirst() + QStringLiteral(" was not") + reason
                             : QString::number(names.size()) + QStringLiteral(" items were not") + reason;
}

StorageFacts factsAbout(const VolumeInspector &volumes, const QStringList &places)
{
    StorageFacts facts;
    for (const QString &place : places) {
        facts |= volumes.factsAbout(place);
    }
    return facts;
}

} // namespace

ShredActions::ShredActions(const DashboardContext &context, const Platform &platform, QObject *parent)
    : QObject(parent), m_context(context), m_volumes(platform.volumes), m_progress(platform.clock)
{
    m_confirmation.onConfirm = [this] { performShredOperation(); };
    m_confirmation.onCancel = [this] { forgetAll(); };
}

void ShredActions::onShred(const QString &id)
{
    const ProtectedItem *item = m_context.quillhavenManager.catalogue().item(id);
    if (item && !m_context.rows.isMarkedBusy(id)) {
        ask({*item}, {});
    }
}

void ShredActions::performBulkShred()
{
    ask(m_context.selection.getSelectedItems(), {});
}

void ShredActions::handleShredAction(const QString &path)
{
    if (const ProtectedItem *item = m_context.quillhavenManager.catalogue().itemAt(path)) {
        ask({*item}, {});
    } else {
        ask({}, {path});
    }
}

void ShredActions::ask(const QList<ProtectedItem> &protectedItems, const QStringList &paths)
{
    m_protectedItemsToShred = protectedItems;
    m_itemsToShred = paths;
    QStringList names;
    for (const QString &path : paths) {
        names.append(displayName(lastPathComponent(path)));
    }
    for (const ProtectedItem &item : protectedItems) {
        names.append(displayName(item.originalName));
    }
    m_confirmation.show(names);
    QStringList places = paths;
    for (const ProtectedItem &item : protectedItems) {
        // What a shred destroys. A locked item returns to its original place first.
        places += {item.originalPath, item.originalBackupPath, item.containerPath};
    }
    startJob([self = QPointer(this), places, question = ++m_questions] { return noteStorage(self, places, question); });
}

QCoro::Task<> ShredActions::noteStorage(QPointer<ShredActions> self, QStringList places, quint64 question)
{
    if (!self) {
        co_return;
    }
    auto look = [&volumes = self->m_volumes, places] { return factsAbout(volumes, places); };
    const StorageFacts facts = co_await offMainThread(std::move(look));
    if (self && self->m_questions == question) {
        self->m_confirmation.setStorageNote(storageNote(facts));
    }
}

void ShredActions::forgetAll()
{
    m_itemsToShred.clear();
    m_protectedItemsToShred.clear();
}

void ShredActions::performShredOperation()
{
    startJob([this, items = m_protectedItemsToShred, paths = m_itemsToShred] { return run(items, paths); });
}

QCoro::Task<> ShredActions::run(QList<ProtectedItem> protectedItems, QStringList paths)
{
    std::exception_ptr failure;
    bool isCancelled = false;
    try {
        if (!protectedItems.isEmpty()) {
            co_await shred(protectedItems);
        } else if (!paths.isEmpty()) {
            const ShownOperation shown(m_progress);
            co_await m_context.quillhavenManager.shredUnprotectedItems(paths, shown.callback());
        }
    } catch (const QuillhavenError &error) {
        isCancelled = error.errorCase() == QuillhavenError::authenticationCancelled;
        failure = std::current_exception();
    } catch (...) {
        failure = std::current_exception();
    }
    // If they differ, another question has replaced them meanwhile and still waits for its answer.
    const bool isUnchanged = m_itemsToShred == paths && m_protectedItemsToShred == protectedItems;
    if (!isCancelled && isUnchanged) {
        forgetAll();
    }
    if (failure) {
        m_context.errors.report(failure);
    } else {
        m_context.selection.clearSelection();
    }
}

QCoro::Task<> ShredActions::shred(QList<ProtectedItem> protectedItems)
{
    QuillhavenManager &manager = m_context.quillhavenManager;
    const QList<ProtectedItem> items = liveItems(protectedItems);
    const ShownOperation shown(m_progress);
    std::optional<BusyItems> busy;
    // Marked at the first report: before it, the operation may wait for the master password, perhaps for good.
    const auto progressCallback = [&, show = shown.callback()](const QString &message, double progress) {
        if (!busy) {
            busy.emplace(m_context, items, [&shown] { shown.hide(); });
        }
        show(message, progress);
    };
    if (items.size() == 1) {
        co_await manager.shredProtectedItem(items.constFirst(), progressCallback);
    } else if (!items.isEmpty()) {
        co_await manager.bulkShredProtectedItems(items, progressCallback);
    }
    if (items.size() < protectedItems.size()) {
        throw QuillhavenError(QuillhavenError::accessDenied, passedOverText(protectedItems, idsOf(items)));
    }
}

QList<ProtectedItem> ShredActions::liveItems(const QList<ProtectedItem> &items) const
{
    QList<ProtectedItem> live = m_context.quillhavenManager.catalogue().items(idsOf(items));
    live.removeIf([this](const ProtectedItem &item) { return m_context.rows.isMarkedBusy(item.id); });
    return live;
}

} // namespace quillhaven
