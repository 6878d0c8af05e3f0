// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "backup/CloudBackups.h"
#include "catalogue/ItemCatalogue.h"
#include "credentials/KeychainManager.h"
#include "engine/ItemPlaces.h"
#include "engine/LostItems.h"
#include "engine/OwnPlaces.h"
#include "engine/RemovalLog.h"
#include "platform/Platform.h"
#include "shredding/QuillhavenShredder.h"

#include <QCoroTask>
#include <QObject>

#include <memory>
#include <optional>

namespace quillhaven {

class MasterPasswordManager;
class OperationScope;
class PasswordInputDialogManager;

/// The engine: the only owner of the catalogue, which runs every operation on items. Each operation has a file of its
/// own, named after it. Operations start and continue on the main thread; file, cipher and credential work runs
/// off it. Nothing is rolled back: an operation runs a fixed order of steps and stops where it fails.
///
/// Every operation but lockItemUnattended passes the master password's guard first and returns without an error when
/// that is cancelled.
/// Those that succeed close the master password session.
///
/// One operation at a time touches an item's files. A second one waits once its questions are answered, and then looks
/// at the record again: a lock that finds the item locked is done, and so is an unlock that finds it unlocked.
class QuillhavenManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isProcessing READ isProcessing NOTIFY isProcessingChanged)

public:
    /// Moves what an older layout left in the temporary directory, then loads and cleans the catalogue: file work on
    /// the calling thread. The references must outlive this object.
    QuillhavenManager(const Platform &platform, MasterPasswordManager &masterPasswordManager,
                      PasswordInputDialogManager &passwordInputDialogManager, QuillhavenShredder &secureShredder,
                      QObject *parent = nullptr);
    ~QuillhavenManager() override;

    /// Defined by the program alone.
    static QuillhavenManager &shared();

    /// The list, in order of insertion.
    [[nodiscard]] const QList<ProtectedItem> &protectedItems() const { return m_catalogue.items(); }
    /// The list with its signals for one record each, and the leases of the items.
    [[nodiscard]] ItemCatalogue &catalogue() { return m_catalogue; }
    [[nodiscard]] const ItemCatalogue &catalogue() const { return m_catalogue; }
    /// A display flag; it excludes nothing.
    [[nodiscard]] bool isProcessing() const { return m_isProcessing; }

    /// Writes the catalogue to both stores. Never fails to its caller.
    void saveProtectedItems() { m_catalogue.save(); }
    /// Takes every record with this id out of the list, without saving and without touching its files.
    void removeFromProtectedItems(const QString &id) { m_catalogue.remove({id}); }

    // LoadProtectedItems.cpp

    /// Tries again to read a catalogue that could not be read, or not be written (`ItemCatalogue::problem`). Whether it
    /// can be written now. Until then no new item is taken, since its record would be lost and its data with it; items
    /// can be unlocked, locked and removed, which loses nothing: the stored record still names every place of theirs.
    bool retryLoading();

    // ProtectItem.cpp

    struct CanProtect
    {
        bool canProtect = false;
        std::optional<QString> errorMessage;
    };
    /// Asked by the views before they show a protection dialog.
    [[nodiscard]] CanProtect canProtectItem(QString path) const;
    /// Those of the paths that can be protected, in their order, each file once.
    [[nodiscard]] QStringList protectablePaths(const QStringList &paths) const;
    /// Moves the item into private storage, writes its container and placeholder, stores its credential and records
    /// it. Throws QuillhavenError, FileError, CipherError or KeychainError; ProtectItem.cpp lists what each
    /// leaves on disk.
    [[nodiscard]] QCoro::Task<> protectItem(QString path, QString password, bool useTouchID);

    // LockItem.cpp

    /// Moves an unlocked item's data back into private storage and writes the placeholder. The caller promises that
    /// the item is unlocked. Fails with `operationTimeout` when the work took longer than 30 seconds, and then returns
    /// only after it has ended.
    [[nodiscard]] QCoro::Task<> lockItem(ProtectedItem item);
    /// The same without the master password's guard, for a lock that nobody is there to confirm.
    [[nodiscard]] QCoro::Task<> lockItemUnattended(ProtectedItem item);

    // UnlockItem.cpp

    /// Checks the item's own password or the user's finger, has the place confirmed and moves the data back to it. A
    /// cancelled password dialog or a declined panel ends it without an error.
    [[nodiscard]] QCoro::Task<> unlockItem(ProtectedItem item);

    // RemoveProtection.cpp

    /// Gives the item back: its data ends at the original place, container, credential and record go.
    [[nodiscard]] QCoro::Task<> removeProtection(ProtectedItem item);

    // BulkOperations.cpp: one check of the master password and one access panel for a whole list. A dismissed panel
    // ends the run without a word. Items that fail are reported together at the end, as `encryptionFailed`.

    [[nodiscard]] QCoro::Task<> bulkProtectItems(QStringList paths, QString password, bool useTouchID,
                                                 ProgressCallback progressCallback);
    [[nodiscard]] QCoro::Task<> bulkUnlockItems(QList<ProtectedItem> items, ProgressCallback progressCallback);
    [[nodiscard]] QCoro::Task<> bulkLockItems(QList<ProtectedItem> items, ProgressCallback progressCallback);
    [[nodiscard]] QCoro::Task<> bulkRemoveProtection(QList<ProtectedItem> items, ProgressCallback progressCallback);

    // DuplicateItem.cpp

    /// Makes a new protected item of a locked item's data. There is nothing at the new item's original place until it
    /// is unlocked.
    [[nodiscard]] QCoro::Task<> duplicateAsEncryptedCopy(ProtectedItem item, ProgressCallback progressCallback);

    // ShredItems.cpp

    /// Destroys all that exists of an item, and forgets it. Throws the failing step's error; the item then stays
    /// listed.
    [[nodiscard]] QCoro::Task<> shredProtectedItem(ProtectedItem item, ProgressCallback progressCallback);
    /// The same over a list. Throws QuillhavenError::bulkOperationFailed at the end, with a line for each failure.
    [[nodiscard]] QCoro::Task<> bulkShredProtectedItems(QList<ProtectedItem> items, ProgressCallback progressCallback);
    /// Destroys files and folders that are no items. Throws as `QuillhavenShredder::bulkShredItems`.
    [[nodiscard]] QCoro::Task<> shredUnprotectedItems(QStringList paths, ProgressCallback progressCallback);

    // BackUpItems.cpp

    [[nodiscard]] bool isiCloudAvailable() const;
    /// The folder in which the backups are kept, with its links resolved; nothing while there is none.
    [[nodiscard]] std::optional<QString> iCloudFolder() const;
    /// A sentence that says why no backup can be written to that folder; nothing when one can, or while there is none.
    [[nodiscard]] std::optional<QString> iCloudProblem() const;
    /// Makes an existing folder that one. Throws QuillhavenError::accessDenied for a folder of the program, or
    /// FileError.
    void useiCloudFolder(const QString &folder);
    /// Writes the recovery backup of a locked item, in place of an earlier one. Throws QuillhavenError, KeychainError
    /// or FileError; what a failed write has left of the backup stays.
    [[nodiscard]] QCoro::Task<> backupToiCloud(QString itemId);
    /// The same for all items, up to the first failure.
    [[nodiscard]] QCoro::Task<> backupAllToiCloud();

    // RecoverItems.cpp

    /// Writes what all backups hold into a folder that the user chooses, over whatever has the same names there; the
    /// paths written, in order. Throws QuillhavenError, KeychainError or FileError; files written before a failure
    /// stay.
    [[nodiscard]] QCoro::Task<QStringList> recoverFromiCloud(QString masterPassword);

    // RescueItems.cpp

    /// Looks for what an interrupted run has left. Changes nothing but for removing abandoned temporary files. Finds
    /// nothing while the records cannot be read or written.
    [[nodiscard]] QCoro::Task<RescueFindings> findLostItems();
    /// Moves a lost item to `place`, where nothing or a placeholder is; anything else there is kept aside. A file whose
    /// password or fingerprint key is stored is given back only for that. False when a question was cancelled.
    [[nodiscard]] QCoro::Task<bool> giveBackLostItem(LostItem lost, QString place);
    /// Takes a lost item into the list again, locked, with `place` as its place, where nothing or a placeholder is.
    /// Throws for a file without a stored password.
    [[nodiscard]] QCoro::Task<bool> listLostItem(LostItem lost, QString place);
    enum class Returned { Unlocked, Removed };
    /// Marks a record whose data is back at its place as unlocked, or finishes its removal.
    [[nodiscard]] QCoro::Task<bool> settleReturnedItem(QString id, Returned wanted);

Q_SIGNALS:
    void protectedItemsChanged();
    void isProcessingChanged();
    /// Something else had taken the place of an item, or the name of its container, and is at `aside` now, or in the
    /// trash when that is empty.
    void keptAside(const QString &place, const QString &aside);
    /// A protection failed after its item had moved: the item is lost until the rescue finds it.
    void itemLeftBehind();
    /// Another question has replaced the one for the password of this item. The operation that asked never continues.
    void questionReplaced(const QString &id);

protected:
    // The cores of the bulk operations: they expect a place that the user has confirmed, pass no guard, set no flag and
    // close no session. Errors are passed on as reported.

    [[nodiscard]] QCoro::Task<> protectItemWithAccessibleURL(QString path, QString password, bool useTouchID);
    /// Asks the credential store to be ready for a new entry. Throws KeychainError::saveFailed if it is not.
    [[nodiscard]] QCoro::Task<> prepareToStoreCredentials();
    [[nodiscard]] QCoro::Task<> lockItemWithoutFileAccess(ProtectedItem item);
    [[nodiscard]] QCoro::Task<> unlockItemWithAccessibleURL(ProtectedItem item, QString accessiblePath);
    [[nodiscard]] QCoro::Task<> removeProtectionWithAccessibleURL(ProtectedItem item, QString accessiblePath);

private:
    friend class OperationScope;

    // LoadProtectedItems.cpp
    void loadProtectedItems();
    void cleanupMissingFiles();
    /// Throws QuillhavenError::accessDenied when the record of a new item could not be kept.
    void requireKeptRecords() const;

    /// Marks a record busy, or not, without saving it.
    void setItemIsProcessing(const QString &id, bool value);
    void setIsProcessing(bool value);
    /// Clears the flag from the main loop; nobody waits for it.
    void stopProcessingLater();

    // StorageLocations.cpp
    [[nodiscard]] QString secureStorageDirectory() const;
    [[nodiscard]] OwnPlaces placesOfProgram() const;
    [[nodiscard]] QString oldStorageDirectory() const;
    void migrateBackupFiles();
    void migrateBackupPaths();

    // ProtectItem.cpp
    /// Takes what is not the program's from the place of a new container; see keepForeignContainer.
    [[nodiscard]] QCoro::Task<> clearContainerName(QString containerPath);

    // RescueItems.cpp
    [[nodiscard]] bool isLost(const LostItem &lost) const;
    /// Throws itemNotFound unless the item is still lost, and accessDenied while that cannot be known.
    void requireLost(const LostItem &lost) const;
    /// Throws accessDenied for the place of a listed item.
    void requireNoPlaceOfAnItem(const QString &place) const;

    // FileAccess.cpp
    /// Has the user confirm the item in a panel; the confirmed path. Throws QuillhavenError::accessDenied.
    [[nodiscard]] QCoro::Task<QString> requestFileAccess(QString path);

    // ItemAuthentication.cpp
    [[nodiscard]] QCoro::Task<bool> requestPasswordAuthentication(ProtectedItem item);
    [[nodiscard]] QCoro::Task<QString> authenticateWithTouchID(QString id);
    /// The check of the item's own secret; false when the user cancelled.
    [[nodiscard]] QCoro::Task<bool> authenticateForUnlock(ProtectedItem item);

    // LockItem.cpp, UnlockItem.cpp, RemoveProtection.cpp
    [[nodiscard]] QCoro::Task<> lockWithinLimit(ProtectedItem item, OperationScope &operation);
    [[nodiscard]] QCoro::Task<> performLockOperation(ProtectedItem item);
    [[nodiscard]] QCoro::Task<> performUnlockOperation(ProtectedItem item, OperationScope &operation);
    [[nodiscard]] QCoro::Task<> performRemoval(ProtectedItem item, OperationScope &operation);
    /// Keeps what has taken the item's place, before its private copy comes back to it; see keepForeignItemAside.
    [[nodiscard]] QCoro::Task<> keepForeignItem(QString place, QString privateCopy);
    [[nodiscard]] QCoro::Task<> restoreForRemoval(ProtectedItem item, QString place, RemovalLog log);
    [[nodiscard]] QCoro::Task<> cleanUpProtection(ProtectedItem item, RemovalLog log);

    /// What another operation did to the item since `snapshot` was taken; to be asked with the item's lease.
    enum class Meanwhile { Nothing, StateChanged, Removed };
    [[nodiscard]] Meanwhile meanwhile(const ProtectedItem &snapshot, bool wasListed) const;
    [[nodiscard]] bool isListed(const QString &id) const { return m_catalogue.item(id) != nullptr; }

    // BulkOperations.cpp
    using ItemOperation = QCoro::Task<> (QuillhavenManager::*)(ProtectedItem, QString);
    struct AccessTexts
    {
        QString verb; ///< such as "Unlocking"
        QString failureHeading;
    };
    [[nodiscard]] QCoro::Task<> bulkWithAccess(QList<ProtectedItem> items, ItemOperation itemOperation,
                                               AccessTexts texts, ProgressCallback progressCallback);
    /// Those of the paths that the user allows, in their order; nothing when the panel was dismissed.
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> requestBulkFileAccess(QStringList paths);

    // DuplicateItem.cpp, ShredItems.cpp
    [[nodiscard]] QCoro::Task<> duplicate(ProtectedItem item, OperationScope &operation,
                                          ProgressCallback progressCallback);
    [[nodiscard]] QCoro::Task<> destroyItem(ProtectedItem item, OperationScope &operation,
                                            ProgressCallback progressCallback);
    /// Throws QuillhavenError::itemNotFound when another operation has given the item back, or moved it since
    /// `wasMounted` was asked. Returns whether it is unlocked now.
    std::optional<bool> requireUnchanged(const ProtectedItem &item, const OperationScope &operation,
                                         std::optional<bool> wasMounted) const;

    // BackUpItems.cpp
    void requireBackupEnabled() const;
    /// The backup that follows a protection when it is switched on and there is a place; a failure is logged.
    [[nodiscard]] QCoro::Task<> backupNewItem(QString itemId);

    // The stored settings, read each time they are used.
    [[nodiscard]] bool enableTouchID() const;
    [[nodiscard]] bool enforceStrongPasswords() const;
    [[nodiscard]] bool enableiCloudBackup() const;

    Platform m_platform;
    std::shared_ptr<KeychainManager> m_keychain;
    MasterPasswordManager &m_masterPasswordManager;
    PasswordInputDialogManager &m_passwordInputDialogManager;
    QuillhavenShredder &m_secureShredder;

    CloudBackups m_cloudBackups;
    ItemCatalogue m_catalogue;
    PlacesInProtection m_placesInProtection;
    QSet<QString> m_idsInProtection; ///< of items that may be in private storage and have no record yet
    bool m_isProcessing = false;
};

} // namespace quillhaven
