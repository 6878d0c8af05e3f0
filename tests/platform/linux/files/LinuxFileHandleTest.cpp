// SPDX-License-Identifier: GPL-3.0-or-later

// This file defines the functions that call the kernel instead of the C library, so that a test sees which writes are
// flushed, and can simulate file systems that this machine does not have.

#include "FileFixture.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/uio.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <optional>
#include <utility>

namespace quillhaven::test {

namespace {

struct Call
{
    const char *name;
    size_t size;
    bool isDirect;
    bool isFlushed;
};

/// Records the calls to the kernel during a test, and changes their results.
struct Kernel
{
    QList<Call> calls;
    /// Returns an error number, or 0 for the real result.
    std::function<int(const Call &)> fails;
    size_t maxWrite = SIZE_MAX;
    bool writesNothing = false;
    /// Runs once, after the next check of a path.
    std::function<void()> afterLook;
};
Kernel *kernel = nullptr;

std::optional<int> failureOf(const char *name, int fd, size_t size, bool isFlushed)
{
    if (kernel == nullptr) {
        return std::nullopt;
    }
    EXPECT_TRUE((fcntl(fd, F_GETFD) & FD_CLOEXEC) != 0) << "a program started meanwhile would inherit the file";
    const Call call{name, size, (fcntl(fd, F_GETFL) & O_DIRECT) != 0, isFlushed};
    kernel->calls.append(call);
    const int error = kernel->fails ? kernel->fails(call) : 0;
    return error == 0 ? std::nullopt : std::optional(error);
}

ssize_t writeAt(int fd, const void *bytes, size_t size, off_t offset, int flags)
{
    iovec piece{const_cast<void *>(bytes), size};
    if (kernel != nullptr) {
        piece.iov_len = kernel->writesNothing ? 0 : std::min(size, kernel->maxWrite);
    }
    constexpr int bitsOfHalf = 32;
    const auto position = static_cast<unsigned long>(offset);
    return syscall(SYS_pwritev2, fd, &piece, 1UL, position, position >> bitsOfHalf, flags);
}

} // namespace

} // namespace quillhaven::test

extern "C" int lstat(const char *path, struct stat *status)
{
    using namespace quillhaven::test;
    const int result = fstatat(AT_FDCWD, path, status, AT_SYMLINK_NOFOLLOW);
    if (kernel != nullptr) {
        if (const auto action = std::exchange(kernel->afterLook, {})) {
            action();
        }
    }
    return result;
}

extern "C" ssize_t pwritev2(int fd, const iovec *pieces, int count, off_t offset, int flags)
{
    using namespace quillhaven::test;
    EXPECT_EQ(count, 1);
    if (const auto error = failureOf("pwritev2", fd, pieces->iov_len, (flags & RWF_DSYNC) != 0)) {
        errno = *error;
        return -1;
    }
    return writeAt(fd, pieces->iov_base, pieces->iov_len, offset, flags);
}

extern "C" ssize_t pwrite(int fd, const void *bytes, size_t size, off_t offset)
{
    using namespace quillhaven::test;
    if (const auto error = failureOf("pwrite", fd, size, false)) {
        errno = *error;
        return -1;
    }
    return writeAt(fd, bytes, size, offset, 0);
}

extern "C" int fdatasync(int fd)
{
    using namespace quillhaven::test;
    if (const auto error = failureOf("fdatasync", fd, 0, true)) {
        errno = *error;
        return -1;
    }
    return static_cast<int>(syscall(SYS_fdatasync, fd));
}

namespace quillhaven::test {

namespace {

using Kind = FileError::Kind;

std::span<const std::byte> bytesIn(const QByteArray &bytes)
{
    return std::as_bytes(std::span(bytes.constData(), static_cast<size_t>(bytes.size())));
}

QByteArray patterned(qsizetype size, char first)
{
    QByteArray bytes(size, '\0');
    for (qsizetype i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>(first + i % 251);
    }
    return bytes;
}

/// On the disk, and in memory.
class OverwritingTest : public FileTest, public ::testing::WithParamInterface<bool>
{
protected:
    OverwritingTest() { kernel = &m_kernel; }
    ~OverwritingTest() override { kernel = nullptr; }

    QString file(const QByteArray &bytes)
    {
        const QString path = GetParam() ? other(QStringLiteral("file")) : home.path(QStringLiteral("file"));
        write(path, bytes);
        return path;
    }
    void overwrite(const QString &path, uint64_t offset, const QByteArray &bytes)
    {
        const std::unique_ptr<FileHandle> handle = files.openForOverwriting(path);
        handle->seek(offset);
        handle->writeThrough(bytesIn(bytes));
        handle->synchronizeFile();
        handle->closeFile();
    }
    /// Expects that each write reached the device before the next one started.
    void expectEachWriteFlushed() const
    {
        bool isFlushed = true;
        for (const Call &call : m_kernel.calls) {
            if (std::strcmp(call.name, "fdatasync") == 0) {
                isFlushed = true;
            } else {
                EXPECT_TRUE(isFlushed);
                isFlushed = call.isFlushed;
            }
        }
        EXPECT_TRUE(isFlushed);
    }
    [[nodiscard]] qsizetype count(const char *name) const
    {
        return std::ranges::count_if(m_kernel.calls,
                                     [name](const Call &call) { return std::strcmp(call.name, name) == 0; });
    }

    Kernel m_kernel;
};

TEST_P(OverwritingTest, BytesOfAnyLengthAreWrittenAtAnyOffsetAndNothingElseChanges)
{
    constexpr qsizetype size = 300'000;
    const QByteArray before = patterned(size, 1);
    const QString path = file(before);
    const ino_t inode = status(path).st_ino;
    QByteArray expected = before;
    for (const qsizetype offset : {0, 1, 511, 4096, 65536, 70'000}) {
        for (const qsizetype length : {0, 1, 511, 512, 4095, 4096, 4097, 65535, 65536, 65537, 131072, 200'000}) {
            const QByteArray bytes = patterned(length, static_cast<char>(offset + length));
            overwrite(path, static_cast<uint64_t>(offset), bytes);
            expected.replace(offset, length, bytes);
            ASSERT_TRUE(read(path) == expected) << offset << ' ' << length;
        }
    }
    EXPECT_EQ(status(path).st_ino, inode);
    EXPECT_EQ(status(path).st_size, size);
    expectEachWriteFlushed();
}

TEST_P(OverwritingTest, WritesFollowOneAnotherAndASeekMovesTheNext)
{
    const QString path = file(QByteArray(100'000, 'x'));
    const std::unique_ptr<FileHandle> handle = files.openForOverwriting(path);
    handle->writeThrough(bytesIn(QByteArray(65536, 'a')));
    handle->writeThrough(bytesIn(QByteArray(10, 'b')));
    handle->writeThrough(bytesIn(QByteArray(4096, 'c')));
    handle->seek(99'999);
    handle->writeThrough(bytesIn(QByteArray(1, 'd')));
    handle->closeFile();
    const QByteArray rest(100'000 - 65536 - 10 - 4096 - 1, 'x');
    EXPECT_TRUE(read(path) == QByteArray(65536, 'a') + QByteArray(10, 'b') + QByteArray(4096, 'c') + rest + 'd');
}

TEST_P(OverwritingTest, TheBytesNeedNoAlignment)
{
    const QByteArray bytes = patterned(65537, 3);
    const QString path = file(QByteArray(65536, 'x'));
    const std::unique_ptr<FileHandle> handle = files.openForOverwriting(path);
    handle->writeThrough(bytesIn(bytes).subspan(1));
    EXPECT_TRUE(read(path) == bytes.mid(1));
}

TEST_P(OverwritingTest, OtherProgramsReadAndMapTheNewContents)
{
    const QString path = file(QByteArray(65537, 'x'));
    QFile reader(path);
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    const uchar *mapped = reader.map(0, reader.size());
    ASSERT_NE(mapped, nullptr);
    EXPECT_EQ(reader.readAll(), QByteArray(65537, 'x')); // the pages are now in the cache
    overwrite(path, 0, QByteArray(65537, 'y'));
    reader.seek(0);
    EXPECT_TRUE(reader.readAll() == QByteArray(65537, 'y'));
    EXPECT_EQ(mapped[0], 'y');
    EXPECT_EQ(mapped[65536], 'y');
}

TEST_P(OverwritingTest, WritingPastTheEndMakesTheFileLonger)
{
    const QString path = file("12345");
    overwrite(path, 0, QByteArray(70'000, 'y'));
    EXPECT_TRUE(read(path) == QByteArray(70'000, 'y'));
}

TEST_P(OverwritingTest, OwnerModeAndOtherNamesAreKept)
{
    const QString path = file("12345");
    const QString twin = path + QStringLiteral("-twin");
    ASSERT_EQ(link(bytesOf(path).constData(), bytesOf(twin).constData()), 0);
    setAttribute(path, "user.note", "mine");
    ASSERT_EQ(chmod(bytesOf(path).constData(), 0640), 0);
    overwrite(path, 0, "54321");
    EXPECT_EQ(read(twin), "54321");
    EXPECT_EQ(status(path).st_mode & 07777, 0640U);
    EXPECT_EQ(attribute(path, "user.note"), "mine");
}

TEST_P(OverwritingTest, NoWriteIsLongerThanAChunkAndTheTailIsWrittenThroughTheCache)
{
    const QString path = file(QByteArray(140'000, 'x'));
    overwrite(path, 0, QByteArray(140'000, 'y'));
    const QList<Call> &calls = m_kernel.calls;
    ASSERT_EQ(count("pwritev2"), 3);
    EXPECT_EQ(calls.at(0).size, 65536U);
    EXPECT_EQ(calls.at(1).size, 65536U);
    EXPECT_EQ(calls.at(2).size, 140'000U - 131'072U);
    EXPECT_FALSE(calls.at(2).isDirect);
    EXPECT_EQ(count("fdatasync"), 0) << "flushed data is flushed again";
    expectEachWriteFlushed();
}

TEST_P(OverwritingTest, WithoutFlushingWritesEachWriteIsFollowedByAFlush)
{
    for (const int error : {EOPNOTSUPP, ENOSYS}) { // from the file system, and from a sandbox
        m_kernel.calls.clear();
        m_kernel.fails = [error](const Call &call) { return std::strcmp(call.name, "pwritev2") == 0 ? error : 0; };
        const QString path = file(QByteArray(140'000, 'x'));
        overwrite(path, 0, QByteArray(140'000, 'y'));
        EXPECT_TRUE(read(path) == QByteArray(140'000, 'y'));
        EXPECT_EQ(count("pwritev2"), 1) << "it is tried once";
        EXPECT_EQ(count("pwrite"), 3);
        EXPECT_EQ(count("fdatasync"), 3) << "no flush at the end";
        m_kernel.calls.removeFirst();
        expectEachWriteFlushed();
    }
}

TEST_P(OverwritingTest, ADeviceWithLargerBlocksIsWrittenThroughTheCache)
{
    m_kernel.fails = [](const Call &call) { return call.isDirect && call.size > 0 ? EINVAL : 0; };
    const QString path = file(QByteArray(140'000, 'x'));
    overwrite(path, 0, QByteArray(140'000, 'y'));
    EXPECT_TRUE(read(path) == QByteArray(140'000, 'y'));
    EXPECT_LE(std::ranges::count_if(m_kernel.calls, [](const Call &call) { return call.isDirect; }), 1);
}

TEST_P(OverwritingTest, ShortAndInterruptedWritesAreContinued)
{
    m_kernel.maxWrite = 4097;
    m_kernel.fails = [interruptions = 0](const Call &) mutable { return ++interruptions % 3 == 0 ? EINTR : 0; };
    const QByteArray bytes = patterned(140'000, 7);
    const QString path = file(QByteArray(150'000, 'x'));
    // The file systems do not support a direct write that ends within a block.
    const std::unique_ptr<FileHandle> handle = files.openForOverwriting(path);
    handle->seek(1);
    handle->writeThrough(bytesIn(bytes));
    handle->synchronizeFile();
    handle->closeFile();
    EXPECT_TRUE(read(path) == "x" + bytes + QByteArray(150'000 - 140'000 - 1, 'x'));
}

TEST_P(OverwritingTest, AShortDirectWriteIsContinued)
{
    m_kernel.maxWrite = 8192;
    const QByteArray bytes = patterned(131'072, 7);
    const QString path = file(QByteArray(131'072, 'x'));
    overwrite(path, 0, bytes);
    EXPECT_TRUE(read(path) == bytes);
    EXPECT_EQ(count("pwritev2"), 16);
}

TEST_P(OverwritingTest, AWriteOrAFlushThatFailsIsAnError)
{
    const QString path = file(QByteArray(10, 'x'));
    const auto failing = [](const char *name, int error) {
        return [=](const Call &call) { return std::strcmp(call.name, name) == 0 ? error : 0; };
    };
    m_kernel.fails = failing("pwritev2", ENOSPC);
    expectKind(Kind::NoSpace, [&] { overwrite(path, 0, QByteArray(10, 'y')); });
    m_kernel.fails = failing("pwritev2", EIO);
    expectKind(Kind::Other, [&] { overwrite(path, 0, QByteArray(10, 'y')); });
    EXPECT_EQ(read(path), QByteArray(10, 'x'));
    m_kernel.fails = [](const Call &call) {
        const bool isFlush = std::strcmp(call.name, "fdatasync") == 0;
        return std::strcmp(call.name, "pwritev2") == 0 ? EOPNOTSUPP : isFlush ? EIO : 0;
    };
    const auto error = errorOf([&] { overwrite(path, 0, QByteArray(10, 'y')); });
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->errorDescription(), QStringLiteral("Could not overwrite \"file\": Input/output error."));
}

TEST_P(OverwritingTest, AWriteOfZeroBytesIsAnInputOutputError)
{
    const QString path = file(QByteArray(10, 'x'));
    m_kernel.writesNothing = true;
    // The errno of an earlier call is not the reason.
    const auto error = errorOf([&] {
        EXPECT_EQ(access("absent", F_OK), -1);
        overwrite(path, 0, QByteArray(10, 'y'));
    });
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->errorDescription(), QStringLiteral("Could not overwrite \"file\": Input/output error."));
}

TEST_P(OverwritingTest, AnInterruptedFlushIsRepeated)
{
    m_kernel.fails = [flushes = 0](const Call &call) mutable {
        const bool isFlush = std::strcmp(call.name, "fdatasync") == 0;
        return std::strcmp(call.name, "pwritev2") == 0 ? EOPNOTSUPP : isFlush && ++flushes % 2 == 1 ? EINTR : 0;
    };
    const QString path = file(QByteArray(70'000, 'x'));
    overwrite(path, 0, QByteArray(70'000, 'y'));
    EXPECT_TRUE(read(path) == QByteArray(70'000, 'y'));
    EXPECT_EQ(count("fdatasync"), 4);
}

TEST_P(OverwritingTest, LinksAndSpecialFilesAreRejectedUntouched)
{
    const QString path = file("kept");
    const QString link = path + QStringLiteral("-link");
    ASSERT_TRUE(QFile::link(path, link));
    const QString dangling = path + QStringLiteral("-dangling");
    ASSERT_EQ(symlink("nowhere", bytesOf(dangling).constData()), 0);
    const QString fifo = path + QStringLiteral("-fifo");
    ASSERT_EQ(mkfifo(bytesOf(fifo).constData(), 0600), 0);
    const QString folder = path + QStringLiteral("-folder");
    files.createDirectory(folder);
    for (const QString &refused : {link, dangling}) {
        expectKind(Kind::OnlyALink, [&] { (void)files.openForOverwriting(refused); });
    }
    for (const QString &refused : {fifo, folder, QStringLiteral("/dev/null")}) {
        expectKind(Kind::NotAFileOrFolder, [&] { (void)files.openForOverwriting(refused); });
    }
    expectKind(Kind::NoSuchFile, [&] { (void)files.openForOverwriting(path + QStringLiteral("-absent")); });
    EXPECT_FALSE(exists(path + QStringLiteral("-absent")));
    EXPECT_EQ(read(path), "kept");
}

TEST_P(OverwritingTest, AFileReplacedBetweenTheCheckAndTheOpeningIsRejected)
{
    const QString target = file("kept");
    const QString path = target + QStringLiteral("-changing");
    write(path, "mine");
    m_kernel.afterLook = [&] {
        ASSERT_TRUE(QFile::remove(path));
        ASSERT_EQ(symlink(bytesOf(target).constData(), bytesOf(path).constData()), 0);
    };
    EXPECT_TRUE(errorOf([&] { (void)files.openForOverwriting(path); }).has_value());
    EXPECT_FALSE(m_kernel.afterLook) << "the path was not checked";
    ASSERT_TRUE(QFile::remove(path));

    write(path, "mine");
    m_kernel.afterLook = [&] {
        ASSERT_TRUE(QFile::remove(path));
        ASSERT_EQ(mkfifo(bytesOf(path).constData(), 0600), 0);
    };
    expectKind(Kind::NotAFileOrFolder, [&] { (void)files.openForOverwriting(path); });
    EXPECT_FALSE(m_kernel.afterLook) << "the path was not checked";
    EXPECT_EQ(read(target), "kept");

    // With a reader at its other end a FIFO can be opened, and would receive the bytes.
    ASSERT_TRUE(QFile::remove(path));
    write(path, "mine");
    int reader = -1;
    m_kernel.afterLook = [&] {
        ASSERT_TRUE(QFile::remove(path));
        ASSERT_EQ(mkfifo(bytesOf(path).constData(), 0600), 0);
        reader = open(bytesOf(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    };
    expectKind(Kind::NotAFileOrFolder, [&] { (void)files.openForOverwriting(path); });
    ASSERT_GE(reader, 0);
    close(reader);
}

TEST_P(OverwritingTest, AnUnwritableFileIsRejected)
{
    const QString path = file("kept");
    ASSERT_EQ(chmod(bytesOf(home.path()).constData(), 0755), 0);
    ASSERT_EQ(chmod(bytesOf(other({})).constData(), 0755), 0);
    ASSERT_EQ(chmod(bytesOf(path).constData(), 0444), 0);
    const AsPlainUser user;
    expectKind(Kind::NoPermission, [&] { (void)files.openForOverwriting(path); });
}

TEST_P(OverwritingTest, WritingToAClosedFileFails)
{
    const QString path = file("kept");
    const std::unique_ptr<FileHandle> handle = files.openForOverwriting(path);
    handle->closeFile();
    EXPECT_NO_THROW(handle->closeFile());
    expectKind(Kind::Other, [&] { handle->writeThrough(bytesIn("lost")); });
    EXPECT_EQ(read(path), "kept");
}

TEST_P(OverwritingTest, FlushingEverythingReturns)
{
    file("kept");
    EXPECT_NO_THROW(files.sync());
}

INSTANTIATE_TEST_SUITE_P(Places, OverwritingTest, ::testing::Bool(),
                         [](const auto &info) { return info.param ? "InMemory" : "OnTheDisk"; });

} // namespace

} // namespace quillhaven::test
