// SPDX-License-Identifier: GPL-3.0-or-later

// Every screen, sheet and state of the program that the gallery shows.

#include "Stage.h"
#include "presentation/dashboard/OfferedUpdate.h"
#include "presentation/dialogs/StorageNote.h"

namespace quillhaven::test {

namespace {

const QString longError = QStringLiteral("Some items failed to unlock:\n") +
                          QStringLiteral("Contract 1.pdf: The disk is full.\n").repeated(40);

QStringList manyNames()
{
    QStringList names;
    for (int number = 1; number <= 12; ++number) {
        names.append(QStringLiteral("Contract %1.pdf").arg(number));
    }
    return names;
}

QList<ProtectedItem> manyItems()
{
    const QStringList endings{QStringLiteral("pdf"), QStringLiteral("png"), QStringLiteral("zip"), QString()};
    QList<ProtectedItem> items;
    for (int number = 0; number < 200; ++number) {
        ProtectedItem item = namedItem(QStringLiteral("Contract %1").arg(number, 4, 10, QLatin1Char('0')));
        item.isFolder = number % 4 == 3;
        item.originalName += item.isFolder ? QString() : QLatin1Char('.') + endings.at(number % 4);
        if (number == 2) {
            item.originalName = QStringLiteral("Contract 0002 ") + QStringLiteral("with a very long name ").repeated(8);
        }
        item.isMounted = number % 5 == 1;
        item.useTouchID = number % 3 == 0;
        items.append(item);
    }
    return items;
}

void deceivingNames(Stage &stage)
{
    QList<ProtectedItem> items;
    for (const QString &name : {QString(QChar(0x202E)) + QStringLiteral("gnp.exe"), QStringLiteral("two\nlines.txt"),
                                QStringLiteral("שלום.pdf"), QStringLiteral("plain.txt")}) {
        items.append(namedItem(name));
    }
    stage.store(items);
}

void busyAndCopied(Stage &stage)
{
    EXPECT_TRUE(stage.tabToList());
    stage.press(Qt::Key_Down);
    stage.started().dashboard.rowActions()->copyPathToClipboard(QStringLiteral("ID-alpha.txt"));
    stage.started().dashboard.rows().setBusy({QStringLiteral("ID-charlie")}, true);
}

void searchFor(Stage &stage, const QString &text)
{
    stage.store(manyItems());
    stage.started().dashboard.filters()->setSearchText(text);
}

void select(Stage &stage)
{
    EXPECT_TRUE(stage.tabToList());
    stage.press(Qt::Key_A, Qt::ControlModifier);
    stage.press(Qt::Key_Down);
    stage.press(Qt::Key_Space);
}

void offerUpdate(Stage &stage)
{
    test::offerUpdate(stage.services, QStringLiteral("9.0"), QStringLiteral("https://downloads.example/"));
    runTask(stage.started().updates.performUpdateCheck(true));
}

void showNotices(Stage &stage)
{
    NoticesModel &notices = *stage.started().dashboard.notices();
    notices.show({.id = QStringLiteral("waiting"),
                  .text = QStringLiteral("Waiting for the keyring to answer."),
                  .isWaiting = true});
    notices.show({.id = QStringLiteral("found"),
                  .text = QStringLiteral("3 items were found in private storage that are not in the list. They can be "
                                         "given back or taken into the list again."),
                  .actionTitle = QStringLiteral("Show"),
                  .isDismissible = true});
}

void showLostItems(Stage &stage)
{
    TestPlatform &services = stage.services;
    stage.store({});
    const QString path = services.home.write(QStringLiteral("papers/will.pdf"), QByteArray(123456, 'x'));
    services.home.write(QStringLiteral("papers/photos/summer.jpg"), QByteArray(1234567, 'x'));
    QuillhavenManager &engine = stage.started().manager;
    for (const QString &each : {path, services.home.path(QStringLiteral("papers/photos"))}) {
        runTask(engine.protectItem(each, QStringLiteral("Abcdefg1"), false));
        engine.removeFromProtectedItems(engine.protectedItems().constLast().id);
    }
    services.home.write(QStringLiteral(".local/share/quillhaven/3F2504E0-4F89-41D3-9A0C-0305E82C3301_original"), "x");
    RescueDialogModel *rescue = stage.sheets().rescue();
    stage.started().dashboard.rescue()->show();
    spinUntil([rescue] { return rescue->count() == 3; });
}

void showPreferences(Stage &stage, PreferencesSectionType::Case section)
{
    QDir().mkpath(stage.services.home.path(QStringLiteral(".local/share/cloud/iCloud~com~tarnwick~quillhaven")));
    stage.sheets().preferences()->show();
    stage.sheets().preferences()->setSelectedSection(section);
}

void confirm(Stage &stage, bool isDestructive)
{
    ConfirmationDialogManager &manager = *stage.sheets().confirmationDialogManager();
    manager.show({.title = QStringLiteral("Set Protection for 3 Items"),
                  .message = QStringLiteral("These items will be protected with Touch ID."),
                  .confirmTitle = QStringLiteral("Protect"),
                  .isDestructive = isDestructive});
}

void showError(Stage &stage, const QString &message)
{
    stage.sheets().errorDialogManager()->showErrorWithAutoTroubleshooting(message, QStringLiteral("Error"));
}

void askForMasterPassword(Stage &stage)
{
    stage.sheets().masterPasswordDialogManager()->setIsPresented(true);
    stage.sheets().masterPasswordDialogManager()->showError(QStringLiteral("Incorrect password"));
}

void askForNewPassword(Stage &stage)
{
    PasswordInputDialogModel &state = *stage.sheets().passwordInputState();
    stage.sheets().passwordInputDialogManager()->show(
        {.title = QStringLiteral("Set Protection"),
         .message = QStringLiteral("Enter a password to protect this item:"),
         .requiresConfirmation = true},
        {}, {});
    state.setPassword(QStringLiteral("Abc"));
    state.setShowPassword(true);
    state.setConfirmPassword(QStringLiteral("Abd"));
    state.confirm();
}

void confirmShredding(Stage &stage, const StorageFacts &facts)
{
    ShredConfirmationDialogModel &dialog = *stage.sheets().shredConfirmation();
    dialog.show(manyNames());
    dialog.setHasReadWarning(true);
    dialog.setStorageNote(storageNote(facts));
}

void report(OperationProgress &operation, const QString &message)
{
    operation.show();
    operation.report(message, 0.42);
}

void pickFiles(Stage &stage)
{
    QStringList paths;
    for (const QString &name : manyNames()) {
        paths.append(stage.services.home.write(QStringLiteral("papers/") + name));
    }
    stage.sheets().bulkFilePicker()->show();
    stage.sheets().bulkFilePicker()->handleFileSelection(paths);
}

} // namespace

const QList<Scene> &allScenes()
{
    using Section = PreferencesSectionType::Case;
    static const QList<Scene> scenes{
        {"empty", [](Stage &stage) { stage.store({}); }},
        {"list", busyAndCopied},
        {"many", [](Stage &stage) { stage.store(manyItems()); }},
        {"filtered", [](Stage &stage) { searchFor(stage, QStringLiteral("12")); }},
        {"no_results", [](Stage &stage) { searchFor(stage, QStringLiteral("nothing")); }},
        {"selected", select},
        {"deceiving_names", deceivingNames},
        {"notices", showNotices},
        {"update", offerUpdate},
        {"method",
         [](Stage &stage) {
             (void)stage.sheets().protectionMethodDialogManager()->ask(QStringLiteral("Protect will.pdf"));
         }},
        {"confirmation", [](Stage &stage) { confirm(stage, false); }},
        {"confirmation_destructive", [](Stage &stage) { confirm(stage, true); }},
        {"removal",
         [](Stage &stage) {
             stage.sheets().removeProtectionDialogManager()->show(QStringLiteral("will.pdf"), {}, {});
         }},
        {"error",
         [](Stage &stage) { showError(stage, QStringLiteral("You don't have permission to move \"a.txt\".")); }},
        {"error_long", [](Stage &stage) { showError(stage, longError); }},
        {"master_password", askForMasterPassword},
        {"new_password", askForNewPassword},
        {"touch_id",
         [](Stage &stage) {
             stage.services.biometrics.setPrompt(true, QStringLiteral("Unlock will.pdf"),
                                                 QStringLiteral("Place your finger on the reader"));
         }},
        {"shred_confirmation", [](Stage &stage) { confirmShredding(stage, {}); }},
        {"shred_confirmation_note",
         [](Stage &stage) { confirmShredding(stage, {.isSolidState = true, .isUnencrypted = true}); }},
        {"shred_confirmation_long_note",
         [](Stage &stage) {
             confirmShredding(stage, {.isSolidState = true,
                                      .isCopyOnWrite = true,
                                      .isSynced = true,
                                      .hasSnapshots = true,
                                      .isUnencrypted = true});
         }},
        {"shred_progress",
         [](Stage &stage) {
             report(*stage.sheets().shredProgress(), QStringLiteral("Shredding original file: a.pdf"));
         }},
        {"bulk_picker_empty", [](Stage &stage) { stage.sheets().bulkFilePicker()->show(); }},
        {"bulk_picker", pickFiles},
        {"bulk_progress",
         [](Stage &stage) { report(*stage.sheets().bulkProgress(), QStringLiteral("Locking will.pdf...")); }},
        {"recovery", [](Stage &stage) { stage.sheets().recoveryDialogManager()->show([](const QString &) {}, [] {}); }},
        {"lost_items", showLostItems},
        {"preferences_general", [](Stage &stage) { showPreferences(stage, Section::General); }},
        {"preferences_security", [](Stage &stage) { showPreferences(stage, Section::Security); }},
        {"preferences_backup", [](Stage &stage) { showPreferences(stage, Section::Backup); }},
        {"introduction", [](Stage &stage) { stage.showsOnboarding = true; }},
        {"shortcuts", [](Stage &stage) { stage.sheets().keyboardShortcuts()->show(); }},
        {"item_details",
         [](Stage &stage) { stage.started().dashboard.itemDetails()->show(QStringLiteral("ID-alpha.txt")); }},
        {"delete_question",
         [](Stage &stage) { stage.started().dashboard.rowActions()->askToDelete(QStringLiteral("ID-alpha.txt")); }},
        {"row_error",
         [](Stage &stage) {
             stage.sheets().errorDialogSheet()->show(QStringLiteral("You don't have permission to remove \"a.txt\"."));
         }},
        {"row_menu",
         [](Stage &stage) {
             EXPECT_TRUE(stage.tabToList());
             stage.press(Qt::Key_Menu);
         }},
        {"popover", [](Stage &stage) { stage.openPopover(); }},
        {"popover_empty",
         [](Stage &stage) {
             stage.store({});
             stage.openPopover();
         }},
    };
    return scenes;
}

} // namespace quillhaven::test
