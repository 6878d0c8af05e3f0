// SPDX-License-Identifier: GPL-3.0-or-later

#include "PanelUser.h"
#include "platform/widgets/QtFilePanels.h"
#include "support/TemporaryHome.h"

#include <QFileDialog>
#include <QStandardPaths>

namespace quillhaven {
namespace {

using test::PanelUser;
using test::spinUntil;

class DesktopDialog : public ::testing::Test
{
protected:
    using Opened = test::RunningTask<std::optional<QString>>;

    ~DesktopDialog() override
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            widget->close();
        }
        test::spinOnce();
    }

    [[nodiscard]] OpenPanelRequest folderRequest() const
    {
        return {.canChooseFiles = false,
                .canChooseDirectories = true,
                .canCreateDirectories = true,
                .title = QStringLiteral("Choose Location"),
                .message = QStringLiteral("Select a folder"),
                .prompt = QStringLiteral("Recover"),
                .directory = home.path(QStringLiteral("work"))};
    }
    [[nodiscard]] Opened open(const OpenPanelRequest &request)
    {
        Opened opened(panels.open(request));
        dialog = PanelUser::onScreen<QFileDialog>();
        EXPECT_TRUE(dialog && spinUntil([this] { return dialog->isActiveWindow() && QApplication::focusWidget(); }));
        return opened;
    }
    void type(const QString &text) const
    {
        QTest::keyClicks(QApplication::focusWidget(), text);
        QTest::keyClick(dialog->windowHandle(), Qt::Key_Return);
    }
    [[nodiscard]] static std::optional<QString> answerOf(const Opened &opened)
    {
        EXPECT_TRUE(spinUntil([&] { return opened.isFinished(); }));
        return opened.isFinished() ? opened.wait() : QStringLiteral("(still open)");
    }

    const test::TemporaryHome home;
    const QString inner = home.write(QStringLiteral("work/papers/inner.txt"));
    const QString folder = home.path(QStringLiteral("work/papers"));
    QtFilePanels panels;
    QFileDialog *dialog = nullptr;
};

TEST_F(DesktopDialog, ARequestForAFolderIsAnsweredWithAFolder)
{
    const auto opened = open(folderRequest());
    EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
    EXPECT_TRUE(dialog->testOption(QFileDialog::ShowDirsOnly));
    EXPECT_FALSE(dialog->testOption(QFileDialog::ReadOnly)) << "folders can be created";
    EXPECT_FALSE(dialog->testOption(QFileDialog::DontUseNativeDialog));
    EXPECT_EQ(dialog->labelText(QFileDialog::Accept), QStringLiteral("Recover"));
    type(folder);
    EXPECT_EQ(answerOf(opened), folder);
}

TEST_F(DesktopDialog, TheTitleContainsTheMessage)
{
    const auto opened = open(folderRequest());
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Choose Location – Select a folder"));
}

TEST_F(DesktopDialog, ARequestForFilesIsAnsweredWithAFile)
{
    const auto opened = open({.message = QStringLiteral("Select a file"), .directory = folder});
    EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFile);
    EXPECT_TRUE(dialog->testOption(QFileDialog::ReadOnly));
    type(QStringLiteral("inner.txt"));
    EXPECT_EQ(answerOf(opened), inner);
}

TEST_F(DesktopDialog, EscapeDeclines)
{
    const auto opened = open(folderRequest());
    QTest::keyClick(dialog->windowHandle(), Qt::Key_Escape);
    EXPECT_EQ(answerOf(opened), std::nullopt);
}

TEST_F(DesktopDialog, TheFoldersThatWereLookedAtAreNotWrittenToDisk)
{
    const auto opened = open(folderRequest());
    type(folder);
    EXPECT_EQ(answerOf(opened), folder);
    EXPECT_TRUE(spinUntil([] { return !PanelUser::onScreen<QFileDialog>(); }));
    test::spinOnce();
    const QString settings = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    EXPECT_FALSE(test::TemporaryHome::exists(settings + QStringLiteral("/QtProject.conf")));
}

} // namespace
} // namespace quillhaven
