// SPDX-License-Identifier: GPL-3.0-or-later

#include "PanelFixture.h"
#include "platform/FileError.h"

#include <QAccessible>
#include <QClipboard>
#include <QCompleter>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QProcess>

#include <sys/stat.h>

namespace quillhaven {
namespace {

class OpenPanel : public test::PanelFixture
{
protected:
    OpenPanel()
    {
        file = home.write(QStringLiteral("work/letter.txt"));
        inner = home.write(QStringLiteral("work/papers/inner.txt"));
        folder = home.path(QStringLiteral("work/papers"));
    }

    static FileError::Kind errorOf(const Opened &opened)
    {
        EXPECT_TRUE(test::spinUntil([&] { return opened.isFinished(); }));
        try {
            opened.wait();
        } catch (const FileError &error) {
            return error.kind();
        }
        ADD_FAILURE() << "no FileError";
        return FileError::Kind::Other;
    }

    QString file;
    QString inner;
    QString folder;
};

TEST_F(OpenPanel, ATypedFileNameIsChosenWithReturn)
{
    const auto opened = open(request());
    type(QStringLiteral("letter.txt"));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), file);
}

TEST_F(OpenPanel, AClickedFileIsChosenWithTheButton)
{
    const auto opened = open(request());
    EXPECT_FALSE(confirmButton()->isEnabled());
    click(QStringLiteral("letter.txt"));
    EXPECT_TRUE(confirmButton()->isEnabled());
    EXPECT_EQ(name()->text(), QStringLiteral("letter.txt"));
    clickConfirm();
    EXPECT_EQ(chosen(opened), file);
}

TEST_F(OpenPanel, ADoubleClickedFileIsChosen)
{
    const auto opened = open(request());
    doubleClick(QStringLiteral("letter.txt"));
    EXPECT_EQ(chosen(opened), file);
}

TEST_F(OpenPanel, ATypedFolderIsChosen)
{
    for (const QString &typed : {folder, folder + QLatin1Char('/'), QStringLiteral("papers")}) {
        const auto opened = open(request());
        type(typed);
        key(Qt::Key_Return);
        EXPECT_EQ(chosen(opened), folder) << qUtf8Printable(typed);
    }
}

TEST_F(OpenPanel, AClickedFolderIsChosenWithTheButton)
{
    const auto opened = open(request());
    click(QStringLiteral("papers"));
    EXPECT_EQ(name()->text(), QStringLiteral("papers"));
    clickConfirm();
    EXPECT_EQ(chosen(opened), folder);
}

TEST_F(OpenPanel, AClickedFolderIsChosenWithReturn)
{
    const auto opened = open(request());
    click(QStringLiteral("papers"));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), folder);
}

TEST_F(OpenPanel, ADoubleClickOpensAFolderAndItsFileCanBeChosen)
{
    const auto opened = open(request());
    doubleClick(QStringLiteral("papers"));
    EXPECT_FALSE(opened.isFinished());
    EXPECT_EQ(panel->folder(), folder);
    EXPECT_EQ(name()->text(), QString());
    EXPECT_FALSE(confirmButton()->isEnabled());
    click(QStringLiteral("inner.txt"));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), inner);
}

TEST_F(OpenPanel, AltDownOpensTheSelectedFolder)
{
    const auto opened = open(request());
    click(QStringLiteral("papers"));
    key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_FALSE(opened.isFinished());
    EXPECT_EQ(panel->folder(), folder);
}

TEST_F(OpenPanel, AMissingNameIsReportedAndThePanelStaysOpen)
{
    const auto opened = open(request());
    type(QStringLiteral("absent"));
    key(Qt::Key_Return);
    test::spinOnce();
    EXPECT_FALSE(opened.isFinished());
    const QList<QLabel *> labels = panel->findChildren<QLabel *>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const QLabel *label) {
        return label->isVisible() && label->text() == QStringLiteral("There is no item of this name.");
    }));
    type(QStringLiteral("letter.txt"));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), file);
}

TEST_F(OpenPanel, HiddenItemsAreOtherwiseNotListedButCanBeTyped)
{
    const QString hidden = home.write(QStringLiteral("work/.hidden"));
    const auto opened = open(request());
    const QModelIndex shown = row(QStringLiteral("letter.txt"));
    for (int i = 0; i < shown.model()->rowCount(shown.parent()); ++i) {
        EXPECT_NE(shown.siblingAtRow(i).data().toString(), QStringLiteral(".hidden"));
    }
    type(QStringLiteral(".hidden"));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), hidden);
}

TEST_F(OpenPanel, CtrlHShowsHiddenItemsAndHidesThemAgain)
{
    const QString hidden = home.write(QStringLiteral("work/.hidden"));
    const auto opened = open(request());
    (void)row(QStringLiteral("letter.txt"));
    key(Qt::Key_H, Qt::ControlModifier);
    click(QStringLiteral(".hidden"));
    key(Qt::Key_H, Qt::ControlModifier);
    const QModelIndex shown = row(QStringLiteral("letter.txt"));
    EXPECT_TRUE(test::spinUntil([&] { return shown.model()->rowCount(shown.parent()) == 2; }));
    EXPECT_FALSE(opened.isFinished());
}

TEST_F(OpenPanel, AltUpAndTheButtonGoToTheFolderAbove)
{
    OpenPanelRequest inPapers = request();
    inPapers.directory = folder;
    const auto opened = open(inPapers);
    key(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(panel->folder(), home.path(QStringLiteral("work")));
    EXPECT_TRUE(test::spinUntil([&] { return view()->currentIndex() == row(QStringLiteral("papers")); }))
        << "the arrow keys continue where the user came from";
    const QList<QPushButton *> buttons = panel->findChildren<QPushButton *>();
    const auto up = std::ranges::find(buttons, QStringLiteral("Up"), &QPushButton::text);
    QTest::mouseClick(*up, Qt::LeftButton);
    EXPECT_EQ(panel->folder(), home.path());
}

TEST_F(OpenPanel, ItemsOfTheListAreChosenWithTheKeyboardAlone)
{
    OpenPanelRequest several = request();
    several.allowsMultipleSelection = true;
    const test::RunningTask<std::optional<QStringList>> opened(panels.openSeveral(several));
    panel = onScreen<OpenPanelDialog>();
    ASSERT_TRUE(test::spinUntil([&] { return panel->isActiveWindow() && QApplication::focusWidget(); }));
    (void)row(QStringLiteral("letter.txt"));
    for (int presses = 0; QApplication::focusWidget() != view() && presses < 10; ++presses) {
        key(Qt::Key_Tab);
    }
    ASSERT_EQ(QApplication::focusWidget(), view());
    key(Qt::Key_Home);
    key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(view()->selectionModel()->selectedRows().size(), 2);
    key(Qt::Key_Return);
    ASSERT_TRUE(test::spinUntil([&] { return opened.isFinished(); }));
    EXPECT_EQ(opened.wait(), (QStringList{folder, file}));
}

TEST_F(OpenPanel, ReturnInThePlacesGoesToTheFolderAndChoosesNothing)
{
    const auto opened = open(request());
    auto *places = panel->findChild<QListWidget *>();
    places->setFocus();
    places->setCurrentRow(0);
    key(Qt::Key_Return);
    EXPECT_EQ(panel->folder(), QDir::homePath());
    EXPECT_FALSE(opened.isFinished());
}

TEST_F(OpenPanel, WhatIsTypedIsChosenAndNotACompletionOfIt)
{
    const QString shorter = home.write(QStringLiteral("work/letter"));
    const auto opened = open(request());
    (void)row(QStringLiteral("letter.txt"));
    type(QStringLiteral("lette"));
    EXPECT_TRUE(test::spinUntil([&] { return name()->completer()->popup()->isVisible(); }));
    type(QStringLiteral("letter"));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), shorter);
}

TEST_F(OpenPanel, ANameThatDeceivesIsShownAsItIs)
{
    const QString deceiving = QString(QChar(0x202E)) + QStringLiteral("gnp.\nexe");
    const QString path = home.write(QStringLiteral("work/") + deceiving);
    const auto opened = open(request());
    EXPECT_EQ(row(deceiving).data().toString(), QStringLiteral("\uFFFDgnp.↵exe"));
    click(deceiving);
    EXPECT_EQ(name()->text(), QStringLiteral("\uFFFDgnp.↵exe"));
    clickConfirm();
    EXPECT_EQ(chosen(opened), path);
}

TEST_F(OpenPanel, TheNextPanelStartsInTheLastUsedFolder)
{
    const auto first = open(request());
    type(inner);
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(first), inner);
    OpenPanelRequest anywhere = request();
    anywhere.directory.clear();
    const auto second = open(anywhere);
    EXPECT_EQ(panel->folder(), folder);
}

TEST_F(OpenPanel, EscapeDeclines)
{
    const auto opened = open(request());
    key(Qt::Key_Escape);
    ASSERT_TRUE(test::spinUntil([&] { return opened.isFinished(); }));
    EXPECT_EQ(opened.wait(), std::nullopt);
}

TEST_F(OpenPanel, ClosingTheWindowDeclines)
{
    const auto opened = open(request());
    panel->windowHandle()->close();
    ASSERT_TRUE(test::spinUntil([&] { return opened.isFinished(); }));
    EXPECT_EQ(opened.wait(), std::nullopt);
}

TEST_F(OpenPanel, OnlyTheLastComponentOfALinkedPathIsResolved)
{
    ASSERT_TRUE(QFile::link(home.path(QStringLiteral("work")), home.path(QStringLiteral("place"))));
    ASSERT_TRUE(QFile::link(file, home.path(QStringLiteral("work/link"))));
    const auto direct = open(request());
    type(QStringLiteral("link"));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(direct), file);

    const auto throughFolder = open(request());
    type(home.path(QStringLiteral("place/letter.txt")));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(throughFolder), home.path(QStringLiteral("place/letter.txt")));
}

TEST_F(OpenPanel, AFifoIsNeitherAFileNorAFolder)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(home.path(QStringLiteral("work/pipe"))).constData(), 0600), 0);
    const auto opened = open(request());
    type(QStringLiteral("pipe"));
    key(Qt::Key_Return);
    EXPECT_EQ(errorOf(opened), FileError::Kind::NotAFileOrFolder);
}

TEST_F(OpenPanel, TheMessageAndThePromptAreReadable)
{
    const auto opened = open(request());
    QStringList names;
    const std::function<void(QAccessibleInterface *)> collect = [&](QAccessibleInterface *node) {
        if (!node->state().invisible) {
            names.append(node->text(QAccessible::Name));
        }
        for (int i = 0; i < node->childCount(); ++i) {
            collect(node->child(i));
        }
    };
    collect(QAccessible::queryAccessibleInterface(panel));
    EXPECT_EQ(names.count(QStringLiteral("Choose Item")), 1) << qUtf8Printable(names.join(QLatin1Char('|')));
    EXPECT_GE(names.count(QStringLiteral("Please choose an item")), 1);
}

TEST_F(OpenPanel, WithoutAMessageTheTitleSaysWhatToChoose)
{
    OpenPanelRequest bare;
    bare.canChooseDirectories = true;
    bare.directory = home.path();
    const auto opened = open(bare);
    EXPECT_EQ(panel->windowTitle(), QStringLiteral("Choose a File or Folder"));
    EXPECT_EQ(confirmButton()->text().remove(QLatin1Char('&')), QStringLiteral("Open"));
}

TEST_F(OpenPanel, AProgramCanEndWhileAPanelIsOpen)
{
    QProcess program;
    program.start(QStringLiteral(PANEL_ENDER), {home.path()});
    ASSERT_TRUE(test::spinUntil([&] { return program.state() == QProcess::NotRunning; }));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(program.readAllStandardOutput(), "open\n");
    EXPECT_EQ(program.readAllStandardError(), QByteArray());
}

struct Name
{
    const char *test;
    QString name;
};

/// Names that a file dialog could mistake for something else.
class OpenPanelName : public OpenPanel, public ::testing::WithParamInterface<Name>
{
};

INSTANTIATE_TEST_SUITE_P(
    Unusual, OpenPanelName,
    ::testing::Values(Name{"Glob", QStringLiteral("a:b*c.txt")}, Name{"Brackets", QStringLiteral("a [1].txt")},
                      Name{"Quote", QStringLiteral("quo\"te")}, Name{"Quoted", QStringLiteral("\"quoted\"")},
                      Name{"TwoQuoted", QStringLiteral("\"a\" \"b\"")}, Name{"Apostrophe", QStringLiteral("it's")},
                      Name{"Variable", QStringLiteral("$HOME")}, Name{"Tilde", QStringLiteral("~x")},
                      Name{"OnlyTilde", QStringLiteral("~")}, Name{"Filters", QStringLiteral("a;;b (*.txt)")},
                      Name{"LeadingSpaces", QStringLiteral("  led")}, Name{"TrailingSpace", QStringLiteral("end ")},
                      Name{"Backslash", QStringLiteral("a\\b")}, Name{"Colon", QStringLiteral(":x")},
                      Name{"Scheme", QStringLiteral("file:x")}, Name{"Percent", QStringLiteral("a%20b#c?d")},
                      Name{"Markup", QStringLiteral("<b>&amp;")}, Name{"Newline", QStringLiteral("two\nlines")},
                      Name{"Tab", QStringLiteral("a\tb")}, Name{"Dots", QStringLiteral("...")},
                      Name{"Umlaut", QStringLiteral("Übung é.txt")}, Name{"Emoji", QStringLiteral("🔒 secret")},
                      Name{"Longest", QString(255, QLatin1Char('n'))}),
    [](const auto &named) { return named.param.test; });

TEST_P(OpenPanelName, AClickedItemIsChosenExactly)
{
    const QString asked = home.write(QStringLiteral("work/") + GetParam().name);
    const auto opened = open(request());
    key(Qt::Key_H, Qt::ControlModifier); // for the names that begin with a dot
    click(GetParam().name);
    clickConfirm();
    EXPECT_EQ(chosen(opened), asked);
}

TEST_P(OpenPanelName, ATypedNameIsUsedUnchanged)
{
    const QString &typed = GetParam().name;
    const bool canBeTyped =
        std::all_of(typed.begin(), typed.end(), [](QChar c) { return c >= QLatin1Char(' ') && c <= QLatin1Char('~'); });
    const QString asked = home.write(QStringLiteral("work/") + typed);
    const auto opened = open(request());
    if (canBeTyped) {
        type(typed);
    } else {
        QApplication::clipboard()->setText(typed);
        key(Qt::Key_V, Qt::ControlModifier);
    }
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), asked);
}

} // namespace
} // namespace quillhaven
