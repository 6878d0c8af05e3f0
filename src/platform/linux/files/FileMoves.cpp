// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/FileMoves.h"

#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/FolderEntries.h"
#include "platform/linux/files/HiddenNames.h"
#include "platform/linux/files/RemoveTree.h"
#include "platform/linux/files/StagedCopy.h"
#include "platform/linux/files/TreeComparison.h"
#include "support/printLogger.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace quillhaven {

namespace {

bool isFlagUnknown(int error)
{
    return error == EINVAL || error == ENOSYS || error == ENOTSUP;
}

int renameWithFlag(const QByteArray &source, const QByteArray &target, unsigned flag)
{
    return renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), flag) == 0 ? 0 : errno;
}

int plainRename(const QByteArray &source, const QByteArray &target)
{
    return rename(source.constData(), target.constData()) == 0 ? 0 : errno;
}

struct stat statusOf(const QByteArray &path, const MoveNames &names)
{
    struct stat status{};
    if (lstat(path.constData(), &status) != 0) {
        names.fail(errno);
    }
    return status;
}

/// Whether there is anything at the path, be it a dangling link.
bool exists(const QByteArray &path)
{
    struct stat status{};
    return lstat(path.constData(), &status) == 0;
}

bool isSameInode(const struct stat &a, const struct stat &b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool isInState(const QByteArray &path, const QByteArray &state) noexcept
{
    try {
        return treeStateAcrossRename(path) == state;
    } catch (const FileError &) {
        return false;
    }
}

/// Gives what must not be discarded a name that says so.
void keepAside(const QByteArray &aside, const QByteArray &kept)
{
    const bool isKept = plainRename(aside, kept) == 0;
    printLogger(QStringLiteral("An item was changed while it was moved. What it held is now ") +
                QFile::decodeName(isKept ? kept : aside));
}

/// Removes an item that has a whole successor elsewhere, a copy of what was there in `state`. It is renamed first,
/// which is one step and fails with the item whole, so that nothing can come into it by its path any more; then it is
/// compared with the state, and goes back to its place when it has been changed meanwhile. When the removal fails,
/// nothing of what remains is needed: that is logged and is no failure. Returns 0, or an error number with the item at
/// its place.
int removeReplaced(const QByteArray &path, const QByteArray &state)
{
    const QByteArray aside = hiddenNameForDuplicate(path);
    const int error = renameWithoutReplacing(path, aside);
    if (error != 0) {
        return error;
    }
    if (isInState(aside, state)) {
        discardTree(aside);
    } else if (renameWithoutReplacing(aside, path) == 0) {
        return EBUSY;
    } else {
        keepAside(aside, hiddenNameForOriginal(path)); // Something new exists at the place.
    }
    return 0;
}

/// Puts `replacement`, on the same file system, in the place of `original`. Returns 0, or the error number with both
/// items where they were.
int swapIn(const QByteArray &original, const struct stat &old, const QByteArray &replacement, const struct stat &fresh)
{
    if (!S_ISDIR(old.st_mode) && !S_ISDIR(fresh.st_mode)) {
        return plainRename(replacement, original);
    }
    if (old.st_dev != fresh.st_dev) {
        return EXDEV;
    }
    // Finds a folder that could not be emptied afterwards while both items are still whole.
    requireRemovable(original);
    // The names are not exchanged: a program that ended right after that would leave the old item under the name of the
    // new one, and later mistake it for that. Aside it has a name that is discarded later.
    const QByteArray aside = hiddenNameForDuplicate(original);
    if (const int error = renameWithoutReplacing(original, aside)) {
        return error;
    }
    if (const int error = renameWithoutReplacing(replacement, original)) {
        if (renameWithoutReplacing(aside, original) != 0) {
            (void)renameWithoutReplacing(aside, original);
        }
        return error;
    }
    discardTree(aside);
    return 0;
}

/// For two names of one file, with which a plain rename would do nothing and report success.
void dropSecondName(const QByteArray &original, const QByteArray &replacement, const MoveNames &names)
{
    const struct stat folder = statusOf(parentOf(original), names);
    const struct stat otherFolder = statusOf(parentOf(replacement), names);
    const bool isOneName = isSameInode(folder, otherFolder) &&
                           original.mid(original.lastIndexOf('/')) == replacement.mid(replacement.lastIndexOf('/'));
    if (isOneName || statusOf(original, names).st_nlink < 2) {
        names.fail(EINVAL);
    }
    if (unlink(replacement.constData()) != 0) {
        names.fail(errno);
    }
    syncParentFolders(replacement);
}

} // namespace

int renameWithoutFlags(const QByteArray &source, const QByteArray &target)
{
    struct stat status{};
    if (lstat(source.constData(), &status) != 0) {
        return errno;
    }
    if (!S_ISDIR(status.st_mode) && link(source.constData(), target.constData()) == 0) {
        if (unlink(source.constData()) == 0) {
            return 0;
        }
        const int error = errno;
        unlink(target.constData());
        return error;
    }
    if (lstat(target.constData(), &status) == 0) {
        return EEXIST;
    }
    return errno == ENOENT ? plainRename(source, target) : errno;
}

int renameWithoutReplacing(const QByteArray &source, const QByteArray &target)
{
    const int error = renameWithFlag(source, target, RENAME_NOREPLACE);
    return isFlagUnknown(error) ? renameWithoutFlags(source, target) : error;
}

void FileMoves::cleanFoldersOf(const QByteArray &source, const QByteArray &target)
{
    m_cleanedFolders.clean(parentOf(source));
    m_cleanedFolders.clean(parentOf(target));
}

// The source is removed only after its compared copy has its name on the device. Any failure before that leaves the
// source whole and nothing at the target. A crash in between leaves both whole.
void FileMoves::moveAcross(const QByteArray &source, const QByteArray &target, const MoveNames &names)
{
    if (exists(target)) {
        names.fail(EEXIST);
    }
    requireRemovable(source);
    cleanFoldersOf(source, target);
    StagedCopy copy(source, target, names);
    if (const int error = renameWithoutReplacing(copy.path(), target)) {
        names.fail(error);
    }
    copy.keep();
    const int error = syncParentFolders(target) ? removeReplaced(source, copy.sourceState()) : EIO;
    if (error != 0) {
        removeTree(target, ReadOnlyFolders::Open);
        names.fail(error);
    }
    syncParentFolders(source);
}

// As in `moveAcross`, the replacement is removed only after its copy has taken the place on the device.
void FileMoves::replaceAcross(const QByteArray &original, const struct stat &old, const QByteArray &replacement,
                              const MoveNames &names)
{
    requireRemovable(replacement);
    cleanFoldersOf(replacement, original);
    StagedCopy copy(replacement, original, names);
    if (const int error = swapIn(original, old, copy.path(), statusOf(copy.path(), names))) {
        names.fail(error);
    }
    copy.keep();
    if (!syncParentFolders(original)) {
        names.fail(EIO); // The replacement is at both places, and stays until the device has it.
    }
    if (const int error = removeReplaced(replacement, copy.sourceState())) {
        names.fail(error);
    }
    syncParentFolders(replacement);
}

void FileMoves::move(const QByteArray &source, const QByteArray &target, const MoveNames &names)
{
    (void)statusOf(source, names);
    const int error = renameWithoutReplacing(source, target);
    if (error == EXDEV) {
        moveAcross(source, target, names);
    } else if (error != 0) {
        names.fail(error);
    } else {
        syncParentFolders(target, source);
    }
}

void FileMoves::copy(const QByteArray &source, const QByteArray &target, const MoveNames &names)
{
    if (exists(target)) {
        names.fail(EEXIST);
    }
    cleanFoldersOf(source, target);
    StagedCopy copy(source, target, names);
    if (const int error = renameWithoutReplacing(copy.path(), target)) {
        names.fail(error);
    }
    copy.keep();
    if (!syncParentFolders(target)) {
        removeTree(target, ReadOnlyFolders::Open);
        names.fail(EIO);
    }
}

void FileMoves::replace(const QByteArray &original, const QByteArray &replacement, const MoveNames &names)
{
    const struct stat old = statusOf(original, names);
    const struct stat fresh = statusOf(replacement, names);
    if (isSameInode(old, fresh)) {
        dropSecondName(original, replacement, names);
        return;
    }
    const int error = swapIn(original, old, replacement, fresh);
    if (error == EXDEV) {
        replaceAcross(original, old, replacement, names);
    } else if (error != 0) {
        names.fail(error);
    } else {
        syncParentFolders(original, replacement);
    }
}

} // namespace quillhaven
