// SPDX-License-Identifier: GPL-3.0-or-later

// The definitions at the end take precedence over those of the C library: the program's own code and its shared
// libraries are linked to them.

#include "faults/SystemCallFaults.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <fts.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <vector>

namespace quillhaven::test {

namespace {

std::atomic<int> calls = 0;
std::atomic<int> target = 0;
std::atomic<int> error = 0; ///< 0 to end the process
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

/// A function of the C library that can be made to fail.
class Hooked
{
public:
    explicit Hooked(const char *name) : m_name(name) { all().push_back(this); }
    Hooked(const Hooked &) = delete;
    Hooked &operator=(const Hooked &) = delete;

    static std::vector<Hooked *> &all()
    {
        static std::vector<Hooked *> hooked;
        return hooked;
    }
    [[nodiscard]] const char *name() const { return m_name; }
    [[nodiscard]] bool isSeen() const { return m_isSeen; }

    /// Whether this call must fail; if so, errno is set.
    bool failsNow()
    {
        if (depth == 0 || !isArmed) {
            return false;
        }
        m_isSeen = true;
        if (++calls != target) {
            return false;
        }
        if (error == 0) {
            ::kill(::getpid(), SIGKILL);
        }
        failed = m_name;
        errno = error;
        return true;
    }

private:
    const char *m_name;
    std::atomic<bool> m_isSeen = false;
};

template <typename Function>
Function real(Function, const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

template <typename Condition>
QStringList namesOf(Condition isWanted)
{
    QStringList names;
    for (const Hooked *each : Hooked::all()) {
        if (isWanted(*each)) {
            names.append(QString::fromLatin1(each->name()));
        }
    }
    names.sort();
    return names;
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

std::shared_ptr<void> system_call_faults::scope()
{
    return std::make_shared<Within>();
}

QStringList system_call_faults::coveredCalls()
{
    return namesOf([](const Hooked &) { return true; });
}

QStringList system_call_faults::seenCalls()
{
    return namesOf([](const Hooked &call) { return call.isSeen(); });
}

void FaultyFileManager::around(const FileCall & /*call*/, const std::function<void()> &next) const
{
    const Within within;
    next();
}

} // namespace quillhaven::test

// NOLINTBEGIN: the names, types and missing bounds are those of the C library.

using quillhaven::test::Hooked;
using quillhaven::test::real;

// A call that fails by returning `failure`, with errno set.
#define FAULTY(result, failure, name, parameters, arguments)                                                           \
    static Hooked hooked_##name(#name);                                                                                \
    extern "C" result name parameters                                                                                  \
    {                                                                                                                  \
        static const auto next = real(&name, #name);                                                                   \
        return hooked_##name.failsNow() ? failure : next arguments;                                                    \
    }

// A call that fails after it has done its work.
#define FAULTY_AT_END(result, failure, name, parameters, arguments)                                                    \
    static Hooked hooked_##name(#name);                                                                                \
    extern "C" result name parameters                                                                                  \
    {                                                                                                                  \
        static const auto next = real(&name, #name);                                                                   \
        result value = next arguments;                                                                                 \
        return hooked_##name.failsNow() ? failure : value;                                                             \
    }

FAULTY(int, -1, rename, (const char *from, const char *to), (from, to))
FAULTY(int, -1, renameat2, (int a, const char *from, int b, const char *to, unsigned flags), (a, from, b, to, flags))
FAULTY(int, -1, link, (const char *from, const char *to), (from, to))
FAULTY(int, -1, unlink, (const char *path), (path))
FAULTY(int, -1, unlinkat, (int folder, const char *path, int flags), (folder, path, flags))
FAULTY(int, -1, mkdir, (const char *path, mode_t mode), (path, mode))
FAULTY(int, -1, stat, (const char *path, struct stat *status), (path, status))
FAULTY(int, -1, lstat, (const char *path, struct stat *status), (path, status))
FAULTY(int, -1, fstat, (int fd, struct stat *status), (fd, status))
FAULTY(int, -1, fstatat, (int folder, const char *path, struct stat *status, int flags), (folder, path, status, flags))
FAULTY(int, -1, statx, (int folder, const char *path, int flags, unsigned mask, struct statx *status),
       (folder, path, flags, mask, status))
FAULTY(int, -1, faccessat, (int folder, const char *path, int mode, int flags), (folder, path, mode, flags))
FAULTY(char *, nullptr, realpath, (const char *path, char *resolved), (path, resolved))
FAULTY(int, -1, statvfs, (const char *path, struct statvfs *volume), (path, volume))
FAULTY(int, -1, ftruncate, (int fd, off_t size), (fd, size))
FAULTY(int, -1, fsync, (int fd), (fd))
FAULTY(int, -1, fdatasync, (int fd), (fd))
FAULTY(int, -1, syncfs, (int fd), (fd))
FAULTY(ssize_t, -1, read, (int fd, void *bytes, size_t size), (fd, bytes, size))
FAULTY(ssize_t, -1, pread, (int fd, void *bytes, size_t size, off_t offset), (fd, bytes, size, offset))
FAULTY(ssize_t, -1, write, (int fd, const void *bytes, size_t size), (fd, bytes, size))
FAULTY(ssize_t, -1, pwrite, (int fd, const void *bytes, size_t size, off_t offset), (fd, bytes, size, offset))
FAULTY(ssize_t, -1, pwritev2, (int fd, const iovec *pieces, int count, off_t offset, int flags),
       (fd, pieces, count, offset, flags))
FAULTY(ssize_t, -1, readlink, (const char *path, char *text, size_t size), (path, text, size))
FAULTY(ssize_t, -1, readlinkat, (int folder, const char *path, char *text, size_t size), (folder, path, text, size))
FAULTY(ssize_t, -1, llistxattr, (const char *path, char *list, size_t size), (path, list, size))
FAULTY(ssize_t, -1, lgetxattr, (const char *path, const char *name, void *value, size_t size),
       (path, name, value, size))
// These are used by SQLite and Qt. Not fcntl64, with which SQLite locks: it would wait for a lock that it cannot
// release.
FAULTY(int, -1, stat64, (const char *path, struct stat64 *status), (path, status))
FAULTY(int, -1, lstat64, (const char *path, struct stat64 *status), (path, status))
FAULTY(int, -1, fstat64, (int fd, struct stat64 *status), (fd, status))
FAULTY(int, -1, ftruncate64, (int fd, off64_t size), (fd, size))
FAULTY(ssize_t, -1, pread64, (int fd, void *bytes, size_t size, off64_t offset), (fd, bytes, size, offset))
FAULTY(ssize_t, -1, pwrite64, (int fd, const void *bytes, size_t size, off64_t offset), (fd, bytes, size, offset))
FAULTY(void *, MAP_FAILED, mmap64, (void *where, size_t size, int access, int flags, int fd, off64_t offset),
       (where, size, access, flags, fd, offset))
FAULTY(int, -1, memfd_create, (const char *name, unsigned flags), (name, flags))
FAULTY(DIR *, nullptr, opendir, (const char *path), (path))
FAULTY(DIR *, nullptr, fdopendir, (int fd), (fd))
FAULTY(dirent *, nullptr, readdir, (DIR * folder), (folder))
FAULTY(FTS *, nullptr, fts_open, (char *const *paths, int options, int (*order)(const FTSENT **, const FTSENT **)),
       (paths, options, order))
// fts_close would not free all of a walk whose first read failed before it started.
FAULTY_AT_END(FTSENT *, nullptr, fts_read, (FTS * walk), (walk))
// The kernel closes the file even if it reports an error.
FAULTY_AT_END(int, -1, close, (int fd), (fd))
// Returns its error instead of setting errno.
FAULTY(int, errno, posix_spawn,
       (pid_t * child, const char *path, const posix_spawn_file_actions_t *actions, const posix_spawnattr_t *attributes,
        char *const arguments[], char *const environment[]),
       (child, path, actions, attributes, arguments, environment))

#undef FAULTY
#undef FAULTY_AT_END

static Hooked hooked_waitpid("waitpid");
extern "C" pid_t waitpid(pid_t child, int *status, int options)
{
    static const auto next = real(&waitpid, "waitpid");
    if (!hooked_waitpid.failsNow()) {
        return next(child, status, options);
    }
    // Only an interrupted wait leaves the child running.
    const int error = errno;
    if (error != EINTR) {
        (void)next(child, status, options);
    }
    errno = error;
    return -1;
}

// A call whose last argument is optional; each of its types is as wide as a pointer or narrower.
#define FAULTY_WITH_MORE(name, parameters, last, arguments)                                                            \
    static Hooked hooked_##name(#name);                                                                                \
    extern "C" int name parameters                                                                                     \
    {                                                                                                                  \
        static const auto next = real(&name, #name);                                                                   \
        va_list arguments_;                                                                                            \
        va_start(arguments_, last);                                                                                    \
        void *const more = va_arg(arguments_, void *);                                                                 \
        va_end(arguments_);                                                                                            \
        return hooked_##name.failsNow() ? -1 : next arguments;                                                         \
    }

FAULTY_WITH_MORE(fcntl, (int fd, int command, ...), command, (fd, command, more))
FAULTY_WITH_MORE(open, (const char *path, int flags, ...), flags, (path, flags, more))
FAULTY_WITH_MORE(open64, (const char *path, int flags, ...), flags, (path, flags, more))
FAULTY_WITH_MORE(openat, (int folder, const char *path, int flags, ...), flags, (folder, path, flags, more))

#undef FAULTY_WITH_MORE

// NOLINTEND
