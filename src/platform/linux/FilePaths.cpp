#include "platform/linux/FilePaths.h"

#include "platform/linux/ScopedFd.h"

#include <QFile>
#include <QUuid>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

namespace quillhaven {

QByteArray encodedPath(const QString &path, FileError::Action action)
{
    const QByteArray name = QFile::encodeName(path);
    if (path.contains(QChar(u'\0')) || QFile::decodeName(name) != path) {
        throw FileError::of(FileError::Kind::InvalidName, action, path);
    }
    return name;
}

bool hasReplacementCharacter(const QString &path)
{
    return path.contains(QChar(QChar::ReplacementCharacter));
}

QByteArray parentOf(const QByteArray &path)
{
    qsizetype end = path.size();
    while (end > 1 && path.at(end - 1) == '/') {
        --end;
    }
    const qsizetype slash = path.lastIndexOf('/', end - 1);
    if (slash < 0) {
        return QByteArrayLiteral(".");
    }
    return slash == 0 ? QByteArrayLiteral("/") : path.left(slash);
}

QByteArray hiddenNameBeside(const QByteArray &path)
{
    return parentOf(path) + "/.quillhaven-" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
}

bool standsAt(const QByteArray &path)
{
    struct stat status{};
    return lstat(path.constData(), &status) == 0;
}

bool syncParents(const QByteArray &path, const QByteArray &other)
{
    bool isSynced = true;
    const auto sync = [&isSynced](const QByteArray &folder) {
        const ScopedFd fd(open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (fd.isOpen() && fsync(fd.get()) != 0) {
            isSynced = isSynced && errno != EIO && errno != ENOSPC && errno != EDQUOT;
        }
    };
    sync(parentOf(path));
    if (!other.isEmpty() && parentOf(other) != parentOf(path)) {
        sync(parentOf(other));
    }
    return isSynced;
}

bool readEntries(int folder, std::vector<QByteArray> &names)
{
    ScopedFd own(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    DIR *stream = own.isOpen() ? fdopendir(own.get()) : nullptr;
    if (stream == nullptr) {
        return false;
    }
    (void)own.release(); // The stream closes it.
    errno = 0;
    while (const dirent *entry = readdir(stream)) {
        const QByteArray name(entry->d_name);
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    const int error = errno;
    closedir(stream);
    errno = error;
    std::ranges::sort(names);
    return error == 0;
}

} // namespace quillhaven
