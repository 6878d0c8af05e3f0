// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/XdgDirectories.h"

#include "platform/FileError.h"
#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/ScopedFd.h"
#include "support/printLogger.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
    if (faccessat(AT_FDCWD, name.constData(), W_OK | X_OK, AT_EACCESS) != 0) {
        throw FileError::fromErrno(errno, FileError::Action::Use, path);
    }
}

/// Where the temporary directory may be. Anybody can take the names in the shared folders, but not those in the user's
/// own.
QStringList temporaryPlaces()
{
    const QString name = QStringLiteral("/quillhaven-") + QString::number(geteuid());
    QStringList places{QDir::cleanPath(QDir::tempPath()) + name, QStringLiteral("/tmp") + name};
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty()) {
        places.append(QDir::cleanPath(runtime) + QStringLiteral("/quillhaven"));
    }
    places.append(place(QStandardPaths::GenericCacheLocation) + QStringLiteral("/quillhaven/tmp"));
    places.removeDuplicates();
    return places;
}

/// Without it the program starts all the same: what is protected already can be given back.
void makeDocuments(const QString &path)
{
    if (QDir().mkpath(path)) {
        return;
    }
    const QFileInfo info(path);
    const QString reason =
        info.isSymLink()
            ? QStringLiteral("it is a link to ") + info.symLinkTarget() + QStringLiteral(", which is missing")
            : FileError::fromErrno(errno, FileError::Action::CreateFolder, path).errorDescription();
    printLogger(QStringLiteral("⚠️ The documents folder %1 cannot be used: %2").arg(path, reason));
}

} // namespace

QString privateDirectoryAmong(const QStringList &paths)
{
    QStringList reasons;
    for (const QString &path : paths) {
        try {
            QDir().mkpath(QFileInfo(path).path());
            makePrivateDirectory(path);
            return path;
        } catch (const FileError &error) {
            reasons.append(path + QStringLiteral(": ") + error.errorDescription());
            printLogger(QStringLiteral("⚠️ Not usable for temporary files: ") + reasons.constLast());
        }
    }
    throw FileError(FileError::Kind::Other, QStringLiteral("There is no place for temporary files. Free one of these "
                                                           "names, or set TMPDIR to a folder of your own.\n") +
                                                reasons.join(QLatin1Char('\n')));
}

UserDirectories xdgDirectories()
{
    UserDirectories directories;
    directories.home = QDir::cleanPath(QDir::homePath());
    directories.applicationSupport = place(QStandardPaths::GenericDataLocation);
    directories.documents = place(QStandardPaths::DocumentsLocation);
    directories.configuration = place(QStandardPaths::GenericConfigLocation) + QStringLiteral("/quillhaven");
    makeDocuments(directories.documents);
    directories.temporary = privateDirectoryAmong(temporaryPlaces());
    return directories;
}

} // namespace quillhaven
