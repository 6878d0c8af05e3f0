// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Platform.h"
#include "presentation/dashboard/Announcer.h"
#include "presentation/dashboard/BulkActions.h"
#include "presentation/dashboard/DashboardContext.h"
#include "presentation/dashboard/DashboardStatisticsModel.h"
#include "presentation/dashboard/DropActions.h"
#include "presentation/dashboard/FilteredItemsModel.h"
#include "presentation/dashboard/ItemActions.h"
#include "presentation/dashboard/ItemDetailModel.h"
#include "presentation/dashboard/ItemSelection.h"
#include "presentation/dashboard/KeptAsideNotice.h"
#include "presentation/dashboard/NoticesModel.h"
#include "presentation/dashboard/ProtectActions.h"
#include "presentation/dashboard/ProtectedItemsModel.h"
#include "presentation/dashboard/RescueActions.h"
#include "presentation/dashboard/RowActions.h"
#include "presentation/dashboard/SearchFilterBarModel.h"
#include "presentation/dashboard/ShredActions.h"
#include "presentation/dashboard/UpdateBadgeModel.h"
#include "presentation/dialogs/OperationErrors.h"

#include <QCoroTask>
#include <QObject>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// The state and the operations of the main window's content. It owns no items: the engine owns the list. Main thread
/// only.
class DashboardViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    // The toolbar
    Q_PROPERTY(QString versionText READ versionText CONSTANT)
    Q_PROPERTY(QString activityText READ activityText NOTIFY activityTextChanged)
    Q_PROPERTY(quillhaven::UpdateBadgeModel *updateBadge READ updateBadge CONSTANT)
    // The list, its filters, the selection, and the statistics cards
    Q_PROPERTY(quillhaven::FilteredItemsModel *items READ items CONSTANT)
    Q_PROPERTY(quillhaven::SearchFilterBarModel *filters READ filters CONSTANT)
    Q_PROPERTY(quillhaven::ItemSelection *selection READ selection CONSTANT)
    Q_PROPERTY(quillhaven::DashboardStatisticsModel *statistics READ statistics CONSTANT)
    Q_PROPERTY(quillhaven::NoticesModel *notices READ notices CONSTANT)
    Q_PROPERTY(quillhaven::Announcer *announcer READ announcer CONSTANT)
    // The operations
    Q_PROPERTY(quillhaven::ProtectActions *protecting READ protecting CONSTANT)
    Q_PROPERTY(quillhaven::DropActions *dropping READ dropping CONSTANT)
    Q_PROPERTY(quillhaven::ItemActions *itemActions READ itemActions CONSTANT)
    Q_PROPERTY(quillhaven::RowActions *rowActions READ rowActions CONSTANT)
    Q_PROPERTY(quillhaven::BulkActions *bulk READ bulk CONSTANT)
    Q_PROPERTY(quillhaven::ShredActions *shredding READ shredding CONSTANT)

public:
    /// The references must outlive this object. This object must outlive every job it has started.
    DashboardViewModel(const Platform &platform, QuillhavenManager &quillhavenManager,
                       MasterPasswordManager &masterPasswordManager, const DashboardDialogs &dialogs,
                       UpdateManager &updateManager, AutoLockManager &autoLockManager, QObject *parent = nullptr);
    ~DashboardViewModel() override;

    /// "v" and the application's version, or "v1.0" if it is not known.
    [[nodiscard]] QString versionText() const;
    /// Describes what is currently running: a protection, or else what `setBackgroundActivity` was given. Empty if
    /// nothing is.
    [[nodiscard]] QString activityText() const;
    /// What another part of the program does at present, such as backing up; empty at its end.
    void setBackgroundActivity(const QString &text);

    [[nodiscard]] bool showingError() const { return m_errors.showingError(); }
    [[nodiscard]] QString errorMessage() const { return m_errors.errorMessage(); }

    [[nodiscard]] FilteredItemsModel *items() { return &m_items; }
    /// The rows of every item.
    [[nodiscard]] ProtectedItemsModel &rows() { return m_rows; }
    [[nodiscard]] SearchFilterBarModel *filters() { return &m_filters; }
    [[nodiscard]] DashboardStatisticsModel *statistics() { return &m_statistics; }
    [[nodiscard]] ErrorDialogManager *errorDialogManager() { return &m_errors.dialog(); }
    [[nodiscard]] RemoveProtectionDialogManager *removeProtectionDialogManager()
    {
        return &m_itemActions.removeProtectionDialogManager();
    }
    [[nodiscard]] ItemSelection *selection() { return &m_selection; }
    [[nodiscard]] NoticesModel *notices() { return &m_notices; }
    [[nodiscard]] Announcer *announcer() { return &m_announcer; }
    [[nodiscard]] ProtectActions *protecting() { return &m_protecting; }
    [[nodiscard]] DropActions *dropping() { return &m_dropping; }
    [[nodiscard]] ItemActions *itemActions() { return &m_itemActions; }
    [[nodiscard]] RowActions *rowActions() { return &m_rowActions; }
    [[nodiscard]] ItemDetailModel *itemDetails() { return &m_itemDetails; }
    [[nodiscard]] BulkActions *bulk() { return &m_bulk; }
    [[nodiscard]] ShredActions *shredding() { return &m_shredding; }
    [[nodiscard]] RescueActions *rescue() { return &m_rescue; }
    [[nodiscard]] UpdateBadgeModel *updateBadge() { return &m_updateBadge; }

    /// Handles a request from the file manager's menu: "action" is "protect", "unlock", "lock" or "shred", "path" the
    /// file. Any other request is ignored, and so is a request to lock an item that is locked.
    void handleFinderAction(const QVariantMap &userInfo);

Q_SIGNALS:
    void activityTextChanged();

private:
    [[nodiscard]] DashboardContext context();

    QuillhavenManager &m_quillhavenManager;
    MasterPasswordManager &m_masterPasswordManager;
    DashboardDialogs m_dialogs;

    ProtectedItemsModel m_rows;
    SearchFilterBarModel m_filters;
    FilteredItemsModel m_items;
    DashboardStatisticsModel m_statistics;
    NoticesModel m_notices;
    Announcer m_announcer;
    KeptAsideNotice m_keptAside;
    OperationErrors m_errors;
    ItemSelection m_selection;
    BulkActions m_bulk;
    ProtectActions m_protecting;
    DropActions m_dropping;
    ItemActions m_itemActions;
    RowActions m_rowActions;
    ItemDetailModel m_itemDetails;
    ShredActions m_shredding;
    RescueActions m_rescue;
    UpdateBadgeModel m_updateBadge;
    QString m_backgroundActivity;
};

} // namespace quillhaven
