// SPDX-License-Identifier: GPL-3.0-or-later

// What is written and removed.

#include "AutostartFixture.h"

#include "platform/FileError.h"
#include "support/PrintText.h"

#include <QFileInfo>
#include <QProcess>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class AutostartEntries : public AutostartTest
{
protected:
    void registerWith(const QStringList &arguments = {}) const { registerAutostart(folders, arguments); }
    void unregister() const { unregisterAutostart(folders); }
    /// The sentence of the FileError that an operation throws.
    template <typename Operation>
    static QString sentenceOf(Operation operation)
    {
        try {
            operation();
        } catch (const FileError &error) {
            return error.errorDescription();
        }
        return {};
    }
};

bool isRoot()
{
    return geteuid() == 0;
}

} // namespace

TEST_F(AutostartEntries, RegistrationWritesAnEntryThatIsEnabled)
{
    registerWith();
    EXPECT_EQ(kind(), Kind::Enabled);
    const QByteArray program = folders.executable.toUtf8();
    EXPECT_EQ(userEntry(), "[Desktop Entry]\nType=Application\nName=Quillhaven\nIcon=com.tarnwick.quillhaven\nExec=" +
                               program + "\nTryExec=" + program + "\n");
}

TEST_F(AutostartEntries, MissingFolderIsMadePrivate)
{
    QDir(home.path(QStringLiteral(".config"))).removeRecursively();
    registerWith();
    EXPECT_EQ(kind(), Kind::Enabled);
    for (const QString &folder : {folders.user, home.path(QStringLiteral(".config"))}) {
        struct stat status{};
        ASSERT_EQ(stat(folder.toUtf8().constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0700U) << qPrintable(folder);
    }
}

TEST_F(AutostartEntries, ArgumentsFollowTheProgramAndAreReplaced)
{
    registerWith({QStringLiteral("--login-item")});
    EXPECT_TRUE(userEntry().contains("\nExec=" + folders.executable.toUtf8() + " --login-item\n"));
    EXPECT_EQ(kind(), Kind::Enabled);
    registerWith();
    EXPECT_TRUE(userEntry().contains("\nExec=" + folders.executable.toUtf8() + "\n"));
}

TEST_F(AutostartEntries, ProgramWithDifficultPathIsRegistered)
{
    folders.executable = makeProgram(QStringLiteral("my $apps/50% \"of\" it's \\ `all`/quillhaven"));
    registerWith({QStringLiteral("--login-item")});
    EXPECT_EQ(kind(), Kind::Enabled);
    // Another reader of desktop entries accepts it, too.
    QProcess check;
    check.start(QStringLiteral("desktop-file-validate"), {folders.userEntry()});
    ASSERT_TRUE(check.waitForFinished());
    EXPECT_EQ(check.exitCode(), 0) << check.readAll().constData();
}

TEST_F(AutostartEntries, RegistrationAgainLeavesTheFileAlone)
{
    registerWith();
    const QDateTime longAgo = QDateTime::fromSecsSinceEpoch(1'000'000'000);
    QFile file(folders.userEntry());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(longAgo, QFileDevice::FileModificationTime));
    file.close();
    registerWith();
    EXPECT_EQ(QFileInfo(folders.userEntry()).lastModified(), longAgo);
}

TEST_F(AutostartEntries, WhatTheUserHasAddedStays)
{
    const QByteArray additions = "Name[de]=Mein Quillhaven\n# a remark\nX-KDE-autostart-after=panel\n\n[Desktop Action "
                                 "New]\nName=New\nExec=other\n";
    static_cast<void>(writeEntry(ours() + additions));
    registerWith({QStringLiteral("--login-item")});
    EXPECT_TRUE(userEntry().contains("\nName=Q\n"));
    for (const char *line : {"Name[de]=Mein Quillhaven\n", "# a remark\n", "X-KDE-autostart-after=panel\n",
                             "[Desktop Action New]\nName=New\nExec=other\n"}) {
        EXPECT_TRUE(userEntry().contains(line)) << line;
    }
    unregister();
    EXPECT_EQ(kind(), Kind::SwitchedOff);
    for (const char *line : {"Name[de]=Mein Quillhaven\n", "# a remark\n", "X-KDE-autostart-after=panel\n"}) {
        EXPECT_TRUE(userEntry().contains(line)) << line;
    }
    registerWith();
    EXPECT_EQ(kind(), Kind::Enabled);
}

TEST_F(AutostartEntries, RegistrationEndsWhatSwitchedItOff)
{
    static_cast<void>(
        writeEntry(ours() + "Hidden=true\nX-GNOME-Autostart-enabled=false\nOnlyShowIn=KDE;\nNotShowIn=XFCE;MATE;\n"));
    registerWith();
    EXPECT_EQ(kind(), Kind::Enabled);
    EXPECT_TRUE(userEntry().contains("OnlyShowIn=KDE;XFCE;\n"));
    EXPECT_TRUE(userEntry().contains("NotShowIn=MATE;\n"));
    folders.desktops = {QStringLiteral("KDE")};
    EXPECT_EQ(kind(), Kind::Enabled);
}

TEST_F(AutostartEntries, EntryOfAnotherProgramIsLeftAndNamed)
{
    const QString other = makeProgram(QStringLiteral("bin/another"));
    const QString path = writeEntry("Type=Application\nExec=" + other.toUtf8() + "\n");
    const QByteArray before = userEntry();
    EXPECT_EQ(sentenceOf([this] { registerWith(); }),
              QStringLiteral("The file \"%1\" starts another program, so it was left as it is.").arg(path));
    unregister();
    EXPECT_EQ(userEntry(), before);
    EXPECT_EQ(namesInFolder(), QStringList{folders.fileName});
}

TEST_F(AutostartEntries, EntryOfAProgramThatIsGoneIsTakenOver)
{
    static_cast<void>(writeEntry("Type=Application\nExec=/nowhere/quillhaven\nX-Mine=1\n"));
    EXPECT_EQ(kind(), Kind::CannotStart);
    registerWith();
    EXPECT_EQ(kind(), Kind::Enabled);
    EXPECT_TRUE(userEntry().contains("X-Mine=1\n"));
}

TEST_F(AutostartEntries, FileThatIsNoDesktopEntryIsLeftAndNamed)
{
    const QByteArray before = "something else";
    home.write(QStringLiteral(".config/autostart/com.tarnwick.quillhaven.desktop"), before);
    EXPECT_EQ(
        sentenceOf([this] { registerWith(); }),
        QStringLiteral("The file \"%1\" is not a desktop entry, so it was left as it is.").arg(folders.userEntry()));
    unregister();
    EXPECT_EQ(userEntry(), before);
}

TEST_F(AutostartEntries, EmptyFileIsFilled)
{
    home.write(QStringLiteral(".config/autostart/com.tarnwick.quillhaven.desktop"), "");
    registerWith();
    EXPECT_EQ(kind(), Kind::Enabled);
}

TEST_F(AutostartEntries, LinkIsReplacedAndItsTargetStays)
{
    const QString target = home.write(QStringLiteral("dotfiles/entry"), "[Desktop Entry]\n" + ours() + "Hidden=true\n");
    const QByteArray before = TemporaryHome::read(target);
    ASSERT_TRUE(QDir().mkpath(folders.user));
    ASSERT_TRUE(QFile::link(target, folders.userEntry()));
    registerWith();
    EXPECT_EQ(kind(), Kind::Enabled);
    EXPECT_FALSE(QFileInfo(folders.userEntry()).isSymLink());
    EXPECT_EQ(TemporaryHome::read(target), before);
}

TEST_F(AutostartEntries, LinkIsRemovedWithoutItsTarget)
{
    const QString target = home.write(QStringLiteral("dotfiles/entry"), "[Desktop Entry]\n" + ours());
    ASSERT_TRUE(QDir().mkpath(folders.user));
    ASSERT_TRUE(QFile::link(target, folders.userEntry()));
    unregister();
    EXPECT_EQ(kind(), Kind::Missing);
    EXPECT_TRUE(TemporaryHome::exists(target));
    EXPECT_EQ(namesInFolder(), QStringList());
}

TEST_F(AutostartEntries, DanglingLinkIsReplaced)
{
    ASSERT_TRUE(QDir().mkpath(folders.user));
    ASSERT_TRUE(QFile::link(home.path(QStringLiteral("elsewhere")), folders.userEntry()));
    registerWith();
    EXPECT_EQ(kind(), Kind::Enabled);
    EXPECT_FALSE(TemporaryHome::exists(home.path(QStringLiteral("elsewhere"))));
}

TEST_F(AutostartEntries, EndOfTheRegistrationRemovesTheEntry)
{
    registerWith();
    unregister();
    EXPECT_EQ(namesInFolder(), QStringList());
    unregister();
    EXPECT_EQ(kind(), Kind::Missing);
}

TEST_F(AutostartEntries, EndOfTheRegistrationWithoutAFolderMakesNone)
{
    unregister();
    EXPECT_FALSE(QFileInfo::exists(folders.user));
}

TEST_F(AutostartEntries, EntryOfTheSystemIsHiddenByTheUsers)
{
    static_cast<void>(writeSystemEntry(ours()));
    unregister();
    EXPECT_EQ(kind(), Kind::SwitchedOff);
    EXPECT_EQ(userEntry(), "[Desktop Entry]\nType=Application\nName=Quillhaven\nHidden=true\n");
    registerWith();
    EXPECT_EQ(kind(), Kind::Enabled);
    EXPECT_FALSE(userEntry().contains("Hidden"));
    unregister();
    EXPECT_EQ(kind(), Kind::SwitchedOff);
}

TEST_F(AutostartEntries, RestOfAnInterruptedWriteIsNoEntryAndDoesNotHinder)
{
    ASSERT_TRUE(QDir().mkpath(folders.user));
    home.write(QStringLiteral(".config/autostart/.com.tarnwick.quillhaven.desktop.new"), "[Desktop En");
    EXPECT_EQ(kind(), Kind::Missing);
    registerWith();
    EXPECT_EQ(kind(), Kind::Enabled);
    EXPECT_EQ(namesInFolder(), QStringList{folders.fileName});
}

TEST_F(AutostartEntries, FolderInTheWayOfTheEntryIsNamed)
{
    ASSERT_TRUE(QDir().mkpath(folders.userEntry()));
    EXPECT_TRUE(sentenceOf([this] { registerWith(); }).contains(folders.userEntry()));
    EXPECT_TRUE(QFileInfo(folders.userEntry()).isDir());
}

TEST_F(AutostartEntries, FileInTheWayOfTheFolderIsAnError)
{
    home.write(QStringLiteral(".config/autostart"), "a file");
    EXPECT_EQ(kind(), Kind::Missing);
    EXPECT_TRUE(sentenceOf([this] { registerWith(); }).contains(folders.fileName));
    unregister();
    EXPECT_EQ(TemporaryHome::read(folders.user), "a file");
}

TEST_F(AutostartEntries, FullDiskLeavesTheOldEntryWhole)
{
    registerWith();
    const QByteArray before = userEntry();
    // The size of a file that this process may write is limited, which fails as a full disk does, in the middle of a
    // write.
    rlimit unlimited{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &unlimited), 0);
    rlimit small = unlimited;
    small.rlim_cur = 20;
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const QString sentence = sentenceOf([this] { registerWith({QStringLiteral("--login-item")}); });
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &unlimited), 0);
    signal(SIGXFSZ, handler);
    EXPECT_TRUE(sentence.contains(folders.fileName)) << qPrintable(sentence);
    EXPECT_EQ(userEntry(), before);
    EXPECT_EQ(namesInFolder(), QStringList{folders.fileName});
}

TEST_F(AutostartEntries, FolderThatMayNotBeWrittenIsAnErrorAndTheOldEntryStays)
{
    registerWith();
    const QByteArray before = userEntry();
    // Root may write in every folder; a folder of the kernel cannot be written by anybody.
    if (isRoot()) {
        folders.user = QStringLiteral("/proc/sys");
    } else {
        ASSERT_TRUE(QFile::setPermissions(folders.user, QFile::ReadOwner | QFile::ExeOwner));
    }
    const QString sentence = sentenceOf([this] { registerWith({QStringLiteral("--login-item")}); });
    EXPECT_TRUE(sentence.contains(folders.fileName)) << qPrintable(sentence);
    if (!isRoot()) {
        const QString removal = sentenceOf([this] { unregister(); });
        EXPECT_EQ(removal, QStringLiteral("You don't have permission to remove \"%1\".").arg(folders.fileName));
        EXPECT_EQ(userEntry(), before);
        QFile::setPermissions(folders.user, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
}

TEST_F(AutostartEntries, ProgramThatDoesNotExistIsNotRegistered)
{
    folders.executable = home.path(QStringLiteral("bin/none"));
    EXPECT_EQ(sentenceOf([this] { registerWith(); }),
              QStringLiteral("Could not use \"none\" because it does not exist."));
    EXPECT_FALSE(QFileInfo::exists(folders.userEntry()));
}
