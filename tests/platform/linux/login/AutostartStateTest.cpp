// SPDX-License-Identifier: GPL-3.0-or-later

// What counts as a registration that the desktop will follow.

#include "AutostartFixture.h"

#include <sys/stat.h>
#include <unistd.h>

using namespace quillhaven;
using namespace quillhaven::test;

using AutostartStates = AutostartTest;

TEST_F(AutostartStates, NoEntryIsMissing)
{
    EXPECT_EQ(kind(), Kind::Missing);
}

TEST_F(AutostartStates, EntryThatStartsTheProgramIsEnabled)
{
    const QString path = writeEntry(ours());
    const AutostartState state = autostartState(folders);
    EXPECT_EQ(state.kind, Kind::Enabled);
    EXPECT_EQ(state.path, path);
    EXPECT_EQ(state.sentence, QStringLiteral("Quillhaven starts when you log in, through \"%1\".").arg(path));
}

TEST_F(AutostartStates, LinkToTheProgramIsTheProgram)
{
    ASSERT_TRUE(QFile::link(folders.executable, home.path(QStringLiteral("bin/other-name"))));
    static_cast<void>(
        writeEntry("Type=Application\nExec=" + home.path(QStringLiteral("bin/other-name")).toUtf8() + "\n"));
    EXPECT_EQ(kind(), Kind::Enabled);
}

TEST_F(AutostartStates, NameThatIsFoundInPathIsTheProgram)
{
    const QByteArray before = qgetenv("PATH");
    qputenv("PATH", home.path(QStringLiteral("bin")).toUtf8());
    static_cast<void>(writeEntry("Type=Application\nExec=quillhaven %U\n"));
    EXPECT_EQ(kind(), Kind::Enabled);
    qputenv("PATH", before);
}

TEST_F(AutostartStates, EntryOfAnotherProgramIsForeign)
{
    const QString other = makeProgram(QStringLiteral("bin/another"));
    const QString path = writeEntry("Type=Application\nExec=" + other.toUtf8() + "\n");
    const AutostartState state = autostartState(folders);
    EXPECT_EQ(state.kind, Kind::Foreign);
    EXPECT_EQ(state.sentence,
              QStringLiteral("\"%1\" starts another program, so Quillhaven does not start when you log in.").arg(path));
}

TEST_F(AutostartStates, EntryWithACommandThatCannotBeReadIsForeign)
{
    static_cast<void>(writeEntry("Type=Application\nExec=\"never closed\n"));
    EXPECT_EQ(kind(), Kind::Foreign);
}

TEST_F(AutostartStates, HiddenEntryIsSwitchedOff)
{
    static_cast<void>(writeEntry(ours() + "Hidden=true\n"));
    EXPECT_EQ(kind(), Kind::SwitchedOff);
}

TEST_F(AutostartStates, SwitchOfADesktopsSettingsProgramCounts)
{
    for (const char *key : {"X-GNOME-Autostart-enabled", "X-MATE-Autostart-enabled"}) {
        static_cast<void>(writeEntry(ours() + key + "=false\n"));
        EXPECT_EQ(kind(), Kind::SwitchedOff) << key;
        static_cast<void>(writeEntry(ours() + key + "=true\n"));
        EXPECT_EQ(kind(), Kind::Enabled) << key;
    }
}

TEST_F(AutostartStates, EntryOnlyForOtherDesktopsIsNotEnabled)
{
    static_cast<void>(writeEntry(ours() + "OnlyShowIn=GNOME;KDE;\n"));
    EXPECT_EQ(kind(), Kind::ForOtherDesktop);
    folders.desktops = {QStringLiteral("ubuntu"), QStringLiteral("GNOME")};
    EXPECT_EQ(kind(), Kind::Enabled);
    folders.desktops = {};
    EXPECT_EQ(kind(), Kind::ForOtherDesktop);
}

TEST_F(AutostartStates, EntryNotForThisDesktopIsNotEnabled)
{
    static_cast<void>(writeEntry(ours() + "NotShowIn=XFCE;\n"));
    EXPECT_EQ(kind(), Kind::ForOtherDesktop);
    folders.desktops = {QStringLiteral("KDE")};
    EXPECT_EQ(kind(), Kind::Enabled);
}

TEST_F(AutostartStates, EntryWhoseProgramIsGoneCannotStart)
{
    static_cast<void>(writeEntry(ours()));
    ASSERT_TRUE(QFile::remove(folders.executable));
    EXPECT_EQ(kind(), Kind::CannotStart);
}

TEST_F(AutostartStates, EntryWhoseTryExecIsMissingCannotStart)
{
    static_cast<void>(writeEntry(ours() + "TryExec=/nowhere/quillhaven\n"));
    EXPECT_EQ(kind(), Kind::CannotStart);
    static_cast<void>(writeEntry(ours() + "TryExec=" + folders.executable.toUtf8() + "\n"));
    EXPECT_EQ(kind(), Kind::Enabled);
}

TEST_F(AutostartStates, EntryOfTheSystemCounts)
{
    const QString path = writeSystemEntry(ours());
    EXPECT_EQ(autostartState(folders).path, path);
    EXPECT_EQ(kind(), Kind::Enabled);
}

TEST_F(AutostartStates, UsersEntryHidesTheSystems)
{
    static_cast<void>(writeSystemEntry(ours()));
    static_cast<void>(writeEntry("Type=Application\nName=Q\nHidden=true\n"));
    EXPECT_EQ(kind(), Kind::SwitchedOff);
}

TEST_F(AutostartStates, FirstFolderOfTheSystemCounts)
{
    folders.system = {home.path(QStringLiteral("first/autostart")), home.path(QStringLiteral("xdg/autostart"))};
    static_cast<void>(writeSystemEntry(ours()));
    EXPECT_EQ(kind(), Kind::Enabled);
    home.write(QStringLiteral("first/autostart/com.tarnwick.quillhaven.desktop"), "[Desktop Entry]\nHidden=true\n");
    EXPECT_EQ(kind(), Kind::SwitchedOff);
}

TEST_F(AutostartStates, FileThatIsNoDesktopEntryIsUnreadable)
{
    home.write(QStringLiteral(".config/autostart/com.tarnwick.quillhaven.desktop"), "\x01\x02 nothing of that kind");
    const AutostartState state = autostartState(folders);
    EXPECT_EQ(state.kind, Kind::Unreadable);
    EXPECT_EQ(
        state.sentence,
        QStringLiteral("The file \"%1\" is not a desktop entry, so it was left as it is.").arg(folders.userEntry()));
}

TEST_F(AutostartStates, PipeOfThatNameDoesNotBlock)
{
    ASSERT_TRUE(QDir().mkpath(folders.user));
    ASSERT_EQ(mkfifo(folders.userEntry().toUtf8().constData(), 0600), 0);
    EXPECT_EQ(kind(), Kind::Unreadable);
}

TEST_F(AutostartStates, DanglingLinkIsMissing)
{
    ASSERT_TRUE(QDir().mkpath(folders.user));
    ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere/entry"), folders.userEntry()));
    EXPECT_EQ(kind(), Kind::Missing);
}

TEST_F(AutostartStates, FoldersAreThoseOfTheEnvironment)
{
    const QByteArray config = qgetenv("XDG_CONFIG_HOME");
    const QByteArray dirs = qgetenv("XDG_CONFIG_DIRS");
    const QByteArray desktop = qgetenv("XDG_CURRENT_DESKTOP");
    qputenv("XDG_CONFIG_HOME", "/home/me/cfg");
    qputenv("XDG_CONFIG_DIRS", "/etc/one:/etc/two");
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    const AutostartFolders found = autostartFolders(QStringLiteral("org.example.app"), QStringLiteral("/bin/app"));
    EXPECT_EQ(found.userEntry(), QStringLiteral("/home/me/cfg/autostart/org.example.app.desktop"));
    EXPECT_EQ(found.system, (QStringList{QStringLiteral("/etc/one/autostart"), QStringLiteral("/etc/two/autostart")}));
    EXPECT_EQ(found.desktops, (QStringList{QStringLiteral("ubuntu"), QStringLiteral("GNOME")}));
    qputenv("XDG_CONFIG_HOME", config);
    qputenv("XDG_CONFIG_DIRS", dirs);
    qputenv("XDG_CURRENT_DESKTOP", desktop);
}
