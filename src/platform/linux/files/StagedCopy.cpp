// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/StagedCopy.h"

#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/HiddenNames.h"
#include "platform/linux/files/RemoveTree.h"
#include "platform/linux/files/ScopedFd.h"
#include "platform/linux/files/TreeComparison.h"
#include "support/ChildSignals.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace quillhaven {

namespace {

/// The error number that the messages of `cp`, in the C locale, name; 0 for none that is known.
int reasonIn(const QByteArray &messages)
{
    for (const int error : {ENOSPC, EDQUOT, EROFS, EACCES, EPERM, ENAMETOOLONG, EILSEQ, ENOENT, EFBIG, EIO, ENOMEM}) {
        if (messages.contains(QByteArray(": ") + strerrordesc_np(error) + '\n')) {
            return error;
        }
    }
    return 0;
}

QByteArray contentOf(int fd)
{
    constexpr qsizetype maxMessages = qsizetype{64} * 1024;
    QByteArray text(maxMessages, '\0');
    const ssize_t size = pread(fd, text.data(), static_cast<size_t>(text.size()), 0);
    return text.left(size > 0 ? size : 0);
}

/// Runs a program in a folder to its end; its messages go to `messages`. The exit status, or -1 with errno set. Not by
/// QProcess, which would pass on a name only if it is valid text.
int run(const char *const *arguments, int folder, int messages)
{
    const std::array<const char *, 2> environment{"LC_ALL=C", nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, messages, STDERR_FILENO);
    posix_spawn_file_actions_addfchdir_np(&actions, folder);
    const SpawnAttributes attributes;
    pid_t child = -1;
    // posix_spawn takes char *const[] for historical reasons; it does not modify the strings.
    const int error = posix_spawn(&child, arguments[0], &actions, attributes.get(),
                                  const_cast<char *const *>(arguments), const_cast<char *const *>(environment.data()));
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        errno = error;
        return -1;
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return -1;
        }
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// One file is flushed alone; a tree by one flush of its volume, folders included.
void syncCopy(const QByteArray &path, const MoveNames &names)
{
    struct stat status{};
    if (lstat(path.constData(), &status) != 0) {
        names.fail(errno);
    }
    const bool isFile = S_ISREG(status.st_mode);
    const QByteArray opened = isFile ? path : parentOf(path);
    const ScopedFd fd(open(opened.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | (isFile ? 0 : O_DIRECTORY)));
    if (!fd.isOpen() || (isFile ? fsync(fd.get()) : syncfs(fd.get())) != 0) {
        names.fail(errno);
    }
}

} // namespace

StagedCopy::StagedCopy(const QByteArray &source, const QByteArray &target, const MoveNames &names)
    : m_path(hiddenNameForDuplicate(target))
{
    try {
        const QByteArray before = treeState(source);
        m_sourceState = treeStateAcrossRename(source);
        runCopy(source, names);
        requireSameTree(source, m_path, names.target.isEmpty() ? names.path : names.target);
        syncCopy(m_path, names);
        if (treeState(source) != before) {
            throw FileError(FileError::Kind::Other,
                            FileError::fromErrno(EBUSY, names.action, names.path, names.target).errorDescription());
        }
    } catch (...) {
        discardTree(m_path);
        throw;
    }
}

StagedCopy::~StagedCopy()
{
    if (!m_isKept) {
        discardTree(m_path);
    }
}

void StagedCopy::runCopy(const QByteArray &source, const MoveNames &names) const
{
    const ScopedFd messages(memfd_create("cp-messages", MFD_CLOEXEC));
    if (!messages.isOpen()) {
        names.fail(errno);
    }
    // Relative to its folder: the hidden name makes paths longer, and a deep tree would exceed what a call takes.
    const ScopedFd folder(open(parentOf(m_path).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen()) {
        names.fail(errno);
    }
    const QByteArray copy = nameOf(m_path);
    const std::array<const char *, 8> arguments{
        "/usr/bin/cp", "-a", "--reflink=auto", "-T", "--", source.constData(), copy.constData(), nullptr,
    };
    const int status = run(arguments.data(), folder.get(), messages.get());
    if (status < 0) {
        names.fail(errno);
    }
    if (status != 0) {
        const int reason = reasonIn(contentOf(messages.get()));
        names.fail(reason == 0 ? EIO : reason);
    }
}

} // namespace quillhaven
