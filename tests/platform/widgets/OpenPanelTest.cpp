// SPDX-License-Identifier: GPL-3.0-or-later

#include "PanelFixture.h"
#include "platform/FileError.h"

#include <QAccessible>
#include <QClipboard>
#include <QDir>
#include <QLabel>
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
    const auto opened = open(request(true, false));
    type(QStringLiteral("letter.txt"));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), file);
}

TEST_F(OpenPanel, AClickedFileIsChosenWithTheButton)
{
    const auto opened = open(request(true, true));
    EXPECT_FALSE(confirmButton()->isEnabled());
    click(QStringLiteral("letter.txt"));
    EXPECT_TRUE(confirmButton()->isEnabled());
    EXPECT_EQ(name()->text(), QStringLiteral("letter.txt"));
    clickConfirm();
    EXPECT_EQ(chosen(opened), file);
}

TEST_F(OpenPanel, ADoubleClickedFileIsChosen)
{
    const auto opened = open(request(true, true));
    doubleClick(QStringLiteral("letter.txt"));
    EXPECT_EQ(chosen(opened), file);
}

TEST_F(OpenPanel, ATypedFolderIsChosenIfFoldersAreAllowed)
{
    for (const QString &typed : {folder, folder + QLatin1Char('/'), QStringLiteral("papers")}) {
        const auto opened = open(request(true, true));
        type(typed);
        key(Qt::Key_Return);
        EXPECT_EQ(chosen(opened), folder) << qUtf8Printable(typed);
    }
}

TEST_F(OpenPanel, AClickedFolderIsChosenWithTheButtonIfFoldersAreAllowed)
{
    const auto opened = open(request(true, true));
    click(QStringLiteral("papers"));
    EXPECT_EQ(name()->text(), QStringLiteral("papers"));
    clickConfirm();
    EXPECT_EQ(chosen(opened), folder);
}

TEST_F(OpenPanel, AClickedFolderIsChosenWithReturnIfFoldersAreAllowed)
{
    const auto opened = open(request(true, true));
    click(QStringLiteral("papers"));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), folder);
}

TEST_F(OpenPanel, ADoubleClickOpensAFolderAndItsFileCanBeChosen)
{
    for (const bool files : {true, false}) {
        const auto opened = open(request(files, true));
        doubleClick(QStringLiteral("papers"));
        EXPECT_FALSE(opened.isFinished());
        EXPECT_EQ(panel->directory().absolutePath(), folder);
        EXPECT_EQ(name()->text(), QString());
        EXPECT_FALSE(confirmButton()->isEnabled());
        if (files) {
            click(QStringLiteral("inner.txt"));
            key(Qt::Key_Return);
            EXPECT_EQ(chosen(opened), inner);
        } else {
            panel->close();
        }
    }
}

TEST_F(OpenPanel, AltDownOpensTheSelectedFolder)
{
    const auto opened = open(request(true, true));
    click(QStringLiteral("papers"));
    key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_FALSE(opened.isFinished());
    EXPECT_EQ(panel->directory().absolutePath(), folder);
}

TEST_F(OpenPanel, AFolderPanelReturnsAFolderAndNotAFile)
{
    const auto opened = open(request(false, true));
    click(QStringLiteral("letter.txt"));
    key(Qt::Key_Return);
    clickConfirm();
    EXPECT_FALSE(opened.isFinished());
    click(QStringLiteral("papers"));
    clickConfirm();
    EXPECT_EQ(chosen(opened), folder);
}

TEST_F(OpenPanel, AFolderPanelRejectsATypedFile)
{
    const auto opened = open(request(false, true));
    type(QStringLiteral("letter.txt"));
    key(Qt::Key_Return);
    test::spinOnce();
    EXPECT_FALSE(opened.isFinished());
    EXPECT_TRUE(panel->isVisible());
}

TEST_F(OpenPanel, AFilePanelOpensAFolderInsteadOfChoosingIt)
{
    const auto opened = open(request(true, false));
    type(QStringLiteral("papers"));
    key(Qt::Key_Return);
    EXPECT_FALSE(opened.isFinished());
    EXPECT_EQ(panel->directory().absolutePath(), folder);
    type(QStringLiteral("inner.txt"));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), inner);
}

TEST_F(OpenPanel, AMissingNameIsReportedAndThePanelStaysOpen)
{
    const auto opened = open(request(true, true));
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

TEST_F(OpenPanel, OneReturnConfirmsThePreselectedItem)
{
    const auto opened = open(request(true, false, QStringLiteral("letter.txt")));
    EXPECT_EQ(confirmButton()->text().remove(QLatin1Char('&')), QStringLiteral("Grant Access"));
    EXPECT_TRUE(confirmButton()->isEnabled());
    EXPECT_EQ(QApplication::focusWidget(), name());
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), file);
}

TEST_F(OpenPanel, OneReturnConfirmsThePreselectedFolder)
{
    const auto opened = open(request(false, true, QStringLiteral("papers")));
    EXPECT_EQ(panel->directory().absolutePath(), home.path(QStringLiteral("work")));
    EXPECT_TRUE(confirmButton()->isEnabled());
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), folder);
}

TEST_F(OpenPanel, ThePreselectedItemIsTheSelectedRow)
{
    const auto opened = open(request(true, false, QStringLiteral("letter.txt")));
    const QModelIndex asked = row(QStringLiteral("letter.txt"));
    EXPECT_TRUE(test::spinUntil([&] { return view()->selectionModel()->isRowSelected(asked.row(), asked.parent()); }));
    clickConfirm();
    EXPECT_EQ(chosen(opened), file);
}

TEST_F(OpenPanel, AnItemOtherThanThePreselectedOneCanBeChosen)
{
    const QString other = home.write(QStringLiteral("work/other.txt"));
    const auto clicked = open(request(true, false, QStringLiteral("letter.txt")));
    click(QStringLiteral("other.txt"));
    clickConfirm();
    EXPECT_EQ(chosen(clicked), other);
    const auto typed = open(request(true, false, QStringLiteral("letter.txt")));
    type(QStringLiteral("other.txt"));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(typed), other);
}

TEST_F(OpenPanel, APreselectedHiddenItemIsListed)
{
    const QString hidden = home.write(QStringLiteral("work/.hidden"));
    const auto opened = open(request(true, false, QStringLiteral(".hidden")));
    EXPECT_TRUE(row(QStringLiteral(".hidden")).isValid());
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), hidden);
}

TEST_F(OpenPanel, HiddenItemsAreOtherwiseNotListedButCanBeTyped)
{
    const QString hidden = home.write(QStringLiteral("work/.hidden"));
    const auto opened = open(request(true, true));
    const QModelIndex shown = row(QStringLiteral("letter.txt"));
    for (int i = 0; i < shown.model()->rowCount(shown.parent()); ++i) {
        EXPECT_NE(shown.siblingAtRow(i).data().toString(), QStringLiteral(".hidden"));
    }
    type(QStringLiteral(".hidden"));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), hidden);
}

TEST_F(OpenPanel, AMissingPreselectedItemIsNotConfirmed)
{
    const auto opened = open(request(true, false, QStringLiteral("gone.txt")));
    key(Qt::Key_Return);
    test::spinOnce();
    EXPECT_FALSE(opened.isFinished());
}

TEST_F(OpenPanel, EscapeDeclines)
{
    const auto opened = open(request(true, false, QStringLiteral("letter.txt")));
    key(Qt::Key_Escape);
    ASSERT_TRUE(test::spinUntil([&] { return opened.isFinished(); }));
    EXPECT_EQ(opened.wait(), std::nullopt);
}

TEST_F(OpenPanel, ClosingTheWindowDeclines)
{
    const auto opened = open(request(true, true, QStringLiteral("letter.txt")));
    panel->windowHandle()->close();
    ASSERT_TRUE(test::spinUntil([&] { return opened.isFinished(); }));
    EXPECT_EQ(opened.wait(), std::nullopt);
}

TEST_F(OpenPanel, OnlyTheLastComponentOfALinkedPathIsResolved)
{
    ASSERT_TRUE(QFile::link(home.path(QStringLiteral("work")), home.path(QStringLiteral("place"))));
    ASSERT_TRUE(QFile::link(file, home.path(QStringLiteral("work/link"))));
    const auto direct = open(request(true, true));
    type(QStringLiteral("link"));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(direct), file);

    const auto throughFolder = open(request(true, true));
    type(home.path(QStringLiteral("place/letter.txt")));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(throughFolder), home.path(QStringLiteral("place/letter.txt")));
}

TEST_F(OpenPanel, AFifoIsNeitherAFileNorAFolder)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(home.path(QStringLiteral("work/pipe"))).constData(), 0600), 0);
    const auto opened = open(request(true, true));
    type(QStringLiteral("pipe"));
    key(Qt::Key_Return);
    EXPECT_EQ(errorOf(opened), FileError::Kind::NotAFileOrFolder);
}

TEST_F(OpenPanel, ANameThatIsNotTextIsInvalid)
{
    const QByteArray bytes = QFile::encodeName(home.path(QStringLiteral("work"))) + "/bad\xff.txt";
    const int made = ::mkdir(bytes.constData(), 0700);
    ASSERT_EQ(made, 0);
    const auto opened = open(request(false, true, QString::fromUtf8("bad\xff.txt")));
    key(Qt::Key_Return);
    EXPECT_EQ(errorOf(opened), FileError::Kind::InvalidName);
    ::rmdir(bytes.constData());
}

TEST_F(OpenPanel, TheMessageAndThePromptAreReadable)
{
    const auto opened = open(request(true, false, QStringLiteral("letter.txt")));
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
    EXPECT_EQ(names.count(QStringLiteral("Grant Access")), 1) << qUtf8Printable(names.join(QLatin1Char('|')));
    EXPECT_GE(names.count(QStringLiteral("Please grant access to the selected item")), 1);
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

TEST_P(OpenPanelName, APreselectedItemIsConfirmedExactly)
{
    const QString asked = home.write(QStringLiteral("work/") + GetParam().name);
    ASSERT_TRUE(test::TemporaryHome::exists(asked));
    const auto opened = open(request(true, false, GetParam().name));
    ASSERT_TRUE(row(GetParam().name).isValid());
    test::spinOnce();
    ASSERT_TRUE(confirmButton()->isEnabled());
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), asked);
}

TEST_P(OpenPanelName, APreselectedFolderIsConfirmedExactly)
{
    home.write(QStringLiteral("work/") + GetParam().name + QStringLiteral("/file"));
    const auto opened = open(request(false, true, GetParam().name));
    key(Qt::Key_Return);
    EXPECT_EQ(chosen(opened), home.path(QStringLiteral("work")) + QLatin1Char('/') + GetParam().name);
}

TEST_P(OpenPanelName, AClickedItemIsChosenExactly)
{
    const QString asked = home.write(QStringLiteral("work/") + GetParam().name);
    OpenPanelRequest any = request(true, true);
    // Hidden files are only listed if the preselected item is hidden.
    any.preselected = QStringLiteral(".other");
    const auto opened = open(any);
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
    const auto opened = open(request(true, true));
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
