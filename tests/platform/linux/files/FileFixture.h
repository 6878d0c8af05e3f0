// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/files/LinuxFileManager.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <system_error>
#include <utility>

namespace quillhaven::test {

/// A home on the disk, a folder on a second file system, and helpers for tests of files.
class FileTest : public ::testing::Test
{
protected:
    [[nodiscard]] QString other(const QString &name) const { return m_other.path() + QLatin1Char('/') + name; }

    void SetUp() override
    {
        ASSERT_TRUE(m_other.isValid());
        ASSERT_NE(status(home.path()).st_dev, status(m_other.path()).st_dev) << "/dev/shm is not a second file system";
    }
    /// No hidden name of a move may remain in either folder.
    void TearDown() override
    {
        EXPECT_EQ(hiddenNames(home.path()), QStringList());
        EXPECT_EQ(hiddenNames(m_other.path()), QStringList());
    }

    static QStringList hiddenNames(const QString &folder)
    {
        return QDir(folder).entryList({QStringLiteral(".quillhaven-*")},
                                      QDir::AllEntries | QDir::Hidden | QDir::System);
    }
    static QByteArray bytesOf(const QString &path) { return QFile::encodeName(path); }
    static struct stat status(const QString &path)
    {
        struct stat result{};
        if (lstat(bytesOf(path).constData(), &result) != 0) {
            throw std::system_error(errno, std::generic_category(), path.toStdString());
        }
        return result;
    }
    /// True for any kind of file, including a dangling link.
    static bool exists(const QString &path)
    {
        struct stat result{};
        return lstat(bytesOf(path).constData(), &result) == 0;
    }
    static void setAttribute(const QString &path, const char *name, const QByteArray &value)
    {
        ASSERT_EQ(lsetxattr(bytesOf(path).constData(), name, value.constData(), static_cast<size_t>(value.size()), 0),
                  0)
            << strerror(errno);
    }
    static QByteArray attribute(const QString &path, const char *name)
    {
        QByteArray value(4096, '\0');
        const ssize_t size =
            lgetxattr(bytesOf(path).constData(), name, value.data(), static_cast<size_t>(value.size()));
        return value.left(size > 0 ? size : 0);
    }
    static QByteArray outputOf(const QString &program, const QStringList &arguments)
    {
        QProcess process;
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished()) << qUtf8Printable(program) << " did not run";
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
        return process.readAllStandardOutput();
    }
    void write(const QString &path, const QByteArray &bytes)
    {
        files.writeFile(path, std::as_bytes(std::span(bytes.constData(), static_cast<size_t>(bytes.size()))));
    }
    static QByteArray read(const QString &path) { return TemporaryHome::read(path); }

    /// A file of 64 MiB in the home that consists of a hole except for its start.
    [[nodiscard]] QString sparseFile() const
    {
        QString path = home.write(QStringLiteral("sparse"), "start");
        EXPECT_EQ(truncate(bytesOf(path).constData(), sparseSize), 0);
        return path;
    }
    /// Expects that the path is such a file, with its size and its hole.
    static void expectSparse(const QString &path)
    {
        EXPECT_EQ(status(path).st_size, sparseSize);
        EXPECT_LT(status(path).st_blocks * 512, sparseSize / 16);
    }

    /// The error of the call, if it failed.
    template <typename Call>
    static std::optional<FileError> errorOf(Call call)
    {
        try {
            call();
        } catch (const FileError &error) {
            return error;
        }
        return std::nullopt;
    }
    template <typename Call>
    static void expectKind(FileError::Kind kind, Call call)
    {
        const std::optional<FileError> error = errorOf(std::move(call));
        ASSERT_TRUE(error.has_value()) << "nothing was thrown";
        EXPECT_EQ(error->kind(), kind) << qUtf8Printable(error->errorDescription());
    }

    TemporaryHome home;
    LinuxFileManager files;

private:
    static constexpr off_t sparseSize = off_t{1} << 26;

    QTemporaryDir m_other{QStringLiteral("/dev/shm/quillhaven-test-XXXXXX")};
};

/// Acts as a normal user during its lifetime, since file permissions do not apply to root.
class AsPlainUser
{
public:
    AsPlainUser()
    {
        if (geteuid() == 0) {
            constexpr uid_t nobody = 65534;
            m_isChanged = setresuid(nobody, nobody, 0) == 0; // child processes run as the real user
            EXPECT_TRUE(m_isChanged);
        }
    }
    ~AsPlainUser()
    {
        if (m_isChanged) {
            EXPECT_EQ(setresuid(0, 0, 0), 0);
        }
    }
    AsPlainUser(const AsPlainUser &) = delete;
    AsPlainUser &operator=(const AsPlainUser &) = delete;

private:
    bool m_isChanged = false;
};

/// A mount during its lifetime. Needs root: a test that cannot mount fails.
class Mount
{
public:
    Mount(const QString &source, QString target, const char *type, unsigned long flags, const char *data = nullptr)
        : m_target(QFile::encodeName(target))
    {
        m_isMounted = mount(QFile::encodeName(source).constData(), m_target.constData(), type, flags, data) == 0;
        EXPECT_TRUE(m_isMounted) << "mounting needs root: " << strerror(errno);
    }
    ~Mount()
    {
        if (m_isMounted) {
            EXPECT_EQ(umount2(m_target.constData(), MNT_DETACH), 0);
        }
    }
    Mount(const Mount &) = delete;
    Mount &operator=(const Mount &) = delete;

    [[nodiscard]] bool isMounted() const { return m_isMounted; }

private:
    QByteArray m_target;
    bool m_isMounted = false;
};

} // namespace quillhaven::test
