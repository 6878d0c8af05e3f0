// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"
#include "presentation/dashboard/DashboardContext.h"
#include "presentation/dialogs/DeleteConfirmationModel.h"
#include "presentation/dialogs/ErrorDialogSheetModel.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quillhaven {

class Clock;
class FileManager;
class FileViewer;
class RunningTimer;
struct Platform;

/// What a row does with its item by itself. A failure is shown in the smaller error sheet. An operation that touches
/// the item's files is ignored while the item is busy. Main thread only.
class RowActions : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of the dashboard")

public:
    /// The objects that the context and the platform refer to must outlive this object and its jobs.
    RowActions(const DashboardContext &context, const Platform &platform, QObject *parent = nullptr);
    ~RowActions() override;

    [[nodiscard]] DeleteConfirmationModel &deleteConfirmation() { return m_deleteConfirmation; }
    [[nodiscard]] ErrorDialogSheetModel &errorSheet() { return m_errorSheet; }

    /// Shows the item's file, or its placeholder, in the file manager; or the folder of neither of them.
    Q_INVOKABLE void revealInFinder(const QString &id);
    /// The same for an unlocked item. Nothing happens for a locked one.
    Q_INVOKABLE void onRevealInFinder(const QString &id);
    Q_INVOKABLE void copyPathToClipboard(const QString &id);
    /// Says first what a duplicate leaves in the open for a while.
    Q_INVOKABLE void duplicateAsEncryptedCopy(const QString &id);
    /// Asks whether the item is to be shredded or to be moved to the trash.
    Q_INVOKABLE void askToDelete(const QString &id);
    /// Moves what is at the item's place to the trash, and takes the item out of the list. What is not at its place is
    /// given back first.
    void moveToTrash(const QString &id);
    /// Shows what helps against missing permissions.
    void showTroubleshootingInfo();
    /// Logs the use of a row's button.
    Q_INVOKABLE void logButton(const QString &helpText) const;

    /// Asks before the item is shredded. Without it, nothing happens.
    std::function<void(const QString &id)> onShred;

private:
    /// The current record, unless the item is busy.
    [[nodiscard]] std::optional<ProtectedItem> idleItem(const QString &id) const;
    [[nodiscard]] bool isListed(const QString &id) const;
    [[nodiscard]] QCoro::Task<> reveal(ProtectedItem item);
    [[nodiscard]] QCoro::Task<> duplicate(QString id);
    [[nodiscard]] QCoro::Task<> trash(QString id);
    [[nodiscard]] QCoro::Task<> moveItemToTrash(ProtectedItem item);

    DashboardContext m_context;
    FileManager &m_files;
    FileViewer &m_viewer;
    Clock &m_clock;
    DeleteConfirmationModel m_deleteConfirmation;
    ErrorDialogSheetModel m_errorSheet;
    std::vector<std::unique_ptr<RunningTimer>> m_copyTimers; ///< expired ones are kept until none is running
    size_t m_runningCopyTimers = 0;
};

} // namespace quillhaven
