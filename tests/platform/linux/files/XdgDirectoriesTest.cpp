// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/XdgDirectories.h"
#include "platform/FileError.h"
#include "platform/linux/files/UserEnvironment.h"
#include "support/LogCapture.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>

namespace quillhaven::test {

namespace {

/// Sets environment variables, which are restored afterwards.
class XdgDirectoriesTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        set("HOME", home.path());
        set("TMPDIR", home.path());
        set("XDG_DATA_HOME", home.path(QStringLiteral("data")));
        set("XDG_CONFIG_HOME", home.path(QStringLiteral("config")));
        set("XDG_CACHE_HOME", home.path(QStringLiteral("cache")));
        set("XDG_RUNTIME_DIR", home.path(QStringLiteral("run")));
    }
    void TearDown() override
    {
        for (const auto &[name, value] : m_before) {
            value.isNull() ? qunsetenv(name.constData()) : qputenv(name.constData(), value);
        }
    }
    void set(const char *name, const QString &value)
    {
        m_before.try_emplace(QByteArray(name), qgetenv(name));
        qputenv(name, QFile::encodeName(value));
    }
    void unset(const char *name)
    {
        set(name, {});
        qunsetenv(name);
    }
    [[nodiscard]] static bool isPrivateDirectory(const QString &path)
    {
        struct stat status{};
        return lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
               status.st_uid == geteuid() && (status.st_mode & 07777) == 0700;
    }
    [[nodiscard]] static QString homeOfAccount() { return QFile::decodeName(getpwuid(geteuid())->pw_dir); }
    [[nodiscard]] QByteArray temporary() const
    {
        return QFile::encodeName(home.path(QStringLiteral("quillhaven-") + QString::number(geteuid())));
    }

    TemporaryHome home;

private:
    std::map<QByteArray, QByteArray> m_before;
};

TEST_F(XdgDirectoriesTest, FollowsTheEnvironmentAndCreatesDocumentsAndTheTemporaryDirectory)
{
    home.write(QStringLiteral("config/user-dirs.dirs"), "XDG_DOCUMENTS_DIR=\"$HOME/Meine Dokumente\"\n");
    const UserDirectories found = xdgDirectories();
    EXPECT_EQ(found.home, home.path());
    EXPECT_EQ(found.applicationSupport, home.path(QStringLiteral("data")));
    EXPECT_EQ(found.configuration, home.path(QStringLiteral("config/quillhaven")));
    EXPECT_EQ(found.documents, home.path(QStringLiteral("Meine Dokumente")));
    EXPECT_TRUE(QDir(found.documents).exists());
    EXPECT_EQ(found.temporary, QFile::decodeName(temporary()));
    struct stat status{};
    ASSERT_EQ(lstat(temporary().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700);
    EXPECT_EQ(xdgDirectories(), found);
}

TEST_F(XdgDirectoriesTest, ATemporaryDirectoryThatOthersCanEnterIsMadePrivate)
{
    ASSERT_EQ(mkdir(temporary().constData(), 0755), 0);
    (void)xdgDirectories();
    struct stat status{};
    ASSERT_EQ(lstat(temporary().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700);
}

TEST_F(XdgDirectoriesTest, ALinkOrAFileWithTheNameOfTheTemporaryDirectoryIsLeftAloneAndAnotherPlaceIsUsed)
{
    LogCapture log;
    const QString planted = QFile::decodeName(temporary());
    ASSERT_EQ(symlink(QFile::encodeName(home.path()).constData(), temporary().constData()), 0);
    const QString insteadOfLink = xdgDirectories().temporary;
    EXPECT_NE(insteadOfLink, planted);
    EXPECT_TRUE(isPrivateDirectory(insteadOfLink)) << qUtf8Printable(insteadOfLink);
    EXPECT_TRUE(QFileInfo(planted).isSymLink());
    EXPECT_TRUE(log.lines().join(QLatin1Char('\n')).contains(planted));
    ASSERT_EQ(unlink(temporary().constData()), 0);
    home.write(QFileInfo(planted).fileName(), "theirs");
    EXPECT_EQ(xdgDirectories().temporary, insteadOfLink);
    EXPECT_EQ(TemporaryHome::read(planted), "theirs");
}

TEST_F(XdgDirectoriesTest, TheFirstUsablePlaceIsTaken)
{
    const QString taken = home.write(QStringLiteral("shared/quillhaven"));
    const QString own = home.path(QStringLiteral("cache/quillhaven/tmp"));
    EXPECT_EQ(privateDirectoryAmong({taken, own, home.path(QStringLiteral("unused"))}), own);
    EXPECT_TRUE(isPrivateDirectory(own));
    EXPECT_FALSE(TemporaryHome::exists(home.path(QStringLiteral("unused"))));
}

TEST_F(XdgDirectoriesTest, WithoutAnyUsablePlaceTheErrorNamesThemAll)
{
    const QString first = home.write(QStringLiteral("first"));
    const QString second = home.write(QStringLiteral("second"));
    try {
        (void)privateDirectoryAmong({first, second});
        FAIL() << "no error";
    } catch (const FileError &error) {
        EXPECT_TRUE(error.errorDescription().contains(first) && error.errorDescription().contains(second))
            << qUtf8Printable(error.errorDescription());
    }
}

TEST_F(XdgDirectoriesTest, DocumentsOnADriveThatIsAwayAreLeftAloneAndReported)
{
    LogCapture log;
    const QString away = home.path(QStringLiteral("drive/Documents"));
    ASSERT_TRUE(QDir().rmdir(home.path(QStringLiteral("Documents"))));
    ASSERT_TRUE(QFile::link(away, home.path(QStringLiteral("Documents"))));
    EXPECT_EQ(xdgDirectories().documents, home.path(QStringLiteral("Documents")));
    EXPECT_FALSE(QFileInfo::exists(away));
    EXPECT_TRUE(log.lines().join(QLatin1Char('\n')).contains(away));
}

TEST_F(XdgDirectoriesTest, AHomeThatCannotBeOneBecomesTheHomeOfTheAccount)
{
    unset("HOME");
    repairEnvironment();
    EXPECT_EQ(qEnvironmentVariable("HOME"), homeOfAccount());
    for (const QString &home : {QString(), QStringLiteral("/"), QStringLiteral("//"), QStringLiteral("relative"),
                                QStringLiteral("/does/not/exist")}) {
        set("HOME", home);
        repairEnvironment();
        EXPECT_EQ(qEnvironmentVariable("HOME"), homeOfAccount()) << qUtf8Printable(home);
    }
}

TEST_F(XdgDirectoriesTest, AUsableHomeStays)
{
    repairEnvironment();
    EXPECT_EQ(qEnvironmentVariable("HOME"), home.path());
}

TEST_F(XdgDirectoriesTest, RelativePlacesAreIgnored)
{
    LogCapture log;
    for (const char *name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR", "TMPDIR"}) {
        set(name, QStringLiteral("relative"));
    }
    repairEnvironment();
    const UserDirectories found = xdgDirectories();
    EXPECT_EQ(found.applicationSupport, home.path(QStringLiteral(".local/share")));
    EXPECT_EQ(found.configuration, home.path(QStringLiteral(".config/quillhaven")));
    EXPECT_TRUE(isPrivateDirectory(found.temporary)) << qUtf8Printable(found.temporary);
    EXPECT_FALSE(QFileInfo::exists(QStringLiteral("relative")));
    EXPECT_TRUE(log.lines().join(QLatin1Char('\n')).contains(QStringLiteral("XDG_DATA_HOME")));
}

TEST_F(XdgDirectoriesTest, ATmpdirThatDoesNotExistIsIgnored)
{
    const QString missing = home.path(QStringLiteral("missing"));
    set("TMPDIR", missing);
    repairEnvironment();
    EXPECT_TRUE(isPrivateDirectory(xdgDirectories().temporary));
    EXPECT_FALSE(TemporaryHome::exists(missing));
}

} // namespace

} // namespace quillhaven::test
