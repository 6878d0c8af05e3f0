// SPDX-License-Identifier: GPL-3.0-or-later

// The sheets for long operations, each in a real window, driven by key presses and checked by its texts.

#include "DialogScene.h"

#include "presentation/dialogs/BulkFilePickerModel.h"
#include "presentation/dialogs/ErrorDialogManager.h"
#include "presentation/dialogs/OperationProgress.h"
#include "presentation/dialogs/RecoveryDialogManager.h"
#include "presentation/dialogs/ShredConfirmationDialogModel.h"
#include "presentation/dialogs/StorageNote.h"
#include "support/FakeFilePanels.h"
#include "support/ManualClock.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

const QSize smallest(760, 560);

QStringList manyNames()
{
    QStringList names;
    for (int number = 1; number <= 12; ++number) {
        names.append(QStringLiteral("Contract %1.pdf").arg(number));
    }
    return names;
}

class ShredConfirmationWindow : public ::testing::Test
{
protected:
    ShredConfirmationWindow()
    {
        dialog.onConfirm = [this] { isConfirmed = true; };
    }

    bool isConfirmed = false;
    ShredConfirmationDialogModel dialog;
    DialogScene scene{QStringLiteral("ShredConfirmationDialog { dialog: scene.shred }"),
                      {{QStringLiteral("shred"), QVariant::fromValue(&dialog)}}};
};

} // namespace

TEST_F(ShredConfirmationWindow, ShowsEverythingThatWillHappen)
{
    dialog.show({QStringLiteral("will.pdf"), QStringLiteral("album")});
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    const QStringList names = scene.heard().names;
    for (const char *text :
         {"Permanent Deletion Warning", "You are about to permanently delete the following items:", "will.pdf", "album",
          "⚠️ This action cannot be undone", "• Files will be overwritten using DoD 5220.22-M standard",
          "• Data will be unrecoverable by any means", "• File system metadata will be permanently cleared",
          "• This process may take several minutes", "I understand this will permanently delete the selected items",
          "Type 'SHRED PERMANENTLY' to confirm:", "Cancel", "🗑️ Shred Permanently"}) {
        EXPECT_TRUE(names.contains(QString::fromUtf8(text))) << text;
    }
    EXPECT_TRUE(scene.findSymbol("exclamationmark.triangle.fill"));
    EXPECT_TRUE(scene.findSymbol("square"));
}

TEST_F(ShredConfirmationWindow, NoteAppearsWhenItIsKnownAndIsHeard)
{
    const QString note = storageNote({.isSolidState = true, .hasSnapshots = true, .isUnencrypted = true});
    dialog.show({QStringLiteral("will.pdf")});
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    const QQuickItem *box = scene.find("I understand this will permanently delete the selected items");
    ASSERT_TRUE(box);
    const double without = box->mapToScene({}).y() - scene.sheet()->mapToScene({}).y();
    EXPECT_FALSE(scene.heard().names.contains(note));
    dialog.setStorageNote(note);
    EXPECT_TRUE(spinUntil([&] { return scene.heard().names.contains(note); }));
    EXPECT_TRUE(spinUntil([&] { return box->mapToScene({}).y() - scene.sheet()->mapToScene({}).y() > without; }))
        << "the note has no room of its own";
    const QQuickItem *shown = scene.find(qUtf8Printable(note));
    ASSERT_TRUE(shown);
    EXPECT_FALSE(shown->property("truncated").toBool());
    EXPECT_TRUE(scene.getsFocus("Cancel")) << "the keyboard is not taken from the user";
}

TEST_F(ShredConfirmationWindow, CanBeConfirmedWithTheKeyboard)
{
    dialog.show({QStringLiteral("will.pdf")});
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    scene.press(Qt::Key_Tab);
    ASSERT_TRUE(scene.getsFocus("I understand this will permanently delete the selected items"));
    scene.press(Qt::Key_Space);
    EXPECT_TRUE(dialog.hasReadWarning());
    EXPECT_TRUE(scene.findSymbol("checkmark.square.fill"));
    scene.press(Qt::Key_Tab);
    scene.type("shred permanently");
    EXPECT_EQ(dialog.confirmationText(), QStringLiteral("shred permanently"));
    scene.press(Qt::Key_Return);
    EXPECT_TRUE(isConfirmed);
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

TEST_F(ShredConfirmationWindow, ReturnWithoutThePhraseConfirmsNothing)
{
    dialog.show({QStringLiteral("will.pdf")});
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    scene.press(Qt::Key_Tab);
    scene.press(Qt::Key_Tab);
    scene.press(Qt::Key_Return);
    EXPECT_FALSE(isConfirmed);
    EXPECT_TRUE(dialog.isPresented());
    scene.press(Qt::Key_Escape);
    EXPECT_FALSE(dialog.isPresented());
    dialog.show({QStringLiteral("will.pdf")});
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    EXPECT_FALSE(scene.holdsTypedText("shred permanently"));
}

TEST_F(ShredConfirmationWindow, ButtonsStayVisibleInASmallWindow)
{
    scene.window()->resize(smallest);
    ASSERT_TRUE(spinUntil([&] { return scene.window()->size() == smallest; }));
    dialog.show(manyNames());
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    scene.window()->grabWindow();
    const QQuickItem *confirm = scene.find("🗑️ Shred Permanently");
    ASSERT_TRUE(confirm);
    EXPECT_LE(confirm->mapToScene({0, confirm->height()}).y(), smallest.height());
    // The field is below the visible part, until it gets the focus.
    for (int presses = 0; presses < 3; ++presses) {
        scene.press(Qt::Key_Tab);
    }
    const QQuickItem *field = scene.window()->activeFocusItem();
    ASSERT_TRUE(field);
    EXPECT_LE(field->mapToScene({0, field->height()}).y(), confirm->mapToScene({0, 0}).y());
}

TEST_F(ShredConfirmationWindow, LongListOfNamesCanBeScrolledWithTheKeyboard)
{
    dialog.show(manyNames());
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    scene.press(Qt::Key_Tab);
    const QQuickItem *names = scene.window()->activeFocusItem();
    ASSERT_TRUE(names);
    ASSERT_TRUE(names->inherits("QQuickFlickable")) << names->metaObject()->className();
    EXPECT_EQ(names->property("contentY").toReal(), 0);
    scene.press(Qt::Key_Down);
    const qreal below = names->property("contentY").toReal();
    EXPECT_GT(below, 0);
    scene.press(Qt::Key_Up);
    EXPECT_LT(names->property("contentY").toReal(), below);
}

TEST(ShredProgressWindow, ShowsItsStateAndCannotBeClosed)
{
    ManualClock clock;
    OperationProgress operation(clock);
    DialogScene scene(QStringLiteral("ShredProgressView { operation: scene.operation }"),
                      {{QStringLiteral("operation"), QVariant::fromValue(&operation)}});
    operation.show();
    operation.report(QStringLiteral("Pass 2 of 3: will.pdf"), 0.999);
    ASSERT_TRUE(spinUntil([&] { return scene.shows("Secure Shredding in Progress"); }));
    for (const char *text : {"Pass 2 of 3: will.pdf", "Progress", "99%", "DoD 5220.22-M Standard",
                             "3-Pass Overwrite Process", "Metadata Clearing", "Do not interrupt this process"}) {
        EXPECT_TRUE(scene.shows(text)) << text;
    }
    for (const char *symbol :
         {"trash.fill", "shield.fill", "arrow.clockwise", "lock.fill", "exclamationmark.triangle.fill"}) {
        EXPECT_TRUE(scene.findSymbol(symbol)) << symbol;
    }
    EXPECT_FALSE(scene.shows("Cancel Operation"));
    // The focus has nowhere to go, and must not reach the window behind the sheet.
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Backtab}) {
        scene.press(key);
        EXPECT_FALSE(scene.focused().contains(QStringLiteral("ehind"))) << qUtf8Printable(scene.focused());
    }
    EXPECT_TRUE(operation.isPresented());
    operation.hide();
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

TEST(ShredProgressWindow, IsBetween400And500WideWithACircleOf80)
{
    ManualClock clock;
    OperationProgress operation(clock);
    DialogScene scene(QStringLiteral("ShredProgressView { objectName: \"sheet\"; operation: scene.operation }"),
                      {{QStringLiteral("operation"), QVariant::fromValue(&operation)}});
    const QObject *sheet = scene.window()->findChild<QObject *>(QStringLiteral("sheet"));
    ASSERT_TRUE(sheet);
    operation.show();
    for (const QString &message : {QStringLiteral("a"), QStringLiteral("Pass 2 of 3: a long name ").repeated(10)}) {
        operation.report(message, 0.5);
        ASSERT_TRUE(spinUntil([&] { return scene.shows(qUtf8Printable(message)); }));
        scene.window()->grabWindow();
        EXPECT_GE(sheet->property("width").toDouble(), 400);
        EXPECT_LE(sheet->property("width").toDouble(), 500);
    }
    EXPECT_EQ(scene.findSymbol("trash.fill")->width(), 80);
}

TEST(ShredProgressWindow, CanBeCancelledIfTheOwnerAllowsIt)
{
    ManualClock clock;
    OperationProgress operation(clock);
    DialogScene scene(QStringLiteral("ShredProgressView { operation: scene.operation; canCancel: true\n"
                                     "onCancelled: operation.hide() }"),
                      {{QStringLiteral("operation"), QVariant::fromValue(&operation)}});
    operation.show();
    ASSERT_TRUE(scene.getsFocus("Cancel Operation"));
    scene.press(Qt::Key_Return);
    EXPECT_FALSE(operation.isPresented());
}

TEST(BulkProgressWindow, ShowsItsStateAndCloses)
{
    ManualClock clock;
    OperationProgress operation(clock);
    DialogScene scene(QStringLiteral("BulkProgressView { operation: scene.operation }"),
                      {{QStringLiteral("operation"), QVariant::fromValue(&operation)}});
    operation.show();
    operation.report(QStringLiteral("Locking will.pdf..."), 0.5);
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    for (const char *text : {"Bulk Operation", "Locking will.pdf...", "50% Complete"}) {
        EXPECT_TRUE(scene.shows(text)) << text;
    }
    scene.press(Qt::Key_Return);
    EXPECT_FALSE(operation.isPresented());
}

TEST(BulkFilePickerWindow, ItemsCanBeChosenAndProtectedWithTheKeyboard)
{
    FakeFilePanels panels;
    BulkFilePickerModel picker(panels, [](const QStringList &paths) { return paths; });
    QStringList handedOver;
    picker.onFilesSelected = [&](const QStringList &paths) { handedOver = paths; };
    DialogScene scene(QStringLiteral("BulkFilePickerView { picker: scene.picker }"),
                      {{QStringLiteral("picker"), QVariant::fromValue(&picker)}});
    picker.show();
    ASSERT_TRUE(scene.getsFocus("Select Files & Folders"));
    for (const char *text :
         {"Bulk File Protection", "Select multiple files and folders to protect at once", "Protect 0 Items"}) {
        EXPECT_TRUE(scene.shows(text)) << text;
    }
    EXPECT_FALSE(scene.shows("Clear All"));
    EXPECT_FALSE(scene.find("Protect 0 Items")->isEnabled());
    panels.answer = [](const OpenPanelRequest &) { return QStringLiteral("/papers/a.txt"); };
    scene.press(Qt::Key_Return);
    ASSERT_TRUE(spinUntil([&] { return scene.shows("Selected Items (1)"); }));
    EXPECT_TRUE(scene.shows("a.txt"));
    EXPECT_TRUE(scene.shows("Clear All"));
    EXPECT_GE(scene.sheet()->width(), 400);
    EXPECT_LE(scene.sheet()->width(), 500);
    picker.handleFileSelection({QStringLiteral("/papers/b.txt")});
    EXPECT_TRUE(scene.heard().names.contains(QStringLiteral("Remove b.txt")));
    scene.click("Protect 2 Items");
    EXPECT_EQ(handedOver, (QStringList{QStringLiteral("/papers/a.txt"), QStringLiteral("/papers/b.txt")}));
}

TEST(RecoveryWindow, RecoveryCanBeStartedWithTheKeyboard)
{
    RecoveryDialogManager manager;
    DialogScene scene(QStringLiteral("RecoveryDialog { manager: scene.recovery }"),
                      {{QStringLiteral("recovery"), QVariant::fromValue(&manager)}});
    QString entered;
    manager.show([&](const QString &password) { entered = password; }, [&] { manager.setIsPresented(false); });
    ASSERT_TRUE(scene.getsFocus("Master Password"));
    for (const char *text : {"Enter your master password to restore all your protected files from iCloud backup",
                             "How to use:", "Enter your master password (the same password you use to access the app)",
                             "Click 'Recover All Files' to restore all your protected files",
                             "Choose a folder to save all recovered files", "Recover All Files"}) {
        EXPECT_TRUE(scene.shows(text)) << text;
    }
    scene.press(Qt::Key_Return);
    EXPECT_FALSE(manager.isRecovering());
    scene.type("Masterkey9");
    EXPECT_FALSE(scene.heard().texts.contains(QStringLiteral("Masterkey9")));
    scene.press(Qt::Key_Return);
    EXPECT_EQ(entered, QStringLiteral("Masterkey9"));
    EXPECT_TRUE(scene.shows("Recovering..."));
    scene.press(Qt::Key_Escape);
    EXPECT_FALSE(manager.isPresented());
    EXPECT_FALSE(scene.holdsTypedText("Masterkey9"));
}

TEST(ErrorWindow, LongTextScrollsAndItsButtonStaysVisible)
{
    ErrorDialogManager manager;
    DialogScene scene(QStringLiteral("ErrorDialog { manager: scene.error }"),
                      {{QStringLiteral("error"), QVariant::fromValue(&manager)}});
    QString message = QStringLiteral("Some items failed to unlock:");
    for (const QString &name : manyNames() + manyNames() + manyNames() + manyNames()) {
        message += QLatin1Char('\n') + name + QStringLiteral(": The disk is full.");
    }
    manager.showErrorWithAutoTroubleshooting(message, QStringLiteral("Error"));
    ASSERT_TRUE(scene.getsFocus("OK"));
    scene.window()->grabWindow();
    const QQuickItem *ok = scene.find("OK");
    EXPECT_LE(ok->mapToScene({0, ok->height()}).y(), scene.window()->height());
    const QQuickItem *title = scene.find("Error");
    const qreal before = title->mapToScene({0, 0}).y();
    scene.press(Qt::Key_PageDown);
    EXPECT_LT(title->mapToScene({0, 0}).y(), before);
}
