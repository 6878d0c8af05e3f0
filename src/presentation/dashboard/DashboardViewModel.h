// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"
#include "catalogue/ProtectedItem.h"
#include "credentials/PasswordInputDialogManager.h"
#include "platform/Platform.h"
#include "presentation/dashboard/BackupActions.h"
#include "presentation/dashboard/BulkActions.h"
#include "presentation/dashboard/DashboardContext.h"
#include "presentation/dashboard/DashboardErrors.h"
#include "presentation/dashboard/DashboardStatisticsModel.h"
#include "presentation/dashboard/FilteredItemsModel.h"
#include "presentation/dashboard/ItemSelection.h"
#include "presentation/dashboard/ProtectedItemsModel.h"
#include "presentation/dashboard/SearchFilterBarModel.h"
#include "presentation/dashboard/ShredActions.h"
#include "presentation/dialogs/RemoveProtectionDialogManager.h"

#include <QCoroTask>
#include <QObject>
#include <QUrl>
#include <QVariantMap>

#include <memory>
#include <optional>
#include <vector>

namespace quillhaven {

class RunningTimer;

/// The state and the operations of the main window's content. It owns no item: the list is the engine's. Main thread
/// only.
class DashboardViewModel : public QObject
{
    Q_OBJECT
    // The toolbar
    Q_PROPERTY(QString versionText READ versionText CONSTANT)
    Q_PROPERTY(QString masterPasswordText READ masterPasswordText NOTIFY masterPasswordTextChanged)
    Q_PROPERTY(QString protectingText READ protectingText NOTIFY protectingTextChanged)
    Q_PROPERTY(bool showingFilePicker READ showingFilePicker NOTIFY showingFilePickerChanged)
    // Errors
    Q_PROPERTY(bool showingError READ showingError NOTIFY errorChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorChanged)
    // The list, what it is narrowed by, and the cards
    Q_PROPERTY(quillhaven::FilteredItemsModel *items READ items CONSTANT)
    Q_PROPERTY(quillhaven::SearchFilterBarModel *filters READ filters CONSTANT)
    Q_PROPERTY(quillhaven::DashboardStatisticsModel *statistics READ statistics CONSTANT)
    // The dialogs of its own
    Q_PROPERTY(quillhaven::ErrorDialogManager *errorDialogManager READ errorDialogManager CONSTANT)
    Q_PROPERTY(quillhaven::RemoveProtectionDialogManager *removeProtectionDialogManager READ
                   removeProtectionDialogManager CONSTANT)
    // What it starts on several items, and beside them
    Q_PROPERTY(quillhaven::ItemSelection *selection READ selection CONSTANT)
    Q_PROPERTY(quillhaven::BulkActions *bulk READ bulk CONSTANT)
    Q_PROPERTY(quillhaven::ShredActions *shredding READ shredding CONSTANT)
    Q_PROPERTY(quillhaven::BackupActions *backup READ backup CONSTANT)

public:
    /// The references must outlive this object. This object must outlive every job it has started.
    DashboardViewModel(const Platform &platform, QuillhavenManager &quillhavenManager,
                       MasterPasswordManager &masterPasswordManager, const DashboardDialogs &dialogs,
                       QObject *parent = nullptr);
    ~DashboardViewModel() override;

    /// "v" and the application's version, "v1.0" when that is not known.
    [[nodiscard]] QString versionText() const;
    [[nodiscard]] QString masterPasswordText() const;
    /// Names what is being protected at present; empty when nothing is.
    [[nodiscard]] QString protectingText() const;
    [[nodiscard]] bool showingFilePicker() const { return m_showingFilePicker; }

    [[nodiscard]] bool showingError() const { return m_errors.showingError(); }
    [[nodiscard]] QString errorMessage() const { return m_errors.errorMessage(); }

    [[nodiscard]] FilteredItemsModel *items() { return &m_items; }
    /// The rows of every item.
    [[nodiscard]] ProtectedItemsModel &rows() { return m_rows; }
    [[nodiscard]] SearchFilterBarModel *filters() { return &m_filters; }
    [[nodiscard]] DashboardStatisticsModel *statistics() { return &m_statistics; }
    [[nodiscard]] ErrorDialogManager *errorDialogManager() { return &m_errors.dialog(); }
    [[nodiscard]] RemoveProtectionDialogManager *removeProtectionDialogManager() { return &m_removeDialogManager; }
    [[nodiscard]] ItemSelection *selection() { return &m_selection; }
    [[nodiscard]] BulkActions *bulk() { return &m_bulk; }
    [[nodiscard]] ShredActions *shredding() { return &m_shredding; }
    [[nodiscard]] BackupActions *backup() { return &m_backup; }

    // DashboardActions.cpp. Each starts a job and returns at once.

    /// "Protect New Item": lets the user choose, then asks how to protect it. Ignored while the panel is open.
    Q_INVOKABLE void protectNewItem();
    /// Asks how to protect the item, or says why it cannot be protected.
    void handleFileSelection(const QString &path);
    void showProtectionDialog(const QString &path);
    void showPasswordDialog(const QString &path, bool useTouchID);
    /// Locks an unlocked item and unlocks a locked one. Ignored while a job of this window runs for the item.
    Q_INVOKABLE void onToggleLock(const QString &id);
    /// Asks, then removes the item's protection.
    Q_INVOKABLE void askToRemove(const QString &id);
    void onRemove(const QString &id);
    /// The list's delete gesture: removes the protection of the rows, without a question.
    void deleteFilteredItems(const QList<int> &offsets);
    /// The delete key on a row: asks about the selected items, or else removes the protection of the row's item.
    Q_INVOKABLE void onDelete(int row);
    Q_INVOKABLE void copyPathToClipboard(const QString &id);
    Q_INVOKABLE void duplicateAsEncryptedCopy(const QString &id);
    /// Files and folders dropped on the window: one is protected as if it were chosen in the panel, of several those
    /// that can be protected are protected together.
    Q_INVOKABLE void onDrop(const QList<QUrl> &urls);
    /// What the file manager's menu asks for: "protect", "unlock", "lock" or "shred" under "action", for what stands at
    /// "path". Anything else does nothing, and so does locking what is locked.
    void handleFinderAction(const QVariantMap &userInfo);
    /// Lets the user choose a master password, the first one or another one.
    Q_INVOKABLE void chooseMasterPassword();

Q_SIGNALS:
    void masterPasswordTextChanged();
    void protectingTextChanged();
    void showingFilePickerChanged();
    void errorChanged();

private:
    class ProtectingName;

    [[nodiscard]] DashboardContext context();
    /// For the item that stands at the path and is in that state; without one, nothing.
    void toggleLockAt(const QString &path, bool isMounted);

    /// The engine's record as it is now.
    [[nodiscard]] std::optional<ProtectedItem> liveItem(const QString &id) const;

    [[nodiscard]] QCoro::Task<> runFilePicker();
    [[nodiscard]] QCoro::Task<> askForProtectionMethod(QString path);
    [[nodiscard]] QCoro::Task<> protectByPassword(QString path, Answer<PasswordInputDialogManager::Reply> reply);
    [[nodiscard]] QCoro::Task<> protect(QString path, QString password, bool useTouchID);
    [[nodiscard]] QCoro::Task<> toggleLock(QString id, bool wasMounted);
    [[nodiscard]] QCoro::Task<> remove(QString id);
    [[nodiscard]] QCoro::Task<> setMasterPassword(QString password);
    [[nodiscard]] QCoro::Task<> duplicate(QString id);

    Platform m_platform;
    QuillhavenManager &m_quillhavenManager;
    MasterPasswordManager &m_masterPasswordManager;
    DashboardDialogs m_dialogs;

    ProtectedItemsModel m_rows;
    SearchFilterBarModel m_filters;
    FilteredItemsModel m_items;
    DashboardStatisticsModel m_statistics;
    DashboardErrors m_errors;
    RemoveProtectionDialogManager m_removeDialogManager;
    ItemSelection m_selection;
    BulkActions m_bulk;
    ShredActions m_shredding;
    BackupActions m_backup;
    bool m_showingFilePicker = false;
    QStringList m_protectingNames;                           ///< in the order in which their jobs began
    std::vector<std::unique_ptr<RunningTimer>> m_copyTimers; ///< spent ones stay until none runs
    size_t m_runningCopyTimers = 0;
};

} // namespace quillhaven
