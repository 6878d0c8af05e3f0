// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileBuffer.h"
#include "platform/FileError.h"
#include "platform/FileHandle.h"
#include "platform/FileReader.h"
#include "platform/FileWriter.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <span>

namespace quillhaven {

/// A file and its size in bytes at the time of looking.
struct FileEntry
{
    QString path;
    int64_t size = 0;

    bool operator==(const FileEntry &) const = default;
};

/// What a file is, whatever path leads to it: the device and inode numbers of POSIX <sys/stat.h>.
struct FileIdentity
{
    quint64 device = 0;
    quint64 inode = 0;
    bool hasOtherNames = false; ///< a file with several hard links; no part of its identity

    bool operator==(const FileIdentity &other) const { return device == other.device && inode == other.inode; }
};

/// Whether the last component of a path, when it is a link, means the link itself or what it points to.
enum class Links { Keep, Follow };

/// The file operations of the platform. Paths are absolute; text that one call returned leads back to the same file in
/// another, whatever bytes its name has. Any thread may call it. The calls that change files block, so that they belong
/// off the main thread. Every failing call throws a FileError.
class FileManager
{
public:
    FileManager() = default;
    virtual ~FileManager() = default;
    FileManager(const FileManager &) = delete;
    FileManager &operator=(const FileManager &) = delete;

    /// Whether something exists at the path. A link counts by what it points to, so a dangling one does not exist. What
    /// cannot be examined for another reason than its absence counts as existing.
    [[nodiscard]] virtual bool fileExists(const QString &path) const = 0;
    /// Whether the path is a folder or a link to one.
    [[nodiscard]] virtual bool isDirectory(const QString &path) const = 0;
    /// The identity of the file or folder at the path, or nothing when none exists or it cannot be examined.
    [[nodiscard]] virtual std::optional<FileIdentity> identityOfItem(const QString &path, Links links) const = 0;
    /// The path without links in it, or the path itself when it leads to nothing.
    [[nodiscard]] virtual QString resolvedPath(const QString &path) const = 0;
    /// Whether this process may write to the item at the path.
    [[nodiscard]] virtual bool isWritableFile(const QString &path) const = 0;
    /// Throws unless the path leads to a folder, or to a regular file that can be read and that fits in memory together
    /// with `headroom` bytes, and this user may move it out of its folder. Throws `OnlyALink` for a relative link,
    /// which would lead nowhere after a move.
    virtual void requireReadableAndMovable(const QString &path, size_t headroom) const = 0;

    /// The names in a folder, in the order in which the system lists them, without "." and "..".
    [[nodiscard]] virtual QStringList contentsOfDirectory(const QString &path) const = 0;
    /// Makes the folder and the missing ones above it. No error when it exists already.
    virtual void createDirectory(const QString &path) = 0;
    /// Moves a file or folder, also to another file system, with its metadata, flushed to the device. Fails with
    /// `TargetExists` when something exists at `target`. On failure the source is whole and nothing is at the target.
    virtual void moveItem(const QString &source, const QString &target) = 0;
    /// Gives an item another, free name in its folder, without waiting for the device.
    virtual void renameItem(const QString &path, const QString &newPath) = 0;
    /// Puts `replacement` in the place of `original`, which must exist. Either may be a folder. Afterwards nothing is
    /// at `replacement`; on failure `original` is whole. A file takes a file's place in one step. With a folder the
    /// place is empty for a moment: a program that ends then leaves `replacement` where it was, and `original` as an
    /// abandoned item.
    virtual void replaceItemAt(const QString &original, const QString &replacement) = 0;
    /// Copies a file or folder with its metadata to a free name, flushed to the device. Fails with `TargetExists` when
    /// the name is not free. On any other failure nothing is at `target`.
    virtual void copyItem(const QString &source, const QString &target) = 0;
    /// Removes a file, a link itself, or a folder with all it holds.
    virtual void removeItem(const QString &path) = 0;
    /// Moves a file, a link itself or a folder to the user's trash, from which it can be restored. Fails where there is
    /// no trash.
    virtual void trashItem(const QString &path) = 0;
    /// Removes what an interrupted move, copy or replacement left in the folder: a duplicate, or what was replaced.
    /// What cannot be removed is logged.
    virtual void discardAbandonedItems(const QString &folder) = 0;

    /// Opens a regular file, or what a link to one leads to, for reading.
    [[nodiscard]] virtual std::unique_ptr<FileReader> openForReading(const QString &path) const = 0;
    /// Reads a whole regular file. Throws `TooLargeForMemory` before anything that cannot fit is read.
    [[nodiscard]] FileBuffer readFile(const QString &path) const;
    /// Opens a file to be written in place, not atomically: makes it, for this user alone, or empties the one that
    /// exists.
    [[nodiscard]] virtual std::unique_ptr<FileWriter> openForWriting(const QString &path) = 0;
    /// Writes a whole file so.
    void writeFile(const QString &path, std::span<const std::byte> bytes);
    /// Makes a file, for this user alone. Fails with `TargetExists` when anything exists at the path, be it a link that
    /// leads nowhere.
    [[nodiscard]] virtual std::unique_ptr<FileWriter> createForWriting(const QString &path) = 0;
    /// Writes a whole file so.
    void createFile(const QString &path, std::span<const std::byte> bytes);

    /// The size of the item at the path, in bytes; a link counts by itself.
    [[nodiscard]] virtual int64_t sizeOfItem(const QString &path) const = 0;
    [[nodiscard]] virtual QDateTime modificationDateOfItem(const QString &path) const = 0;
    /// Whether both paths lead to items with the same content and the same metadata: two files, or two folders with the
    /// same items. False also for what cannot be read.
    [[nodiscard]] virtual bool contentsEqual(const QString &path, const QString &other) const = 0;
    /// The free space for this user on the volume of an item, in bytes.
    [[nodiscard]] virtual int64_t availableSpace(const QString &path) const = 0;
    /// Every regular file below a folder at any depth, hidden ones included, in a fixed order. Links are not followed.
    /// Throws for a link, for a folder inside that cannot be listed, and for another volume mounted inside. A folder
    /// that itself cannot be listed counts as empty.
    [[nodiscard]] virtual QList<FileEntry> regularFilesBelow(const QString &folder) const = 0;
    /// Opens a regular file to be overwritten in place. Throws for a link and for what is no regular file.
    [[nodiscard]] virtual std::unique_ptr<FileHandle> openForOverwriting(const QString &path) = 0;
    /// Flushes everything that was written to any file system to its device.
    virtual void sync() = 0;
};

} // namespace quillhaven
