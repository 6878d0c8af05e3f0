// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/TreeComparison.h"

#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/ScopedFd.h"

#include <QCryptographicHash>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <utility>

namespace quillhaven {

namespace {

using InodeKey = std::pair<dev_t, ino_t>;

/// One entry of an open folder. The path is for messages.
struct Entry
{
    int folder;
    QByteArray name;
    QByteArray path;
    struct stat status{};

    [[noreturn]] void fail(int error) const
    {
        throw FileError::fromErrno(error, FileError::Action::Read, QFile::decodeName(path));
    }
    void readStatus()
    {
        if (fstatat(folder, name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
            fail(errno);
        }
    }
    /// Without touching the access time, where the owner asks.
    [[nodiscard]] ScopedFd open(int flags) const
    {
        const int all = flags | O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
        ScopedFd fd(openat(folder, name.constData(), all | O_NOATIME));
        if (!fd.isOpen() && errno == EPERM) {
            fd = ScopedFd(openat(folder, name.constData(), all));
        }
        if (!fd.isOpen()) {
            fail(errno);
        }
        return fd;
    }
    /// A path that leads to the entry itself, for the calls that take no folder.
    [[nodiscard]] QByteArray callPath() const { return "/proc/self/fd/" + QByteArray::number(folder) + '/' + name; }
    [[nodiscard]] std::vector<QByteArray> children(int fd) const
    {
        std::vector<QByteArray> names;
        if (!readEntries(fd, names)) {
            fail(errno);
        }
        return names;
    }
};

Entry topEntry(const ScopedFd &parent, const QByteArray &path)
{
    Entry entry{parent.get(), path.mid(path.lastIndexOf('/') + 1), path};
    if (!parent.isOpen()) {
        entry.fail(errno);
    }
    entry.readStatus();
    return entry;
}

ScopedFd openParent(const QByteArray &path)
{
    return ScopedFd(open(parentOf(path).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

template <typename Number>
void addNumber(QCryptographicHash &digest, Number number)
{
    digest.addData(QByteArrayView(reinterpret_cast<const char *>(&number), sizeof number));
}

void addState(QCryptographicHash &digest, const Entry &entry, dev_t volume)
{
    const struct stat &status = entry.status;
    if (status.st_dev != volume) {
        entry.fail(EXDEV);
    }
    digest.addData(entry.name + '\0');
    addNumber(digest, status.st_ino);
    addNumber(digest, status.st_mode);
    addNumber(digest, status.st_uid);
    addNumber(digest, status.st_gid);
    addNumber(digest, status.st_size);
    addNumber(digest, status.st_mtim.tv_sec);
    addNumber(digest, status.st_mtim.tv_nsec);
    addNumber(digest, status.st_ctim.tv_sec);
    addNumber(digest, status.st_ctim.tv_nsec);
    if (!S_ISDIR(status.st_mode)) {
        return;
    }
    const ScopedFd fd = entry.open(O_DIRECTORY);
    for (const QByteArray &name : entry.children(fd.get())) {
        Entry child{fd.get(), name, entry.path + '/' + name};
        child.readStatus();
        addState(digest, child, volume);
    }
    digest.addData(QByteArrayLiteral("/"));
}

/// Labels that the system's policy or the file system itself gives each file anew are no property of the item.
bool belongsToTheItem(const QByteArray &attribute)
{
    return attribute.startsWith("user.") || attribute.startsWith("trusted.") || attribute == "security.capability" ||
           attribute.startsWith("system.posix_acl_");
}

using Attributes = std::map<QByteArray, QByteArray>;

Attributes attributesOf(const Entry &entry)
{
    const QByteArray path = entry.callPath();
    const ssize_t listSize = llistxattr(path.constData(), nullptr, 0);
    Attributes attributes;
    if (listSize < 0 && errno != ENOTSUP) {
        entry.fail(errno);
    }
    if (listSize <= 0) {
        return attributes;
    }
    QByteArray list(listSize, '\0');
    if (llistxattr(path.constData(), list.data(), static_cast<size_t>(list.size())) != listSize) {
        entry.fail(EAGAIN);
    }
    for (const QByteArray &name : list.split('\0')) {
        if (!belongsToTheItem(name)) {
            continue;
        }
        const ssize_t size = lgetxattr(path.constData(), name.constData(), nullptr, 0);
        if (size < 0) {
            entry.fail(errno);
        }
        QByteArray value(size, '\0');
        if (lgetxattr(path.constData(), name.constData(), value.data(), static_cast<size_t>(size)) != size) {
            entry.fail(EAGAIN);
        }
        attributes.emplace(name, value);
    }
    return attributes;
}

QByteArray linkTarget(const Entry &entry)
{
    QByteArray target(PATH_MAX, '\0');
    const ssize_t size =
        readlinkat(entry.folder, entry.name.constData(), target.data(), static_cast<size_t>(target.size()));
    if (size < 0) {
        entry.fail(errno);
    }
    return target.left(size);
}

size_t readFully(const Entry &entry, int fd, char *data, size_t size)
{
    size_t done = 0;
    while (done < size) {
        const ssize_t count = read(fd, data + done, size - done);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            entry.fail(errno);
        }
        if (count == 0) {
            break;
        }
        done += static_cast<size_t>(count);
    }
    return done;
}

bool haveSameContent(const Entry &source, const Entry &copy)
{
    constexpr size_t chunk = size_t{256} * 1024;
    const ScopedFd sourceFd = source.open(0);
    const ScopedFd copyFd = copy.open(0);
    const auto buffer = std::make_unique<char[]>(2 * chunk);
    for (;;) {
        const size_t size = readFully(source, sourceFd.get(), buffer.get(), chunk);
        if (readFully(copy, copyFd.get(), buffer.get() + chunk, chunk) != size ||
            std::memcmp(buffer.get(), buffer.get() + chunk, size) != 0) {
            return false;
        }
        if (size < chunk) {
            return true;
        }
    }
}

class Comparison
{
public:
    Comparison(QByteArray sourceRoot, QString target) : m_sourceRoot(std::move(sourceRoot)), m_target(std::move(target))
    {
    }

    void compare(const Entry &source, const Entry &copy)
    {
        const struct stat &a = source.status;
        const struct stat &b = copy.status;
        require((a.st_mode & S_IFMT) == (b.st_mode & S_IFMT), source, QStringLiteral("the type"));
        compareContent(source, copy); // Before the folder's own times: reading changes none of them.
        require(a.st_uid == b.st_uid && a.st_gid == b.st_gid, source, QStringLiteral("the owner"));
        require((a.st_mode & 07777) == (b.st_mode & 07777), source, QStringLiteral("the permissions"));
        require(attributesOf(source) == attributesOf(copy), source, QStringLiteral("an attribute"));
        require(a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec, source,
                QStringLiteral("the time of change"));
    }

private:
    void require(bool isSame, const Entry &source, const QString &what) const
    {
        if (isSame) {
            return;
        }
        const QByteArray name = source.path.mid(m_sourceRoot.lastIndexOf('/') + 1);
        const QString place = m_target.section(QLatin1Char('/'), -2, -2);
        throw FileError(FileError::Kind::NotPreserved, QStringLiteral("Could not move \"") + QFile::decodeName(name) +
                                                           QStringLiteral("\" to \"") + place +
                                                           QStringLiteral("\" because ") + what +
                                                           QStringLiteral(" of the item would be lost there."));
    }

    void compareContent(const Entry &source, const Entry &copy)
    {
        const struct stat &status = source.status;
        if (S_ISDIR(status.st_mode)) {
            compareFolder(source, copy);
        } else if (S_ISLNK(status.st_mode)) {
            require(linkTarget(source) == linkTarget(copy), source, QStringLiteral("the link"));
        } else if (S_ISREG(status.st_mode)) {
            require(status.st_size == copy.status.st_size && haveSameContent(source, copy), source,
                    QStringLiteral("the content"));
        } else {
            require(status.st_rdev == copy.status.st_rdev, source, QStringLiteral("the device number"));
        }
        if (!S_ISDIR(status.st_mode) && status.st_nlink > 1) {
            compareHardLinks(source, copy);
        }
    }

    void compareHardLinks(const Entry &source, const Entry &copy)
    {
        const InodeKey sourceKey{source.status.st_dev, source.status.st_ino};
        const InodeKey copyKey{copy.status.st_dev, copy.status.st_ino};
        const bool isSame = m_copyOf.emplace(sourceKey, copyKey).first->second == copyKey &&
                            m_sourceOf.emplace(copyKey, sourceKey).first->second == sourceKey;
        require(isSame, source, QStringLiteral("a hard link"));
    }

    void compareFolder(const Entry &source, const Entry &copy)
    {
        const ScopedFd sourceFd = source.open(O_DIRECTORY);
        const ScopedFd copyFd = copy.open(O_DIRECTORY);
        const std::vector<QByteArray> names = source.children(sourceFd.get());
        require(names == copy.children(copyFd.get()), source, QStringLiteral("a name"));
        for (const QByteArray &name : names) {
            Entry sourceChild{sourceFd.get(), name, source.path + '/' + name};
            Entry copyChild{copyFd.get(), name, copy.path + '/' + name};
            sourceChild.readStatus();
            copyChild.readStatus();
            compare(sourceChild, copyChild);
        }
    }

    QByteArray m_sourceRoot;
    QString m_target;
    std::map<InodeKey, InodeKey> m_copyOf;
    std::map<InodeKey, InodeKey> m_sourceOf;
};

} // namespace

QByteArray treeState(const QByteArray &path)
{
    const ScopedFd parent = openParent(path);
    const Entry entry = topEntry(parent, path);
    QCryptographicHash digest(QCryptographicHash::Sha256);
    addState(digest, entry, entry.status.st_dev);
    return digest.result();
}

void requireSameTree(const QByteArray &source, const QByteArray &copy, const QString &target)
{
    const ScopedFd sourceParent = openParent(source);
    const ScopedFd copyParent = openParent(copy);
    Comparison comparison(source, target);
    comparison.compare(topEntry(sourceParent, source), topEntry(copyParent, copy));
}

} // namespace quillhaven
