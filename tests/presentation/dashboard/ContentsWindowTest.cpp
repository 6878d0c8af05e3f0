// SPDX-License-Identifier: GPL-3.0-or-later

// What each part of the real window says and shows: its words, its symbols, its help texts and their order.

#include "DashboardWindowFixture.h"
#include "support/PrintText.h"

#include <QAccessible>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class Contents : public DashboardWindow
{
protected:
    /// What is visible below an item, or in the whole window.
    QList<QQuickItem *> visible(QQuickItem *below = nullptr)
    {
        shown();
        render();
        return visibleItems(below ? below : shown().window()->contentItem());
    }
    /// The first visible item that has this value.
    QQuickItem *item(const char *property, const char *value)
    {
        for (QQuickItem *each : visible()) {
            if (each->property(property).toString() == QString::fromUtf8(value)) {
                return each;
            }
        }
        ADD_FAILURE() << value;
        return shown().window()->contentItem();
    }
    void click(const char *property, const char *value)
    {
        QQuickItem *found = item(property, value);
        QTest::mouseClick(shown().window(), Qt::LeftButton, Qt::NoModifier,
                          found->mapToScene({found->width() / 2, found->height() / 2}).toPoint());
        spinOnce();
    }
    static QString descriptionOf(QQuickItem *item)
    {
        return QAccessible::queryAccessibleInterface(item)->text(QAccessible::Description);
    }
    QStringList symbols(QQuickItem *below = nullptr)
    {
        QStringList all;
        for (QQuickItem *each : visible(below)) {
            if (QString::fromLatin1(each->metaObject()->className()).startsWith(QStringLiteral("SymbolImage"))) {
                all.append(each->property("symbol").toString());
            }
        }
        return all;
    }
    QStringList textsBelow(QQuickItem *below)
    {
        QStringList all;
        for (QQuickItem *each : visible(below)) {
            if (each->inherits("QQuickText") && !each->property("text").toString().isEmpty()) {
                all.append(each->property("text").toString());
            }
        }
        return all;
    }
    void search(const char *text) { started().dashboard.filters()->setSearchText(QString::fromUtf8(text)); }
};

} // namespace

TEST_F(Contents, CardsAreInTheirOrderWithTheirValuesAndSymbols)
{
    storeThree();
    QStringList cards;
    for (QQuickItem *each : visible()) {
        if (each->property("showSettingsIcon").isValid()) {
            cards.append(each->property("title").toString() + QStringLiteral(": ") +
                         each->property("value").toString() + QStringLiteral(", ") + each->property("icon").toString());
        }
    }
    EXPECT_EQ(cards, (QStringList{QStringLiteral("Protected Items: 3, lock.shield.fill"),
                                  QStringLiteral("Currently Unlocked: 1, lock.open.fill"),
                                  QStringLiteral("Locked with Touch ID: 1, touchid"),
                                  QStringLiteral("Locked with Password: 2, key.fill"),
                                  QStringLiteral("Auto-lock: Disabled, clock.fill")}));
}

TEST_F(Contents, EachCardDescribesWhatAFilterShows)
{
    storeThree();
    search("charlie");
    QStringList values;
    for (QQuickItem *each : visible()) {
        if (each->property("showSettingsIcon").isValid()) {
            values.append(each->property("value").toString());
        }
    }
    EXPECT_EQ(values, (QStringList{QStringLiteral("1"), QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("0"),
                                   QStringLiteral("Disabled")}));
}

TEST_F(Contents, ToolbarExplainsItsActions)
{
    EXPECT_EQ(descriptionOf(item("text", "Protect New Item")),
              QStringLiteral("Opens file picker to select items to protect"));
    QQuickItem *bulk = item("text", "Bulk Protect");
    EXPECT_EQ(bulk->property("helpText").toString(), QStringLiteral("Protect multiple files and folders at once"));
    EXPECT_EQ(descriptionOf(bulk), QStringLiteral("Opens bulk file picker to protect multiple items"));
    EXPECT_EQ(descriptionOf(item("helpText", "Preferences")), QStringLiteral("Opens application preferences"));
    EXPECT_TRUE(symbols().contains(QStringLiteral("square.stack.3d.up.fill")));
}

TEST_F(Contents, ToolbarButtonsOpenWhatTheyName)
{
    click("text", "Bulk Protect");
    EXPECT_TRUE(started().dashboard.bulk()->picker()->isPresented());
    started().dashboard.bulk()->picker()->cancel();
    ASSERT_TRUE(isUncovered());
    click("helpText", "Preferences");
    EXPECT_TRUE(preferences().model.isPresented());
}

TEST_F(Contents, NothingMovesWhileTheWindowSaysWhatItIsWorkingOn)
{
    storeThree();
    const auto places = [this] {
        QList<QPointF> all;
        for (QQuickItem *each : visible()) {
            if (each->property("showSettingsIcon").isValid() ||
                !each->property("toggleLockIcon").toString().isEmpty()) {
                all.append(each->mapToScene({}));
            }
        }
        return all;
    };
    const QList<QPointF> before = places();
    started().dashboard.setBackgroundActivity(QStringLiteral("Moving the data"));
    EXPECT_TRUE(shows("Moving the data"));
    EXPECT_FALSE(shows("Secure your files with ease"));
    EXPECT_EQ(places(), before);
}

TEST_F(Contents, EmptyListHasASymbol)
{
    EXPECT_TRUE(symbols().contains(QStringLiteral("folder.badge.questionmark")));
    EXPECT_FALSE(symbols().contains(QStringLiteral("magnifyingglass.circle"))) << "there are no results to look for";
}

TEST_F(Contents, AnActiveFilterIsNamedAlsoWhenItHidesEverything)
{
    storeThree();
    for (const char *text : {"al", "nothing like this"}) {
        search(text);
        EXPECT_TRUE(shows("Filters Active")) << text;
        EXPECT_TRUE(symbols().contains(QStringLiteral("line.3.horizontal.decrease.circle.fill"))) << text;
    }
    EXPECT_FALSE(shows("Select")) << "there is nothing to select";
    search("");
    EXPECT_FALSE(shows("Filters Active"));
}

TEST_F(Contents, TheButtonOfAnEmptyResultClearsTheFilters)
{
    storeThree();
    search("zzz");
    EXPECT_EQ(item("text", "Clear Search")->property("helpText").toString(),
              QStringLiteral("Click to clear all filters"));
    click("text", "Clear Search");
    EXPECT_FALSE(started().dashboard.filters()->hasActiveFilters());
    EXPECT_TRUE(eventuallyShows("alpha.txt"));
}

TEST_F(Contents, ClearBesideTheFiltersClearsThem)
{
    storeThree();
    search("al");
    EXPECT_EQ(item("text", "Clear")->property("helpText").toString(), QStringLiteral("Clear all filters"));
    click("text", "Clear");
    EXPECT_FALSE(started().dashboard.filters()->hasActiveFilters());
    EXPECT_TRUE(eventuallyShows("bravo.png"));
}

TEST_F(Contents, TheSelectionsToolbarNamesItsActionsAndClearsTheSelection)
{
    storeThree();
    shown();
    started().dashboard.selection()->toggleSelectionMode();
    started().dashboard.selection()->selectAll();
    ASSERT_TRUE(eventuallyShows("3 selected"));
    const QStringList all = symbols();
    for (const char *symbol :
         {"checkmark.circle.fill", "lock.open.fill", "lock.fill", "minus.circle.fill", "trash.fill"}) {
        EXPECT_TRUE(all.contains(QString::fromLatin1(symbol))) << symbol;
    }
    for (const char *text : {"Unlock (2)", "Lock (1)", "Remove (3)", "Shred (3)"}) {
        EXPECT_TRUE(shows(text)) << text;
    }
    click("text", "Clear");
    EXPECT_EQ(started().dashboard.selection()->selectedCount(), 0);
    EXPECT_FALSE(started().dashboard.selection()->isInSelectionMode());
}

TEST_F(Contents, ButtonsOfTheSelectionCountOnlyWhatIsShown)
{
    storeThree();
    shown();
    started().dashboard.selection()->selectAll();
    search("charlie");
    for (const char *text : {"3 selected", "Unlock (1)", "Remove (3)"}) {
        EXPECT_TRUE(eventuallyShows(text)) << text;
    }
    EXPECT_FALSE(shows("Lock (1)")) << "bravo.png is hidden";
}

TEST_F(Contents, ARowShowsItsKindItsStateAndSixActions)
{
    storeThree();
    QStringList rows;
    for (QQuickItem *each : visible()) {
        if (!each->property("toggleLockIcon").toString().isEmpty()) {
            QStringList helpTexts;
            for (QQuickItem *below : visible(each)) {
                if (below->inherits("QQuickAbstractButton") && !below->property("helpText").toString().isEmpty()) {
                    helpTexts.append(below->property("helpText").toString());
                }
            }
            EXPECT_EQ(helpTexts.mid(1),
                      (QStringList{QStringLiteral("Reveal in Finder"), QStringLiteral("Copy Path to Clipboard"),
                                   QStringLiteral("Duplicate as Encrypted Copy"), QStringLiteral("Secure Shred"),
                                   QStringLiteral("Remove Protection")}));
            rows.append(helpTexts.value(0) + QStringLiteral(": ") + symbols(each).join(QLatin1Char(' ')));
        }
    }
    const QString actions =
        QStringLiteral(" folder.badge.plus doc.on.clipboard plus.square.on.square trash.fill minus.circle.fill");
    EXPECT_EQ(rows, (QStringList{
                        QStringLiteral("Unlock Item: doc.text.fill lock.fill key.fill") + actions,
                        QStringLiteral("Lock Item: photo.fill lock.open.fill lock.fill") + actions,
                        QStringLiteral("Unlock Item: folder.fill lock.fill touchid") + actions,
                    }));
}

TEST_F(Contents, TheIntroductionHasThreeStepsInTheirOrder)
{
    showsOnboarding = true;
    ASSERT_TRUE(eventuallyShows("Welcome to Quillhaven"));
    QQuickItem *panel = shown().window()->activeFocusItem();
    while (panel && !panel->inherits("QQuickPopupItem")) {
        panel = panel->parentItem();
    }
    ASSERT_TRUE(panel);
    EXPECT_EQ(
        textsBelow(panel),
        (QStringList{
            QStringLiteral("Welcome to Quillhaven"), QStringLiteral("Protect your sensitive files with ease"),
            QStringLiteral("1"), QStringLiteral("Protect Your First File"),
            QStringLiteral("Click 'Protect New Item' or drag & drop files into the dashboard"), QStringLiteral("2"),
            QStringLiteral("Choose Protection Method"),
            QStringLiteral("Select password protection or Touch ID for secure access"), QStringLiteral("3"),
            QStringLiteral("Access Anytime"), QStringLiteral("Use the menu bar icon or dashboard to unlock your files"),
            QStringLiteral("You can always access settings later from the menu bar"), QStringLiteral("Get Started")}));
    press(Qt::Key_Return);
    EXPECT_FALSE(started().onboarding.shouldShowOnboarding());
    EXPECT_TRUE(services.defaults.standard().boolForKey(QStringLiteral("hasCompletedOnboarding")).value_or(false));
}

TEST_F(Contents, TheDetailsOfAnItemAreBetween400And500Wide)
{
    storeThree();
    shown();
    started().dashboard.itemDetails()->show(QStringLiteral("ID-alpha.txt"));
    ASSERT_TRUE(eventuallyShows("Unlock Item"));
    QQuickItem *panel = item("text", "Item Details");
    EXPECT_TRUE(symbols().contains(QStringLiteral("arrow.uturn.backward")));
    while (panel && !panel->inherits("QQuickPopupItem")) {
        panel = panel->parentItem();
    }
    ASSERT_TRUE(panel);
    EXPECT_GE(panel->width(), 400);
    EXPECT_LE(panel->width(), 500);
}
