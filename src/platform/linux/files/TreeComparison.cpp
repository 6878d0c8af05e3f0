// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/TreeComparison.h"

#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/FolderDescent.h"
#include "platform/linux/files/FolderEntries.h"
#include "platform/linux/files/TreeWalk.h"

#include <QCryptographicHash>
#include <QList>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <utility>

namespace quillhaven {

namespace {

using InodeKey = std::pair<dev_t, ino_t>;

/// What lstat(2) says about an entry of an open folder. The path is for messages.
struct Entry
{
    Entry(int folder, const QByteArray &name, const QByteArray &path) : folder(folder), name(name), path(path)
    {
        if (fstatat(folder, name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
            fail(errno);
        }
    }
    explicit Entry(const TreeEntry &entry) : Entry(entry.folder, entry.name, entry.path) {}

    [[noreturn]] void fail(int error) const
    {
        throw FileError::fromErrno(error, FileError::Action::Read, decodedPath(path));
    }
    [[nodiscard]] ScopedFd open(int flags) const
    {
        ScopedFd fd = openWithoutAccessTime(folder, name, flags);
        if (!fd.isOpen()) {
            fail(errno);
        }
        return fd;
    }
    /// A path that leads to the entry itself, for the calls that take no folder.
    [[nodiscard]] QByteArray callPath() const { return "/proc/self/fd/" + QByteArray::number(folder) + '/' + name; }
    [[nodiscard]] bool isFolder() const { return S_ISDIR(status.st_mode); }

    int folder;
    QByteArray name;
    QByteArray path;
    struct stat status{};
};

template <typename Number>
void addNumber(QCryptographicHash &digest, Number number)
{
    digest.addData(QByteArrayView(reinterpret_cast<const char *>(&number), sizeof number));
}

class StateDigest final : public TreeVisitor
{
public:
    enum class Root { Exact, Renamed };

    explicit StateDigest(Root root) : m_isRenamedRoot(root == Root::Renamed) {}

    [[nodiscard]] bool visit(const TreeEntry &treeEntry) override
    {
        const Entry entry(treeEntry);
        const struct stat &status = entry.status;
        if (status.st_dev != m_volume.value_or(status.st_dev)) {
            entry.fail(EXDEV);
        }
        m_volume = status.st_dev;
        if (!m_isRenamedRoot) {
            m_digest.addData(entry.name + '\0');
            addNumber(m_digest, status.st_ctim.tv_sec);
            addNumber(m_digest, status.st_ctim.tv_nsec);
        }
        m_isRenamedRoot = false; // What follows is below the root.
        addNumber(m_digest, status.st_ino);
        addNumber(m_digest, status.st_mode);
        addNumber(m_digest, status.st_uid);
        addNumber(m_digest, status.st_gid);
        addNumber(m_digest, status.st_size);
        addNumber(m_digest, status.st_mtim.tv_sec);
        addNumber(m_digest, status.st_mtim.tv_nsec);
        return entry.isFolder();
    }
    void entered(const TreeEntry & /*entry*/, int /*folder*/, const std::vector<QByteArray> & /*names*/) override {}
    void left(const TreeEntry & /*entry*/) override { m_digest.addData(QByteArrayLiteral("/")); }

    [[nodiscard]] QByteArray result() const { return m_digest.result(); }

private:
    QCryptographicHash m_digest{QCryptographicHash::Sha256};
    std::optional<dev_t> m_volume;
    bool m_isRenamedRoot; ///< the next entry is a root that may be renamed
};

/// Labels that the system's policy or the file system gives to each new file are no property of the item.
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

/// Walks the source and follows in the copy.
class Comparison final : public TreeVisitor
{
public:
    Comparison(QByteArray sourceRoot, QByteArray copyRoot, QString target)
        : m_sourceRoot(std::move(sourceRoot)),
          m_copyRoot(std::move(copyRoot)),
          m_target(std::move(target)),
          m_copies(ScopedFd(open(parentOf(m_copyRoot).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC)))
    {
        if (m_copies.folder() < 0) {
            throw FileError::fromErrno(errno, FileError::Action::Read, decodedPath(m_copyRoot));
        }
    }

    [[nodiscard]] bool visit(const TreeEntry &entry) override
    {
        const Entry source(entry);
        const Entry copy = copyOf(entry);
        const struct stat &a = source.status;
        const struct stat &b = copy.status;
        require((a.st_mode & S_IFMT) == (b.st_mode & S_IFMT), entry, QStringLiteral("the type"));
        if (!source.isFolder()) {
            compareContent(entry, source, copy);
        }
        require(a.st_uid == b.st_uid && a.st_gid == b.st_gid, entry, QStringLiteral("the owner"));
        require((a.st_mode & 07777) == (b.st_mode & 07777), entry, QStringLiteral("the permissions"));
        require(attributesOf(source) == attributesOf(copy), entry, QStringLiteral("an attribute"));
        require(a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec, entry,
                QStringLiteral("the time of change"));
        return source.isFolder();
    }

    void entered(const TreeEntry &entry, int /*folder*/, const std::vector<QByteArray> &names) override
    {
        const Entry copy = copyOf(entry);
        ScopedFd fd = copy.open(O_DIRECTORY);
        std::vector<QByteArray> copiedNames;
        if (!readEntries(fd.get(), copiedNames) || !m_copies.enter(std::move(fd))) {
            copy.fail(errno);
        }
        require(names == copiedNames, entry, QStringLiteral("a name"));
    }

    void left(const TreeEntry &entry) override
    {
        if (!m_copies.leave()) {
            throw FileError::fromErrno(errno, FileError::Action::Read, decodedPath(copyPath(entry)));
        }
    }

private:
    [[nodiscard]] QByteArray copyPath(const TreeEntry &entry) const
    {
        return m_copyRoot + entry.path.mid(m_sourceRoot.size());
    }

    [[nodiscard]] Entry copyOf(const TreeEntry &entry) const
    {
        const bool isRoot = entry.path.size() == m_sourceRoot.size();
        return {m_copies.folder(), isRoot ? nameOf(m_copyRoot) : entry.name, copyPath(entry)};
    }

    void require(bool isSame, const TreeEntry &entry, const QString &what) const
    {
        if (isSame) {
            return;
        }
        const QByteArray name = entry.path.mid(m_sourceRoot.lastIndexOf('/') + 1);
        const QString place = m_target.section(QLatin1Char('/'), -2, -2);
        throw FileError(FileError::Kind::NotPreserved,
                        QStringLiteral("Could not move \"") + decodedPath(name) + QStringLiteral("\" to \"") + place +
                            QStringLiteral("\" because ") + what + QStringLiteral(" of the item would be lost there."));
    }

    void compareContent(const TreeEntry &entry, const Entry &source, const Entry &copy)
    {
        const struct stat &status = source.status;
        if (S_ISLNK(status.st_mode)) {
            require(linkTarget(source) == linkTarget(copy), entry, QStringLiteral("the link"));
        } else if (S_ISREG(status.st_mode)) {
            require(status.st_size == copy.status.st_size && haveSameContent(source, copy), entry,
                    QStringLiteral("the content"));
        } else {
            require(status.st_rdev == copy.status.st_rdev, entry, QStringLiteral("the device number"));
        }
        if (status.st_nlink > 1) {
            compareHardLinks(entry, source, copy);
        }
    }

    void compareHardLinks(const TreeEntry &entry, const Entry &source, const Entry &copy)
    {
        const InodeKey sourceKey{source.status.st_dev, source.status.st_ino};
        const InodeKey copyKey{copy.status.st_dev, copy.status.st_ino};
        const bool isSame = m_copyOf.emplace(sourceKey, copyKey).first->second == copyKey &&
                            m_sourceOf.emplace(copyKey, sourceKey).first->second == sourceKey;
        require(isSame, entry, QStringLiteral("a hard link"));
    }

    QByteArray m_sourceRoot;
    QByteArray m_copyRoot;
    QString m_target;
    FolderDescent m_copies;
    std::map<InodeKey, InodeKey> m_copyOf;
    std::map<InodeKey, InodeKey> m_sourceOf;
};

} // namespace

QByteArray treeState(const QByteArray &path)
{
    StateDigest digest(StateDigest::Root::Exact);
    walkTree(path, FileError::Action::Read, digest);
    return digest.result();
}

QByteArray treeStateAcrossRename(const QByteArray &path)
{
    StateDigest digest(StateDigest::Root::Renamed);
    walkTree(path, FileError::Action::Read, digest);
    return digest.result();
}

void requireSameTree(const QByteArray &source, const QByteArray &copy, const QString &target)
{
    Comparison comparison(source, copy, target);
    walkTree(source, FileError::Action::Read, comparison);
}

} // namespace quillhaven
