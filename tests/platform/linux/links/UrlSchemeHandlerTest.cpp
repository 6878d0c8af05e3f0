// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/links/UrlSchemeHandler.h"
#include "support/PrintText.h"
#include "support/RunTask.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QProcess>
#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// A home whose desktop has no handler for the scheme. GIO reads the folders of the environment once in a process, so
/// that each test has a scheme of its own.
class UrlScheme : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        shared = std::make_unique<TemporaryHome>();
        qputenv("XDG_DATA_HOME", shared->path(QStringLiteral("data")).toUtf8());
        qputenv("XDG_CONFIG_HOME", shared->path(QStringLiteral("config")).toUtf8());
        qputenv("XDG_DATA_DIRS", shared->path(QStringLiteral("system")).toUtf8());
        // Before the first use of GIO, which notices a later change of these files only after a while.
        shared->write(QStringLiteral("data/applications/other.desktop"),
                      "[Desktop Entry]\nType=Application\nName=Other\nExec=/usr/bin/true %U\n");
        shared->write(QStringLiteral("config/mimeapps.list"),
                      "[Default Applications]\nx-scheme-handler/test-anotherprogramthatopenstheschemekeepsit="
                      "other.desktop\n");
    }
    static void TearDownTestSuite() { shared.reset(); }

    [[nodiscard]] EntryFolders folders(const QString &executable = QStringLiteral("/usr/bin/true")) const
    {
        EntryFolders applications;
        applications.user = shared->path(QStringLiteral("data/applications"));
        applications.system = {shared->path(QStringLiteral("system/applications"))};
        applications.fileName = id() + QStringLiteral(".desktop");
        applications.executable = executable;
        return applications;
    }
    /// A name for the entry and the scheme of this test.
    [[nodiscard]] static QString id()
    {
        return QStringLiteral("test-") +
               QString::fromUtf8(::testing::UnitTest::GetInstance()->current_test_info()->name()).toLower();
    }
    void writeEntry(const QString &folder, const QByteArray &exec)
    {
        shared->write(folder + QStringLiteral("/applications/") + id() + QStringLiteral(".desktop"),
                      "[Desktop Entry]\nType=Application\nName=Mine\nExec=" + exec + "\nMimeType=x-scheme-handler/" +
                          id().toUtf8() + ";\n");
    }
    [[nodiscard]] static QByteArray entry()
    {
        return TemporaryHome::read(
            shared->path(QStringLiteral("data/applications/") + id() + QStringLiteral(".desktop")));
    }

    static inline std::unique_ptr<TemporaryHome> shared;
};

} // namespace

TEST_F(UrlScheme, TheUsersEntryIsWrittenAndOpensTheScheme)
{
    const QString marker = shared->path(QStringLiteral("opened"));
    shared->write(QStringLiteral("bin/a \"program\""), "#!/bin/sh\nprintf %s \"$1\" >" + marker.toUtf8() + "\n");
    const QString program = shared->path(QStringLiteral("bin/a \"program\""));
    ASSERT_TRUE(QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const WatchedSources::State state = registerUrlScheme(folders(program), id());
    EXPECT_TRUE(state.isAvailable) << state.sentence.toStdString();
    const QString url = id() + QStringLiteral("://lock?path=/a%2520b");
    QProcess gio;
    gio.start(QStringLiteral("gio"), {QStringLiteral("open"), url});
    ASSERT_TRUE(spinUntil([&gio] { return gio.state() == QProcess::NotRunning; }));
    EXPECT_EQ(gio.exitCode(), 0) << gio.readAllStandardError().constData();
    EXPECT_TRUE(spinUntil([&marker] { return QFileInfo(marker).size() > 0; }));
    EXPECT_EQ(TemporaryHome::read(marker), url.toUtf8());
}

TEST_F(UrlScheme, TheEntryIsValid)
{
    (void)registerUrlScheme(folders(), id());
    QProcess validate;
    validate.start(QStringLiteral("desktop-file-validate"), {folders().userEntry()});
    ASSERT_TRUE(spinUntil([&validate] { return validate.state() == QProcess::NotRunning; }));
    EXPECT_EQ(validate.exitCode(), 0) << validate.readAllStandardOutput().constData();
}

TEST_F(UrlScheme, AnEntryOfTheSystemCounts)
{
    writeEntry(QStringLiteral("system"), "/usr/bin/true %U");
    EXPECT_TRUE(registerUrlScheme(folders(), id()).isAvailable);
    EXPECT_FALSE(QFileInfo::exists(folders().userEntry()));
}

TEST_F(UrlScheme, AnEntryOfTheUsersThatStartsAProgramStays)
{
    writeEntry(QStringLiteral("data"), "/usr/bin/false %U");
    const QByteArray before = entry();
    EXPECT_TRUE(registerUrlScheme(folders(), id()).isAvailable);
    EXPECT_EQ(entry(), before);
}

TEST_F(UrlScheme, AnEntryThatStartsNothingAnyMoreIsReplaced)
{
    writeEntry(QStringLiteral("data"), "/nowhere/quillhaven %U");
    EXPECT_TRUE(registerUrlScheme(folders(), id()).isAvailable);
    EXPECT_TRUE(entry().contains("Exec=/usr/bin/true %U"));
}

TEST_F(UrlScheme, AnotherProgramThatOpensTheSchemeKeepsIt)
{
    const WatchedSources::State state = registerUrlScheme(folders(), id());
    EXPECT_FALSE(state.isAvailable);
    EXPECT_TRUE(state.sentence.contains(QStringLiteral("other.desktop"))) << state.sentence.toStdString();
}

TEST_F(UrlScheme, AFolderThatCannotBeWrittenIsNamed)
{
    EntryFolders unwritable = folders();
    shared->write(QStringLiteral("file"), "");
    unwritable.user = shared->path(QStringLiteral("file/applications"));
    const WatchedSources::State state = registerUrlScheme(unwritable, id());
    EXPECT_FALSE(state.isAvailable);
    EXPECT_TRUE(state.sentence.contains(QStringLiteral("applications"))) << state.sentence.toStdString();
}
