// SPDX-License-Identifier: GPL-3.0-or-later

// Selection, drag and drop and the sheets for several items, in the real window with key presses, clicks and drags.

#include "DashboardWindowFixture.h"

#include "backup/CloudFolder.h"

#include <QMimeData>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class SelectionWindow : public DashboardWindow
{
protected:
    SelectionWindow() { storeThree(); }

    ItemSelection &selection() { return *started().dashboard.selection(); }
    QString selectedNames() { return namesOf(selection().getSelectedItems()).join(QLatin1Char(' ')); }
    QQuickItem *item(const char *property, const char *value)
    {
        render();
        for (QQuickItem *each : visibleItems(shown().window()->contentItem())) {
            if (each->property(property).toString() == QString::fromUtf8(value)) {
                return each;
            }
        }
        return nullptr;
    }
    void click(const char *property, const char *value, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        shown();
        QQuickItem *found = item(property, value);
        ASSERT_TRUE(found) << value;
        const QPointF middle = found->mapToScene({found->width() / 2, found->height() / 2});
        QTest::mouseClick(shown().window(), Qt::LeftButton, modifiers, middle.toPoint());
        render();
    }
    void drop(const QStringList &paths)
    {
        QList<QUrl> urls;
        for (const QString &path : paths) {
            urls.append(QUrl::fromLocalFile(path));
        }
        QMimeData data;
        data.setUrls(urls);
        const QPoint place(200, 400);
        QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(shown().window(), &enter);
        render();
        isDropAccepted = item("isTargeted", "true") != nullptr;
        QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(shown().window(), &event);
        DashboardHarness::settle();
    }

    bool isDropAccepted = false; ///< the window showed during the drag that it accepts the drop
};

} // namespace

TEST_F(SelectionWindow, SelectButtonShowsTheMarksAndTheSecondButton)
{
    shown();
    EXPECT_TRUE(shows("Select"));
    EXPECT_FALSE(shows("Select All"));
    EXPECT_EQ(item("symbol", "circle"), nullptr);
    click("text", "Select");
    EXPECT_TRUE(shows("Done"));
    EXPECT_TRUE(shows("Select All"));
    EXPECT_NE(item("symbol", "circle"), nullptr);
    click("text", "Select All");
    EXPECT_TRUE(shows("Deselect All"));
    EXPECT_TRUE(shows("3 selected"));
    for (const char *text : {"Unlock (2)", "Lock (1)", "Remove (3)", "Shred (3)", "Clear"}) {
        EXPECT_TRUE(shows(text)) << text;
    }
    click("text", "Done");
    EXPECT_FALSE(shows("3 selected"));
    EXPECT_EQ(selection().selectedCount(), 0);
}

TEST_F(SelectionWindow, UnlockAndLockButtonsAreShownOnlyIfTheyApply)
{
    selection().extendSelection(QStringLiteral("ID-bravo.png"));
    EXPECT_TRUE(shows("1 selected"));
    EXPECT_TRUE(shows("Lock (1)"));
    EXPECT_FALSE(shows("Unlock (0)"));
}

TEST_F(SelectionWindow, ClickSelectsOnlyInTheSelectionMode)
{
    click("text", "alpha.txt");
    EXPECT_EQ(selection().selectedCount(), 0);
    click("text", "Select");
    click("text", "alpha.txt");
    EXPECT_EQ(selectedNames(), QStringLiteral("alpha.txt"));
    click("text", "alpha.txt");
    EXPECT_EQ(selection().selectedCount(), 0);
}

TEST_F(SelectionWindow, ClickWithControlEntersTheMode)
{
    click("text", "alpha.txt", Qt::ControlModifier);
    click("text", "charlie", Qt::ControlModifier);
    EXPECT_TRUE(selection().isInSelectionMode());
    EXPECT_EQ(selectedNames(), QStringLiteral("alpha.txt charlie"));
}

TEST_F(SelectionWindow, ClickWithShiftSelectsFromTheCurrentRow)
{
    click("text", "charlie", Qt::ControlModifier);
    click("text", "bravo.png", Qt::ShiftModifier);
    EXPECT_TRUE(selection().isInSelectionMode());
    EXPECT_EQ(selectedNames(), QStringLiteral("bravo.png charlie"));
    click("text", "Clear");
    click("text", "alpha.txt");
    click("text", "charlie", Qt::ShiftModifier);
    EXPECT_EQ(selectedNames(), QStringLiteral("alpha.txt bravo.png charlie"));
}

TEST_F(SelectionWindow, KeyboardSelectsTogglesAndClears)
{
    shown();
    ASSERT_TRUE(tabToList());
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(selection().selectedCount(), 3);
    press(Qt::Key_Space);
    EXPECT_EQ(selectedNames(), QStringLiteral("bravo.png charlie")) << "the row with the keyboard is toggled";
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    EXPECT_EQ(selectedNames(), QStringLiteral("charlie"));
    press(Qt::Key_Escape);
    EXPECT_FALSE(selection().isInSelectionMode());
    EXPECT_EQ(selection().selectedCount(), 0);
    EXPECT_EQ(focusedRow(), QStringLiteral("bravo.png"));
    press(Qt::Key_Up);
    EXPECT_EQ(focusedRow(), QStringLiteral("alpha.txt"));
}

TEST_F(SelectionWindow, KeysSelectAllAndClearWhereverTheFocusIs)
{
    shown();
    const auto checkKeys = [this](const char *where) {
        press(Qt::Key_A, Qt::ControlModifier);
        EXPECT_EQ(selection().selectedCount(), 3) << where;
        press(Qt::Key_Escape);
        EXPECT_FALSE(selection().isInSelectionMode()) << where;
    };
    checkKeys("no control has the focus");
    press(Qt::Key_Tab);
    checkKeys("the focus is in the toolbar");
    press(Qt::Key_F, Qt::ControlModifier);
    checkKeys("the focus is in the empty search field");
}

TEST_F(SelectionWindow, SelectAllKeySelectsTheTextOfTheSearchField)
{
    press(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClick(shown().window(), 'a');
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(selection().selectedCount(), 0);
    QTest::keyClick(shown().window(), 'c');
    EXPECT_EQ(started().dashboard.filters()->searchText(), QStringLiteral("c")) << "the selected text is replaced";
}

TEST_F(SelectionWindow, SelectAllKeyDoesNothingUnderASheet)
{
    press(Qt::Key_F1);
    ASSERT_TRUE(eventuallyShows("Keyboard Shortcuts"));
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(selection().selectedCount(), 0);
}

TEST_F(SelectionWindow, DeleteKeyAsksAboutTheSelection)
{
    shown();
    ASSERT_TRUE(tabToList());
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Delete);
    EXPECT_TRUE(eventuallyShows("Remove Protection from 3 Items"));
    started().confirmationDialog.cancel();
}

TEST_F(SelectionWindow, DeleteKeyRemovesTheProtectionOfTheRow)
{
    shown();
    ASSERT_TRUE(tabToList());
    press(Qt::Key_Down);
    press(Qt::Key_Delete);
    DashboardHarness::settle();
    EXPECT_EQ(started().shownNames(), QStringLiteral("alpha.txt charlie"));
}

TEST_F(SelectionWindow, RowButtonAsksBeforeItShreds)
{
    click("helpText", "Secure Shred");
    ASSERT_TRUE(eventuallyShows("Secure delete \"alpha.txt\"?"));
    click("text", "Secure Delete");
    EXPECT_TRUE(eventuallyShows("Permanent Deletion Warning"));
    EXPECT_EQ(started().dashboard.shredding()->confirmation()->itemNames(), QStringList(QStringLiteral("alpha.txt")));
}

TEST_F(SelectionWindow, DropOfSeveralFilesAsksForTheirMethod)
{
    drop({services.home.write(QStringLiteral("one.txt")), services.home.write(QStringLiteral("two.txt"))});
    EXPECT_TRUE(isDropAccepted);
    EXPECT_TRUE(eventuallyShows("Protect 2 Items"));
}

TEST_F(SelectionWindow, DropIsRejectedWhileASheetIsShown)
{
    shown();
    started().dashboard.bulk()->showBulkFilePicker();
    ASSERT_TRUE(eventuallyShows("Bulk File Protection"));
    drop({services.home.write(QStringLiteral("one.txt"))});
    EXPECT_FALSE(isDropAccepted);
    EXPECT_FALSE(started().protectionMethodDialog.isPresented());
}

TEST_F(SelectionWindow, FilesAreRecoveredFromThePreferencesWhereThereIsAFolderForBackups)
{
    shown();
    preferences().model.show();
    ASSERT_TRUE(eventuallyShows("Startup"));
    EXPECT_FALSE(shows("Backup"));
    preferences().model.handleCloseAttempt();
    CloudFolder(services).make();
    preferences().model.show();
    ASSERT_TRUE(eventuallyShows("Backup"));
    click("text", "Backup");
    ASSERT_TRUE(eventuallyShows("Recover Files"));
    click("text", "Recover Files");
    EXPECT_TRUE(eventuallyShows("How to use:"));
}
