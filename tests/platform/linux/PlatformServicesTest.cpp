// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/FileError.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/files/XdgDirectories.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <map>

namespace quillhaven::test {

namespace {

TEST(OpenSslRandomSource, FillsTheWholeBufferWithNewBytesEachTime)
{
    OpenSslRandomSource random;
    std::array<std::byte, 64> first{};
    std::array<std::byte, 64> second{};
    ASSERT_TRUE(random.fill(first));
    ASSERT_TRUE(random.fill(second));
    EXPECT_NE(first, second);
    EXPECT_NE(std::count(first.begin(), first.end(), std::byte{0}), 64);
    EXPECT_TRUE(random.fill({}));
}

TEST(OpenSslRandomSource, AnIdentifierIsARandomUuidInUpperCase)
{
    OpenSslRandomSource random;
    const QString id = random.uuidString();
    static const QRegularExpression form(
        QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"));
    EXPECT_TRUE(form.match(id).hasMatch()) << qUtf8Printable(id);
    EXPECT_NE(id, random.uuidString());
}

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

TEST_F(XdgDirectoriesTest, ALinkOrAFileInsteadOfTheTemporaryDirectoryIsRejected)
{
    ASSERT_EQ(symlink(QFile::encodeName(home.path()).constData(), temporary().constData()), 0);
    EXPECT_THROW((void)xdgDirectories(), FileError);
    ASSERT_EQ(unlink(temporary().constData()), 0);
    home.write(QFileInfo(QFile::decodeName(temporary())).fileName());
    EXPECT_THROW((void)xdgDirectories(), FileError);
}

} // namespace

} // namespace quillhaven::test
