// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/ProcessLock.h"

#include "platform/FileError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace quillhaven {

namespace {

constexpr char ending = 'e';

ScopedFd openLockFile(const QString &path)
{
    return ScopedFd(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
}

QString lockPath(const QString &directory)
{
    return directory + QStringLiteral("/quillhaven.lock");
}

} // namespace

ProcessLock::ProcessLock(const QString &directory, const QString &fallback)
    : m_path(lockPath(directory)), m_fallbackPath(lockPath(fallback))
{
    QDir().mkpath(QFileInfo(directory).path());
    ::mkdir(QFile::encodeName(directory).constData(), 0700);
}

ScopedFd ProcessLock::open() const
{
    ScopedFd file = openLockFile(m_path);
    const int error = errno;
    if (!file.isOpen()) {
        file = openLockFile(m_fallbackPath);
    }
    if (!file.isOpen()) {
        throw FileError::fromErrno(error, FileError::Action::Write, m_path);
    }
    return file;
}

bool ProcessLock::take()
{
    ScopedFd file = open();
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        return false;
    }
    (void)::ftruncate(file.get(), 0); // What an earlier holder announced is over.
    m_file = std::move(file);
    return true;
}

void ProcessLock::announceEnd() const
{
    if (m_file.isOpen()) {
        (void)!::pwrite(m_file.get(), &ending, 1, 0);
    }
}

bool ProcessLock::isEnding() const
{
    const ScopedFd file = open();
    char mark = 0;
    return ::pread(file.get(), &mark, 1, 0) == 1 && mark == ending;
}

} // namespace quillhaven
