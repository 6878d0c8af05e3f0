#pragma once

#include "catalogue/ProtectedItem.h"
#include "credentials/KeychainManager.h"
#include "platform/Platform.h"

#include <QCoroTask>
#include <QObject>

#include <memory>
#include <optional>

namespace quillhaven {

class MasterPasswordManager;
class PasswordInputDialogManager;

/// The engine: the only owner of the catalogue, which runs every operation on items. Each operation stands in a file
/// of its own, named after it. Operations start and continue on the main thread; file, cipher and credential work runs
/// off it. Nothing is rolled back: an operation runs a fixed order of steps and stops where it fails.
///
/// Every operation passes the master password's guard first and returns without an error when that is cancelled.
/// Those that succeed close the master password session.
class QuillhavenManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isProcessing READ isProcessing NOTIFY isProcessingChanged)

public:
    /// Moves what an older layout left in the temporary directory, then loads and cleans the catalogue: file work on
    /// the calling thread. The references outlive this object.
    QuillhavenManager(const Platform &platform, MasterPasswordManager &masterPasswordManager,
                      PasswordInputDialogManager &passwordInputDialogManager, QObject *parent = nullptr);
    ~QuillhavenManager() override;

    /// Defined by the program alone.
    static QuillhavenManager &shared();

    /// The catalogue, in order of insertion.
    [[nodiscard]] const QList<ProtectedItem> &protectedItems() const { return m_protectedItems; }
    /// A display flag; it excludes nothing.
    [[nodiscard]] bool isProcessing() const { return m_isProcessing; }

    // Catalogue.cpp

    /// Writes the catalogue to both stores. Never fails to its caller.
    void saveProtectedItems();
    /// Takes every record with this id out of the list, without saving and without touching its files.
    void removeFromProtectedItems(const QString &id);

    // ProtectItem.cpp

    struct CanProtect
    {
        bool canProtect = false;
        std::optional<QString> errorMessage;
    };
    /// Asked by the views before they show a protection dialog.
    [[nodiscard]] CanProtect canProtectItem(QString path) const;
    /// Moves the item into private storage, writes its container and placeholder, stores its credential and records
    /// it. Throws QuillhavenError, FileError, CipherError or KeychainError; ProtectItem.cpp tells what stands on disk
    /// after each.
    [[nodiscard]] QCoro::Task<> protectItem(QString path, QString password, bool useTouchID);

    // LockItem.cpp

    /// Moves an unlocked item's data back into private storage and writes the placeholder. The caller promises that
    /// the item is unlocked: locking a locked item destroys its data. Fails with `operationTimeout` when the work took
    /// longer than 30 seconds, and then returns only after it has ended.
    [[nodiscard]] QCoro::Task<> lockItem(ProtectedItem item);

    // UnlockItem.cpp

    /// Checks the item's own password or the user's finger, has the place confirmed and moves the data back to it. A
    /// cancelled password dialog or a declined panel ends it without an error.
    [[nodiscard]] QCoro::Task<> unlockItem(ProtectedItem item);

    // RemoveProtection.cpp

    /// Gives the item back: its data ends at the original place, container, credential and record go.
    [[nodiscard]] QCoro::Task<> removeProtection(ProtectedItem item);

Q_SIGNALS:
    void protectedItemsChanged();
    void isProcessingChanged();

protected:
    // The cores of the bulk operations: they expect a place that the user has confirmed, pass no guard, set no flag and
    // close no session. Errors are passed on as reported.

    [[nodiscard]] QCoro::Task<> protectItemWithAccessibleURL(QString path, QString password, bool useTouchID);
    [[nodiscard]] QCoro::Task<> lockItemWithoutFileAccess(ProtectedItem item);
    [[nodiscard]] QCoro::Task<> unlockItemWithAccessibleURL(ProtectedItem item, QString accessiblePath);
    [[nodiscard]] QCoro::Task<> removeProtectionWithAccessibleURL(ProtectedItem item, QString accessiblePath);

private:
    // Catalogue.cpp
    void loadProtectedItems();
    void cleanupMissingFiles();
    /// The first record with this id, or nullptr; publish the change that is made to it.
    [[nodiscard]] ProtectedItem *liveItem(const QString &id);
    void publishItems() { Q_EMIT protectedItemsChanged(); }
    void setItemIsProcessing(const QString &id, bool value);
    void setIsProcessing(bool value);

    // StorageLocations.cpp
    [[nodiscard]] QString secureStorageDirectory() const;
    [[nodiscard]] QString oldStorageDirectory() const;
    void migrateBackupFiles();
    void migrateBackupPaths();

    // FileAccess.cpp
    /// Has the user confirm the item in a panel; the confirmed path. Throws QuillhavenError::accessDenied.
    [[nodiscard]] QCoro::Task<QString> requestFileAccess(QString path);

    // ItemAuthentication.cpp
    [[nodiscard]] QCoro::Task<bool> requestPasswordAuthentication(ProtectedItem item);
    [[nodiscard]] QCoro::Task<QString> authenticateWithTouchID(QString id);
    /// The check of the item's own secret; false when the user cancelled.
    [[nodiscard]] QCoro::Task<bool> authenticateForUnlock(ProtectedItem item);

    // LockItem.cpp, UnlockItem.cpp, RemoveProtection.cpp
    enum class Logging { Off, On };
    [[nodiscard]] QCoro::Task<> performLockOperation(ProtectedItem item);
    [[nodiscard]] QCoro::Task<> performUnlockOperation(ProtectedItem item);
    [[nodiscard]] QCoro::Task<> restoreForRemoval(ProtectedItem item, QString place);
    [[nodiscard]] QCoro::Task<> cleanUpProtection(ProtectedItem item, Logging logging);
    void finishRemoval(const QString &id);

    // The stored settings, read each time they are used.
    [[nodiscard]] bool enableTouchID() const;
    [[nodiscard]] bool enforceStrongPasswords() const;
    [[nodiscard]] bool enableiCloudBackup() const;

    Platform m_platform;
    std::shared_ptr<KeychainManager> m_keychain;
    MasterPasswordManager &m_masterPasswordManager;
    PasswordInputDialogManager &m_passwordInputDialogManager;

    QList<ProtectedItem> m_protectedItems;
    bool m_isProcessing = false;
};

} // namespace quillhaven
