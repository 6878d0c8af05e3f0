// SPDX-License-Identifier: GPL-3.0-or-later

#include "PanelUser.h"
#include "platform/FileError.h"
#include "platform/widgets/AccessPanelDialog.h"
#include "platform/widgets/QtFilePanels.h"
#include "support/TemporaryHome.h"

#include <QAccessible>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>

#include <sys/stat.h>

namespace quillhaven {
namespace {

using test::PanelUser;
using test::spinUntil;

class AccessPanel : public ::testing::Test
{
protected:
    using Confirmed = test::RunningTask<std::optional<QString>>;

    ~AccessPanel() override
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            widget->close();
        }
        test::spinOnce();
    }

    [[nodiscard]] Confirmed confirm(const QString &path, bool isDirectory = false)
    {
        Confirmed confirmed(panels.confirmAccess({.path = path,
                                                  .isDirectory = isDirectory,
                                                  .message = QStringLiteral("Please grant access"),
                                                  .prompt = QStringLiteral("Grant Access")}));
        panel = PanelUser::onScreen<AccessPanelDialog>();
        EXPECT_TRUE(panel && spinUntil([this] { return panel->isActiveWindow() && QApplication::focusWidget(); }));
        return confirmed;
    }
    void key(Qt::Key key) const { QTest::keyClick(panel->windowHandle(), key); }
    [[nodiscard]] QPushButton *button(const QString &text) const
    {
        const QList<QPushButton *> buttons = panel->findChildren<QPushButton *>();
        const auto isIt = [&](const QPushButton *each) { return each->text().remove(QLatin1Char('&')) == text; };
        const auto found = std::ranges::find_if(buttons, isIt);
        return found == buttons.end() ? nullptr : *found;
    }
    [[nodiscard]] bool says(const QString &text) const
    {
        return std::ranges::any_of(panel->findChildren<QLabel *>(),
                                   [&](const QLabel *label) { return label->isVisible() && label->text() == text; });
    }
    [[nodiscard]] static QString answerOf(const Confirmed &confirmed)
    {
        EXPECT_TRUE(spinUntil([&] { return confirmed.isFinished(); }));
        return confirmed.isFinished() ? confirmed.wait().value_or(QStringLiteral("(declined)")) : QString();
    }
    /// Waits for the dialog that "Choose…" opens.
    [[nodiscard]] QFileDialog *pressChoose() const
    {
        QTest::mouseClick(button(QStringLiteral("Choose…")), Qt::LeftButton);
        QFileDialog *dialog = nullptr;
        EXPECT_TRUE(spinUntil([&] {
            dialog = panel->findChild<QFileDialog *>();
            return dialog && dialog->isActiveWindow() && QApplication::focusWidget();
        }));
        return dialog;
    }

    const test::TemporaryHome home;
    const QString file = home.write(QStringLiteral("work/letter.txt"));
    const QString other = home.write(QStringLiteral("work/other.txt"));
    QtFilePanels panels;
    AccessPanelDialog *panel = nullptr;
};

TEST_F(AccessPanel, OneReturnConfirmsTheAskedPlace)
{
    const auto confirmed = confirm(file);
    EXPECT_EQ(QApplication::focusWidget(), button(QStringLiteral("Grant Access")));
    key(Qt::Key_Return);
    EXPECT_EQ(answerOf(confirmed), file);
}

TEST_F(AccessPanel, EscapeAndClosingTheWindowDecline)
{
    const auto escaped = confirm(file);
    key(Qt::Key_Escape);
    EXPECT_EQ(answerOf(escaped), QStringLiteral("(declined)"));
    const auto closed = confirm(file);
    panel->windowHandle()->close();
    EXPECT_EQ(answerOf(closed), QStringLiteral("(declined)"));
}

TEST_F(AccessPanel, EveryControlIsReachedWithTheTabKey)
{
    const auto confirmed = confirm(file);
    QStringList reached;
    for (int presses = 0; presses < 3; ++presses) {
        key(Qt::Key_Tab);
        reached.append(qobject_cast<QPushButton *>(QApplication::focusWidget())->text().remove(QLatin1Char('&')));
    }
    reached.sort();
    EXPECT_EQ(reached,
              (QStringList{QStringLiteral("Cancel"), QStringLiteral("Choose…"), QStringLiteral("Grant Access")}));
}

TEST_F(AccessPanel, APlaceWithNothingIsConfirmedAndThePanelSaysSo)
{
    const QString gone = home.path(QStringLiteral("work/gone.txt"));
    const auto confirmed = confirm(gone);
    EXPECT_TRUE(says(QStringLiteral("There is nothing at this place at the moment.")));
    key(Qt::Key_Return);
    EXPECT_EQ(answerOf(confirmed), gone);
}

TEST_F(AccessPanel, AMissingFolderIsExplained)
{
    const QString text = QStringLiteral("The folder of this item does not exist at the moment. Its drive may not be "
                                        "connected, or the folder may be protected itself.");
    const auto onStick = confirm(home.path(QStringLiteral("stick/papers/a.txt")));
    EXPECT_TRUE(says(text));
    key(Qt::Key_Escape);
    EXPECT_EQ(answerOf(onStick), QStringLiteral("(declined)"));
    const auto inProtectedFolder = confirm(file + QStringLiteral("/a.txt"));
    EXPECT_TRUE(says(text));
    QTest::mouseClick(button(QStringLiteral("Choose…")), Qt::LeftButton);
    EXPECT_TRUE(spinUntil([this] { return panel->findChild<QFileDialog *>() != nullptr; }));
}

TEST_F(AccessPanel, AnotherItemIsChosenWithTheDialog)
{
    const auto confirmed = confirm(file);
    QFileDialog *dialog = pressChoose();
    EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFile);
    EXPECT_EQ(dialog->directory().absolutePath(), home.path(QStringLiteral("work")));
    EXPECT_EQ(dialog->labelText(QFileDialog::Accept), QStringLiteral("Grant Access"));
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("other.txt"));
    QTest::keyClick(dialog->windowHandle(), Qt::Key_Return);
    EXPECT_EQ(answerOf(confirmed), other);
}

TEST_F(AccessPanel, InsteadOfAFolderAFolderIsChosen)
{
    const auto confirmed = confirm(home.path(QStringLiteral("work")), true);
    EXPECT_EQ(pressChoose()->fileMode(), QFileDialog::Directory);
}

TEST_F(AccessPanel, LeavingTheDialogReturnsToTheQuestion)
{
    const auto confirmed = confirm(file);
    QFileDialog *dialog = pressChoose();
    QTest::keyClick(dialog->windowHandle(), Qt::Key_Escape);
    ASSERT_TRUE(spinUntil([this] { return panel->isActiveWindow(); }));
    EXPECT_FALSE(confirmed.isFinished());
    button(QStringLiteral("Grant Access"))->setFocus();
    key(Qt::Key_Return);
    EXPECT_EQ(answerOf(confirmed), file);
}

TEST_F(AccessPanel, WhatIsChosenInsteadIsRefusedIfItIsNeitherAFileNorAFolder)
{
    const QString pipe = home.path(QStringLiteral("work/pipe"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const auto confirmed = confirm(file);
    Q_EMIT pressChoose()->filesSelected({pipe});
    ASSERT_TRUE(spinUntil([&] { return confirmed.isFinished(); }));
    EXPECT_THROW(confirmed.wait(), FileError);
}

TEST_F(AccessPanel, AnyPlaceIsConfirmedByItsExactPath)
{
    for (const QString &name :
         {QStringLiteral("a:b*c.txt"), QStringLiteral("quo\"te"), QStringLiteral("~"), QStringLiteral("  led "),
          QStringLiteral("<b>&amp;"), QStringLiteral("two\nlines"), QString(QChar(0x202E)) + QStringLiteral("gnp.exe"),
          QStringLiteral("Übung é 🔒"), QString(255, QLatin1Char('n'))}) {
        const QString path = home.write(QStringLiteral("work/") + name);
        const auto confirmed = confirm(path);
        EXPECT_LE(panel->width(), 1000) << "a long name is broken into lines";
        key(Qt::Key_Return);
        EXPECT_EQ(answerOf(confirmed), path);
    }
}

TEST_F(AccessPanel, ANameThatDeceivesIsShownAndReadAsItIs)
{
    const QString path = home.write(QStringLiteral("work/") + QChar(0x202E) + QStringLiteral("gnp.\nexe"));
    const auto confirmed = confirm(path);
    const QString shown = home.path(QStringLiteral("work/\uFFFDgnp.↵exe"));
    EXPECT_EQ(button(QStringLiteral("Grant Access"))->accessibleDescription(), shown);
    EXPECT_TRUE(std::ranges::any_of(panel->findChildren<QLabel *>(), [&](const QLabel *label) {
        return label->text().remove(QChar(0x200B)) == shown && label->accessibleName() == shown;
    }));
}

TEST_F(AccessPanel, TheMessageThePathAndThePromptAreReadable)
{
    const auto confirmed = confirm(file);
    QStringList names;
    const std::function<void(QAccessibleInterface *)> collect = [&](QAccessibleInterface *node) {
        names.append(node->text(QAccessible::Name));
        for (int i = 0; i < node->childCount(); ++i) {
            collect(node->child(i));
        }
    };
    QAccessibleInterface *dialog = QAccessible::queryAccessibleInterface(panel);
    collect(dialog);
    EXPECT_EQ(dialog->role(), QAccessible::Dialog);
    EXPECT_EQ(dialog->text(QAccessible::Description), QStringLiteral("Please grant access"));
    for (const QString &text : {QStringLiteral("Please grant access"), file, QStringLiteral("Choose…"),
                                QStringLiteral("Cancel"), QStringLiteral("Grant Access")}) {
        EXPECT_TRUE(names.contains(text)) << qUtf8Printable(text);
    }
}

TEST_F(AccessPanel, TheListOfSeveralPlacesMarksThoseWithNothing)
{
    const QString gone = home.path(QStringLiteral("work/gone.txt"));
    const test::RunningTask<std::optional<QStringList>> granted(
        panels.grantAccess({.paths = {file, gone}, .message = QStringLiteral("M"), .prompt = QStringLiteral("Grant")}));
    panel = PanelUser::onScreen<AccessPanelDialog>();
    ASSERT_TRUE(spinUntil([this] { return panel->isActiveWindow() && QApplication::focusWidget(); }));
    const auto *list = panel->findChild<QListWidget *>();
    EXPECT_EQ(list->item(0)->text(), file);
    EXPECT_EQ(list->item(1)->text(), gone + QStringLiteral(" (nothing at this place)"));
    key(Qt::Key_Return);
    ASSERT_TRUE(spinUntil([&] { return granted.isFinished(); }));
    EXPECT_EQ(granted.wait(), (QStringList{file, gone}));
}

} // namespace
} // namespace quillhaven
