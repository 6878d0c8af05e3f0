// SPDX-License-Identifier: GPL-3.0-or-later

// The definitions below stand in front of the C library's: the program's own code is linked to them.

#include "faults/SystemCallFaults.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <fts.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>

namespace quillhaven::testing {

namespace {

std::atomic<int> calls = 0;
std::atomic<int> target = 0;
std::atomic<int> error = 0; ///< 0 ends the process
std::atomic<bool> isArmed = false;
std::atomic<const char *> failed = "";
thread_local int depth = 0;

struct Within
{
    Within() { ++depth; }
    ~Within() { --depth; }
    Within(const Within &) = delete;
    Within &operator=(const Within &) = delete;
};

void arm(int n, int errorNumber)
{
    calls = 0;
    target = n;
    error = errorNumber;
    failed = "";
    isArmed = true;
}

/// Whether this call is the one to fail; errno is set then.
bool failsNow(const char *name)
{
    if (depth == 0 || !isArmed || ++calls != target) {
        return false;
    }
    if (error == 0) {
        ::kill(::getpid(), SIGKILL);
    }
    failed = name;
    errno = error;
    return true;
}

template <typename Function>
Function real(Function, const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

void system_call_faults::countOnly()
{
    arm(-1, 0);
}

void system_call_faults::failCall(int n, int errorNumber)
{
    arm(n, errorNumber);
}

void system_call_faults::killAtCall(int n)
{
    arm(n, 0);
}

void system_call_faults::disarm()
{
    isArmed = false;
}

int system_call_faults::callCount()
{
    return calls;
}

const char *system_call_faults::failedCall()
{
    return failed;
}

namespace {

class FaultyHandle : public FileHandle
{
public:
    explicit FaultyHandle(std::unique_ptr<FileHandle> next) : m_next(std::move(next)) {}
    void seek(uint64_t offset) override { m_next->seek(offset); }
    void writeThrough(std::span<const std::byte> bytes) override
    {
        const Within within;
        m_next->writeThrough(bytes);
    }
    void synchronizeFile() override
    {
        const Within within;
        m_next->synchronizeFile();
    }
    void closeFile() override
    {
        const Within within;
        m_next->closeFile();
    }

private:
    std::unique_ptr<FileHandle> m_next;
};

class FaultyReader : public FileReader
{
public:
    explicit FaultyReader(std::unique_ptr<FileReader> next) : m_next(std::move(next)) {}
    ~FaultyReader() override
    {
        const Within within;
        m_next.reset();
    }
    FaultyReader(const FaultyReader &) = delete;
    FaultyReader &operator=(const FaultyReader &) = delete;

    [[nodiscard]] size_t size() const override
    {
        const Within within;
        return m_next->size();
    }
    [[nodiscard]] size_t read(uint64_t offset, std::span<std::byte> bytes) override
    {
        const Within within;
        return m_next->read(offset, bytes);
    }

private:
    std::unique_ptr<FileReader> m_next;
};

class FaultyWriter : public FileWriter
{
public:
    explicit FaultyWriter(std::unique_ptr<FileWriter> next) : m_next(std::move(next)) {}
    ~FaultyWriter() override
    {
        const Within within;
        m_next.reset();
    }
    FaultyWriter(const FaultyWriter &) = delete;
    FaultyWriter &operator=(const FaultyWriter &) = delete;

    void write(std::span<const std::byte> bytes) override
    {
        const Within within;
        m_next->write(bytes);
    }
    void close() override
    {
        const Within within;
        m_next->close();
    }

private:
    std::unique_ptr<FileWriter> m_next;
};

} // namespace

bool FaultyFileManager::fileExists(const QString &path) const
{
    const Within within;
    return FileManagerDecorator::fileExists(path);
}

bool FaultyFileManager::isDirectory(const QString &path) const
{
    const Within within;
    return FileManagerDecorator::isDirectory(path);
}

bool FaultyFileManager::isWritableFile(const QString &path) const
{
    const Within within;
    return FileManagerDecorator::isWritableFile(path);
}

void FaultyFileManager::requireReadableAndMovable(const QString &path, size_t headroom) const
{
    const Within within;
    FileManagerDecorator::requireReadableAndMovable(path, headroom);
}

QStringList FaultyFileManager::contentsOfDirectory(const QString &path) const
{
    const Within within;
    return FileManagerDecorator::contentsOfDirectory(path);
}

void FaultyFileManager::createDirectory(const QString &path)
{
    const Within within;
    FileManagerDecorator::createDirectory(path);
}

void FaultyFileManager::moveItem(const QString &source, const QString &to)
{
    const Within within;
    FileManagerDecorator::moveItem(source, to);
}

void FaultyFileManager::replaceItemAt(const QString &original, const QString &replacement)
{
    const Within within;
    FileManagerDecorator::replaceItemAt(original, replacement);
}

void FaultyFileManager::renameItem(const QString &path, const QString &newPath)
{
    const Within within;
    FileManagerDecorator::renameItem(path, newPath);
}

void FaultyFileManager::copyItem(const QString &source, const QString &to)
{
    const Within within;
    FileManagerDecorator::copyItem(source, to);
}

void FaultyFileManager::removeItem(const QString &path)
{
    const Within within;
    FileManagerDecorator::removeItem(path);
}

std::unique_ptr<FileReader> FaultyFileManager::openForReading(const QString &path) const
{
    const Within within;
    return std::make_unique<FaultyReader>(FileManagerDecorator::openForReading(path));
}

std::unique_ptr<FileWriter> FaultyFileManager::openForWriting(const QString &path)
{
    const Within within;
    return std::make_unique<FaultyWriter>(FileManagerDecorator::openForWriting(path));
}

int64_t FaultyFileManager::sizeOfItem(const QString &path) const
{
    const Within within;
    return FileManagerDecorator::sizeOfItem(path);
}

QList<FileEntry> FaultyFileManager::regularFilesBelow(const QString &folder) const
{
    const Within within;
    return FileManagerDecorator::regularFilesBelow(folder);
}

std::unique_ptr<FileHandle> FaultyFileManager::openForOverwriting(const QString &path)
{
    const Within within;
    return std::make_unique<FaultyHandle>(FileManagerDecorator::openForOverwriting(path));
}

} // namespace quillhaven::testing

// NOLINTBEGIN: the names, types and missing bounds are those of the C library.

using quillhaven::testing::failsNow;
using quillhaven::testing::real;

#define FAULTY(result, name, parameters, arguments)                                                                    \
    extern "C" result name parameters                                                                                  \
    {                                                                                                                  \
        static const auto next = real(&name, #name);                                                                   \
        return failsNow(#name) ? static_cast<result>(-1) : next arguments;                                             \
    }

FAULTY(int, rename, (const char *from, const char *to), (from, to))
FAULTY(int, renameat2, (int a, const char *from, int b, const char *to, unsigned flags), (a, from, b, to, flags))
FAULTY(int, link, (const char *from, const char *to), (from, to))
FAULTY(int, unlink, (const char *path), (path))
FAULTY(int, unlinkat, (int folder, const char *path, int flags), (folder, path, flags))
FAULTY(int, mkdir, (const char *path, mode_t mode), (path, mode))
FAULTY(int, stat, (const char *path, struct stat *status), (path, status))
FAULTY(int, lstat, (const char *path, struct stat *status), (path, status))
FAULTY(int, fstat, (int fd, struct stat *status), (fd, status))
FAULTY(int, fstatat, (int folder, const char *path, struct stat *status, int flags), (folder, path, status, flags))
FAULTY(int, faccessat, (int folder, const char *path, int mode, int flags), (folder, path, mode, flags))
FAULTY(int, ftruncate, (int fd, off_t size), (fd, size))
FAULTY(int, fsync, (int fd), (fd))
FAULTY(int, fdatasync, (int fd), (fd))
FAULTY(int, syncfs, (int fd), (fd))
FAULTY(ssize_t, write, (int fd, const void *bytes, size_t size), (fd, bytes, size))
FAULTY(ssize_t, pread, (int fd, void *bytes, size_t size, off_t offset), (fd, bytes, size, offset))
FAULTY(ssize_t, pwrite, (int fd, const void *bytes, size_t size, off_t offset), (fd, bytes, size, offset))
FAULTY(ssize_t, pwritev2, (int fd, const iovec *pieces, int count, off_t offset, int flags),
       (fd, pieces, count, offset, flags))

#undef FAULTY

extern "C" int open(const char *path, int flags, ...)
{
    static const auto next = real(&open, "open");
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return failsNow("open") ? -1 : next(path, flags, mode);
}

extern "C" int openat(int folder, const char *path, int flags, ...)
{
    static const auto next = real(&openat, "openat");
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return failsNow("openat") ? -1 : next(folder, path, flags, mode);
}

extern "C" int close(int fd)
{
    static const auto next = real(&close, "close");
    // The kernel closes the file whatever it reports.
    const int result = next(fd);
    return failsNow("close") ? -1 : result;
}

extern "C" FTSENT *fts_read(FTS *walk)
{
    static const auto next = real(&fts_read, "fts_read");
    // A walk that was never begun is not freed as a whole by fts_close.
    FTSENT *const entry = next(walk);
    return failsNow("fts_read") ? nullptr : entry;
}

// NOLINTEND
