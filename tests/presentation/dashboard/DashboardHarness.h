// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Items.h"
#include "async/WorkInFlight.h"
#include "autolock/AutoLockManager.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordManager.h"
#include "credentials/PasswordInputDialogManager.h"
#include "credentials/PasswordInputDialogModel.h"
#include "engine/QuillhavenManager.h"
#include "presentation/dashboard/DashboardViewModel.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/onboarding/OnboardingManager.h"
#include "support/LogCapture.h"
#include "support/RunTask.h"
#include "updates/UpdateManager.h"

#include <gtest/gtest.h>

namespace quillhaven::test {

inline const QString strongPassword = QStringLiteral("Abcdefg1");
inline const QString theMasterPassword = QStringLiteral("Masterkey9");

/// The dashboard with the real engine and a TestPlatform. Only the test answers dialogs.
class DashboardHarness
{
public:
    /// Starts with the current contents of the platform's stores.
    explicit DashboardHarness(TestPlatform &services) : DashboardHarness(services.platform()) {}
    explicit DashboardHarness(const Platform &services)
        : platform(services),
          masterPassword(platform, masterPasswordDialog),
          shredder(platform, masterPassword),
          manager(platform, masterPassword, passwordDialog, shredder),
          passwordInput(passwordDialog, platform.defaults.standard()),
          autoLock(platform, manager),
          updates(platform, QStringLiteral("https://updates.example/m")),
          dashboard(platform, manager, masterPassword,
                    {confirmationDialog, protectionMethodDialog, passwordDialog, masterPasswordDialog}, updates,
                    autoLock),
          onboarding(platform.defaults.standard())
    {
        settle();
    }
    ~DashboardHarness() { settle(); }
    DashboardHarness(const DashboardHarness &) = delete;
    DashboardHarness &operator=(const DashboardHarness &) = delete;

    /// Waits until everything has run that does not wait for a user.
    static void settle()
    {
        spinOnce();
        for (int quietRounds = 0; quietRounds < 10; ++quietRounds) {
            if (WorkInFlight::count() > 0) {
                spinUntil([] { return WorkInFlight::count() == 0; });
                quietRounds = 0;
            }
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        }
    }

    /// The user's choices in the dialogs, as made with their buttons.
    void choosePassword()
    {
        protectionMethodDialog.choosePasswordProtection();
        settle();
    }
    void chooseTouchID()
    {
        protectionMethodDialog.chooseTouchIDProtection();
        settle();
    }
    void cancelMethod()
    {
        protectionMethodDialog.cancel();
        settle();
    }
    void typePassword(const QString &password)
    {
        passwordInput.setPassword(password);
        passwordInput.setConfirmPassword(password);
        passwordInput.confirm();
        settle();
    }
    void typeMasterPassword(const QString &password)
    {
        masterPasswordDialog.handleAuthenticate(password);
        settle();
    }
    void confirmRemoval()
    {
        dashboard.removeProtectionDialogManager()->remove();
        settle();
    }

    /// Leaves the state of another question in the window's shared dialog.
    void askSomethingElse(bool isDestructive, bool showCancelButton)
    {
        confirmationDialog.setCancelTitle(QStringLiteral("Another"));
        confirmationDialog.setIsDestructive(isDestructive);
        confirmationDialog.setShowCancelButton(showCancelButton);
        confirmationDialog.onConfirm = [this] { ++strayAnswers; };
        confirmationDialog.onCancel = confirmationDialog.onConfirm;
    }

    void protect(const QString &path, bool useTouchID = false)
    {
        runTask(manager.protectItem(path, useTouchID ? QString() : strongPassword, useTouchID));
        settle();
    }
    [[nodiscard]] const ProtectedItem &item(qsizetype index = 0) const { return manager.protectedItems().at(index); }
    [[nodiscard]] QString shownNames()
    {
        return namesOf(dashboard.items()->filteredAndSortedItems()).join(QLatin1Char(' '));
    }

    int strayAnswers = 0; ///< answers received by the other question

    Platform platform;
    MasterPasswordDialogManager masterPasswordDialog;
    PasswordInputDialogManager passwordDialog;
    ConfirmationDialogManager confirmationDialog;
    ProtectionMethodDialogManager protectionMethodDialog;
    MasterPasswordManager masterPassword;
    QuillhavenShredder shredder;
    QuillhavenManager manager;
    PasswordInputDialogModel passwordInput;
    AutoLockManager autoLock;
    UpdateManager updates;
    DashboardViewModel dashboard;
    OnboardingManager onboarding;
};

/// A dashboard in a new home.
class DashboardTest : public ::testing::Test
{
protected:
    /// The dashboard, started at its first use.
    DashboardHarness &started()
    {
        if (!m_harness) {
            m_harness.emplace(services);
        }
        return *m_harness;
    }
    /// Protects new files, each with the strong password.
    void protectFiles(const QStringList &names)
    {
        for (const QString &name : names) {
            started().protect(services.home.write(QStringLiteral("papers/") + name));
        }
    }
    void storeMasterPassword()
    {
        services.credentials.entries[QStringLiteral("master_password")] = theMasterPassword.toUtf8();
    }

    LogCapture log;
    TestPlatform services;

private:
    std::optional<DashboardHarness> m_harness;
};

} // namespace quillhaven::test
