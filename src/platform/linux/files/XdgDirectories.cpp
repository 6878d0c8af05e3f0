// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/XdgDirectories.h"

#include "platform/FileError.h"
#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/ScopedFd.h"

#include <QDir>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace quillhaven {

namespace {

QString place(QStandardPaths::StandardLocation location)
{
    return QDir::cleanPath(QStandardPaths::writableLocation(location));
}

/// Another user may have made a link or a folder of this name first in the shared folder above, to read or replace what
/// is put there. So the folder is used only if it is a folder, no link, and this user's.
void makePrivateDirectory(const QString &path)
{
    constexpr mode_t ownerOnly = 0700;
    const QByteArray name = encodedPath(path, FileError::Action::CreateFolder);
    if (mkdir(name.constData(), ownerOnly) != 0 && errno != EEXIST) {
        throw FileError::fromErrno(errno, FileError::Action::CreateFolder, path);
    }
    struct stat status{};
    if (lstat(name.constData(), &status) != 0) {
        throw FileError::fromErrno(errno, FileError::Action::CreateFolder, path);
    }
    if (!S_ISDIR(status.st_mode)) {
        throw FileError::of(FileError::Kind::TargetExists, FileError::Action::CreateFolder, path);
    }
    const ScopedFd folder(open(name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (status.st_uid != geteuid() || !folder.isOpen() || fstat(folder.get(), &status) != 0 ||
        status.st_uid != geteuid()) {
        throw FileError::of(FileError::Kind::NoPermission, FileError::Action::CreateFolder, path);
    }
    if ((status.st_mode & 07777) != ownerOnly && fchmod(folder.get(), ownerOnly) != 0) {
        throw FileError::fromErrno(errno, FileError::Action::CreateFolder, path);
    }
}

} // namespace

UserDirectories xdgDirectories()
{
    UserDirectories directories;
    directories.home = QDir::cleanPath(QDir::homePath());
    directories.applicationSupport = place(QStandardPaths::GenericDataLocation);
    directories.documents = place(QStandardPaths::DocumentsLocation);
    directories.configuration = place(QStandardPaths::GenericConfigLocation) + QStringLiteral("/quillhaven");
    directories.temporary =
        QDir::cleanPath(QDir::tempPath()) + QStringLiteral("/quillhaven-") + QString::number(geteuid());
    if (!QDir().mkpath(directories.documents)) {
        throw FileError::fromErrno(errno, FileError::Action::CreateFolder, directories.documents);
    }
    makePrivateDirectory(directories.temporary);
    return directories;
}

} // namespace quillhaven
