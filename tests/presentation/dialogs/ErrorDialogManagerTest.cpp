// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/ErrorDialogManager.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"

#include <gtest/gtest.h>

namespace quillhaven {
namespace {

struct HintRow
{
    QStringList words;
    QString hint;
};

/// The nine rows of the table, in order.
const QList<HintRow> &rows()
{
    static const QList<HintRow> all{
        {{QStringLiteral("permission"), QStringLiteral("access"), QStringLiteral("denied")},
         QStringLiteral("Try closing any applications that might be using this file, or move it to a different "
                        "location.")},
        {{QStringLiteral("weak password"), QStringLiteral("password must be at least")},
         QStringLiteral("Your password must be at least 8 characters long and contain uppercase letters, lowercase "
                        "letters, and numbers.")},
        {{QStringLiteral("not found"), QStringLiteral("could not be found")},
         QStringLiteral("The file may have been moved, deleted, or renamed. Check the file location and try again.")},
        {{QStringLiteral("encryption failed"), QStringLiteral("failed to create")},
         QStringLiteral("Ensure you have sufficient disk space and that the file is not corrupted or in use by another "
                        "application.")},
        {{QStringLiteral("touch id"), QStringLiteral("biometric")},
         QStringLiteral("Make sure Touch ID is enabled in System Preferences and that your fingerprint is "
                        "registered.")},
        {{QStringLiteral("network"), QStringLiteral("connection")},
         QStringLiteral("Check your internet connection and try again. If the problem persists, the service may be "
                        "temporarily unavailable.")},
        {{QStringLiteral("keychain"), QStringLiteral("secure storage")},
         QStringLiteral("There was an issue accessing secure storage. Try restarting the app or check your system's "
                        "keychain access.")},
        {{QStringLiteral("authentication"), QStringLiteral("login")},
         QStringLiteral("Authentication failed. Please check your credentials and try again.")},
        {{QStringLiteral("bulk operation"), QStringLiteral("multiple files")},
         QStringLiteral("Bulk operations may fail if some files are in use or have permission issues. Try processing "
                        "files individually.")},
    };
    return all;
}

QString hintFor(const QString &message)
{
    const ErrorDialogManager::TroubleshootingInfo info = ErrorDialogManager::detectTroubleshootingInfo(message);
    EXPECT_EQ(info.isFound, !info.hint.isEmpty());
    return info.hint;
}

TEST(TroubleshootingHint, EachWordOfEachRowGivesThatRowsHint)
{
    for (const HintRow &row : rows()) {
        for (const QString &word : row.words) {
            EXPECT_EQ(hintFor(QStringLiteral("The ") + word.toUpper() + QStringLiteral(" it was.")), row.hint)
                << qUtf8Printable(word);
        }
    }
}

TEST(TroubleshootingHint, EarlierRowTakesPrecedence)
{
    for (qsizetype first = 0; first < rows().size(); ++first) {
        for (qsizetype second = first + 1; second < rows().size(); ++second) {
            const QString message = rows()[second].words.first() + QLatin1Char(' ') + rows()[first].words.last();
            EXPECT_EQ(hintFor(message), rows()[first].hint) << qUtf8Printable(message);
        }
    }
}

TEST(TroubleshootingHint, PermissionGivesTheFirstRowRegardlessOfCase)
{
    EXPECT_EQ(hintFor(QStringLiteral("You don't have PerMISSion to move it.")), rows()[0].hint);
}

TEST(TroubleshootingHint, ItemThatCouldNotBeFoundGivesTheThirdRow)
{
    EXPECT_EQ(hintFor(QStringLiteral("The protected item could not be found.")), rows()[2].hint);
}

TEST(TroubleshootingHint, TouchIDGivesTheFifthRowUnlessTheMessageAlsoContainsAccess)
{
    EXPECT_EQ(hintFor(QStringLiteral("Touch ID is not set up.")), rows()[4].hint);
    EXPECT_EQ(hintFor(QStringLiteral("Touch ID has no access to the sensor.")), rows()[0].hint);
}

TEST(TroubleshootingHint, FailedToCreateTheContainerGivesTheFourthRow)
{
    EXPECT_EQ(hintFor(QStringLiteral("Failed to create encrypted container: the disk is full")), rows()[3].hint);
}

TEST(TroubleshootingHint, KeychainAccessGivesTheFirstRowNotTheSeventh)
{
    EXPECT_EQ(hintFor(QStringLiteral("Keychain access failed.")), rows()[0].hint);
    EXPECT_EQ(hintFor(QStringLiteral("The keychain is gone.")), rows()[6].hint);
}

TEST(TroubleshootingHint, BulkOperationThatWasDeniedGivesTheFirstRow)
{
    EXPECT_EQ(hintFor(QStringLiteral("Bulk operation failed: denied")), rows()[0].hint);
}

TEST(TroubleshootingHint, FailedShredHasNoHint)
{
    EXPECT_EQ(hintFor(QStringLiteral("Failed to shred item: the disk went away")), QString());
}

TEST(TroubleshootingHint, ShorterRuleKnowsOnlyPermissionAndAccess)
{
    EXPECT_EQ(ErrorDialogManager::permissionHint(QStringLiteral("No PERMISSION.")), rows()[0].hint);
    EXPECT_EQ(ErrorDialogManager::permissionHint(QStringLiteral("No Access.")), rows()[0].hint);
    EXPECT_EQ(ErrorDialogManager::permissionHint(QStringLiteral("It was denied.")), QString());
    EXPECT_EQ(ErrorDialogManager::permissionHint({}), QString());
}

TEST(ErrorDialogManager, StartsClosedAndEmpty)
{
    const ErrorDialogManager manager;
    EXPECT_FALSE(manager.isPresented());
    EXPECT_EQ(manager.errorMessage(), QString());
    EXPECT_EQ(manager.errorTitle(), QStringLiteral("Error"));
    EXPECT_FALSE(manager.showTroubleshooting());
    EXPECT_EQ(manager.troubleshootingMessage(), QString());
}

TEST(ErrorDialogManager, StoresEverythingBeforeItPresents)
{
    ErrorDialogManager manager;
    bool wasComplete = false;
    QObject::connect(&manager, &ErrorDialogManager::errorChanged, [&] {
        if (!manager.isPresented()) {
            wasComplete = manager.errorMessage() == QStringLiteral("No permission.") &&
                          manager.errorTitle() == QStringLiteral("Lock Failed") && manager.showTroubleshooting() &&
                          manager.troubleshootingMessage() == rows()[0].hint;
        }
    });
    manager.showErrorWithAutoTroubleshooting(QStringLiteral("No permission."), QStringLiteral("Lock Failed"));
    EXPECT_TRUE(wasComplete);
    EXPECT_TRUE(manager.isPresented());
}

TEST(ErrorDialogManager, EmptyMessageHasNoHint)
{
    ErrorDialogManager manager;
    manager.showErrorWithAutoTroubleshooting({}, QStringLiteral("Error"));
    EXPECT_TRUE(manager.isPresented());
    EXPECT_FALSE(manager.showTroubleshooting());
    EXPECT_EQ(manager.troubleshootingMessage(), QString());
}

TEST(ErrorDialogManager, LaterErrorWithoutAHintClearsTheEarlierHint)
{
    ErrorDialogManager manager;
    manager.showErrorWithAutoTroubleshooting(QStringLiteral("denied"), QStringLiteral("A"));
    manager.showErrorWithAutoTroubleshooting(QStringLiteral("odd"), QStringLiteral("B"));
    EXPECT_FALSE(manager.showTroubleshooting());
    EXPECT_EQ(manager.troubleshootingMessage(), QString());
}

TEST(ErrorDialogManager, HideErrorResetsTheTitle)
{
    ErrorDialogManager manager;
    manager.showErrorWithAutoTroubleshooting(QStringLiteral("denied"), QStringLiteral("Lock Failed"));
    manager.hideError();
    EXPECT_FALSE(manager.isPresented());
    EXPECT_EQ(manager.errorMessage(), QString());
    EXPECT_EQ(manager.errorTitle(), QStringLiteral("Error"));
    EXPECT_FALSE(manager.showTroubleshooting());
    EXPECT_EQ(manager.troubleshootingMessage(), QString());
}

TEST(ErrorDialogManager, DefaultTroubleshootingHasASecondButtonWithoutText)
{
    ErrorDialogManager manager;
    ConfirmationDialogManager confirmation;
    bool hasActed = false;
    confirmation.onConfirm = [&] { hasActed = true; };
    confirmation.onCancel = [&] { hasActed = true; };
    confirmation.setIsDestructive(true);
    confirmation.setShowCancelButton(false);
    manager.showErrorWithAutoTroubleshooting(QStringLiteral("denied"), QStringLiteral("Error"));
    manager.showDefaultTroubleshooting(&confirmation);
    EXPECT_TRUE(confirmation.isPresented());
    EXPECT_EQ(confirmation.title(), QStringLiteral("Troubleshooting"));
    EXPECT_EQ(confirmation.message(), rows()[0].hint);
    EXPECT_EQ(confirmation.confirmTitle(), QStringLiteral("OK"));
    EXPECT_EQ(confirmation.cancelTitle(), QString());
    EXPECT_FALSE(confirmation.isDestructive());
    EXPECT_TRUE(confirmation.showCancelButton());
    confirmation.confirm();
    confirmation.cancel();
    EXPECT_FALSE(hasActed);
}

} // namespace
} // namespace quillhaven
