// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"
#include "presentation/dashboard/DashboardContext.h"
#include "presentation/dialogs/OperationProgress.h"
#include "presentation/dialogs/ShredConfirmationDialogModel.h"
#include "support/ProgressCallback.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class VolumeInspector;
struct Platform;

/// Shreds items for the dashboard: the items to be shredded, the confirmation, and the job. Main thread only.
class ShredActions : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of the dashboard")

public:
    /// What the context and the platform refer to must outlive this object and its jobs.
    ShredActions(const DashboardContext &context, const Platform &platform, QObject *parent = nullptr);

    [[nodiscard]] ShredConfirmationDialogModel *confirmation() { return &m_confirmation; }
    [[nodiscard]] OperationProgress *progress() { return &m_progress; }
    /// Paths outside the catalogue. They are not shredded if there are also protected items to shred.
    [[nodiscard]] QStringList itemsToShred() const { return m_itemsToShred; }
    [[nodiscard]] QList<ProtectedItem> protectedItemsToShred() const { return m_protectedItemsToShred; }

    /// Both ask before anything is destroyed. Ignored for an item that a job of this window is working on.
    Q_INVOKABLE void onShred(const QString &id);
    Q_INVOKABLE void performBulkShred();
    /// Shreds the item of the catalogue with this original path, or else the file or folder at the path.
    void handleShredAction(const QString &path);
    /// Destroys the items that were confirmed: those of the question at the moment of this call.
    void performShredOperation();

private:
    void ask(const QList<ProtectedItem> &protectedItems, const QStringList &paths);
    void forgetAll();
    /// Shows what the places of the items of this question may keep, unless another one was asked meanwhile.
    [[nodiscard]] static QCoro::Task<> noteStorage(QPointer<ShredActions> self, QStringList places, quint64 question);
    [[nodiscard]] QCoro::Task<> run(QList<ProtectedItem> protectedItems, QStringList paths);
    [[nodiscard]] QCoro::Task<> shred(QList<ProtectedItem> protectedItems);
    /// The current records of the items, except those which another job of the window works on.
    [[nodiscard]] QList<ProtectedItem> liveItems(const QList<ProtectedItem> &items) const;

    DashboardContext m_context;
    const VolumeInspector &m_volumes;
    quint64 m_questions = 0; ///< how many were asked
    ShredConfirmationDialogModel m_confirmation;
    OperationProgress m_progress;
    QStringList m_itemsToShred;
    QList<ProtectedItem> m_protectedItemsToShred;
};

} // namespace quillhaven
