// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/WorkInFlight.h"
#include "catalogue/CatalogueJson.h"
#include "catalogue/QuillhavenError.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordManager.h"
#include "credentials/PasswordInputDialogManager.h"
#include "engine/QuillhavenManager.h"
#include "platform/UserDefaults.h"
#include "settings/Settings.h"
#include "support/LogCapture.h"
#include "support/PrintText.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"

#include <gtest/gtest.h>

#include <memory>

namespace quillhaven::test {

/// The engine with its bulk functions accessible to a test.
class OpenQuillhavenManager : public QuillhavenManager
{
public:
    using QuillhavenManager::lockItemWithoutFileAccess;
    using QuillhavenManager::protectItemWithAccessibleURL;
    using QuillhavenManager::QuillhavenManager;
    using QuillhavenManager::removeProtectionWithAccessibleURL;
    using QuillhavenManager::unlockItemWithAccessibleURL;
};

/// A run of the program's engine with a TestPlatform, and with a user who answers its dialogs. Create a second one with
/// the same platform for a restart.
class EngineHarness
{
public:
    explicit EngineHarness(TestPlatform &services) : EngineHarness(services.platform()) {}

    /// The same with another file manager instead of the real one.
    EngineHarness(TestPlatform &services, FileManager &fileManager) : EngineHarness(services.platform(fileManager)) {}

    explicit EngineHarness(const Platform &services)
        : platform(services),
          masterPassword(platform, masterPasswordDialog),
          shredder(platform, masterPassword),
          manager(platform, masterPassword, passwordDialog, shredder)
    {
        // Waits until the store was read, so that a test can change it afterwards.
        spinOnce();
        spinUntil([] { return WorkInFlight::count() == 0; });
        QObject::connect(
            &passwordDialog, &PasswordInputDialogManager::asked, &manager, [this] { answerPasswordDialog(); },
            Qt::QueuedConnection);
        QObject::connect(
            &masterPasswordDialog, &MasterPasswordDialogManager::asked, &manager,
            [this] { answerMasterPasswordDialog(); }, Qt::QueuedConnection);
    }

    [[nodiscard]] const ProtectedItem &item(qsizetype index = 0) const { return manager.protectedItems().at(index); }
    [[nodiscard]] qsizetype count() const { return manager.protectedItems().size(); }

    /// The catalogue as the next start would read it.
    [[nodiscard]] QList<ProtectedItem> storedItems() const
    {
        const auto json = platform.defaults.standard().dataForKey(settings::protectedItems.key);
        return json ? decodeProtectedItems(*json).value() : QList<ProtectedItem>();
    }
    /// Sets a master password and opens a session with it.
    void openMasterSession()
    {
        const QString password = QStringLiteral("Master12");
        runTask(masterPassword.setMasterPassword(password));
        EXPECT_TRUE(runTask(masterPassword.authenticate(password)));
    }

    void protect(const QString &path, const QString &password = QStringLiteral("Abcdefg1"), bool useTouchID = false)
    {
        runTask(manager.protectItem(path, password, useTouchID));
    }
    void lock(qsizetype index = 0) { runTask(manager.lockItem(item(index))); }
    void unlock(qsizetype index = 0) { runTask(manager.unlockItem(item(index))); }
    void remove(qsizetype index = 0) { runTask(manager.removeProtection(item(index))); }

    /// What the user types into the dialog for the item's password; nothing to cancel.
    std::optional<QString> itemPassword = QStringLiteral("Abcdefg1");
    /// The user lets the item's password dialog wait.
    bool isItemPasswordAwaited = false;
    /// What the user types into the master password dialog; nothing to cancel.
    std::optional<QString> masterPasswordEntry;
    int masterPrompts = 0;
    int passwordPrompts = 0;

    Platform platform;
    MasterPasswordDialogManager masterPasswordDialog;
    PasswordInputDialogManager passwordDialog;
    MasterPasswordManager masterPassword;
    QuillhavenShredder shredder;
    OpenQuillhavenManager manager;

private:
    void answerPasswordDialog()
    {
        if (!passwordDialog.isPresented() || isItemPasswordAwaited) {
            return;
        }
        ++passwordPrompts;
        passwordDialog.setIsPresented(false);
        if (itemPassword) {
            passwordDialog.onConfirm(*itemPassword);
        } else {
            passwordDialog.onCancel();
        }
    }

    void answerMasterPasswordDialog()
    {
        if (!masterPasswordDialog.isPresented() || masterPasswordDialog.isAuthenticating()) {
            return;
        }
        ++masterPrompts;
        if (masterPasswordEntry) {
            masterPasswordDialog.authenticate(*masterPasswordEntry);
        } else {
            masterPasswordDialog.cancel();
        }
    }
};

/// The case of the engine's error that the call throws. The test fails if it throws none.
template <typename Call>
QuillhavenError::Case engineErrorOf(Call call, QString *description = nullptr)
{
    try {
        call();
    } catch (const QuillhavenError &error) {
        if (description) {
            *description = error.errorDescription();
        }
        return error.errorCase();
    } catch (const std::exception &error) {
        ADD_FAILURE() << "another error: " << error.what();
        return QuillhavenError::keychainError;
    }
    ADD_FAILURE() << "no error";
    return QuillhavenError::keychainError;
}

} // namespace quillhaven::test
