// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/FileMoves.h"

#include "platform/linux/files/DiscardableItems.h"
#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/RemoveTree.h"

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

bool isSameInode(const struct stat &a, const struct stat &b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// Removes an item that something else has replaced, in two steps: under a hidden name first, which is one step and
/// fails with the item whole, and then for good. When the second step breaks off, what is left stands under the hidden
/// name, and nothing of it is needed any more: the whole item stands at its new place. So that is logged, no failure.
/// Returns 0 or the error number of the first step.
int removeReplaced(const QByteArray &path)
{
    const QByteArray aside = discardableNameBeside(path);
    const int error = renameWithoutReplacing(path, aside);
    if (error != 0) {
        return error;
    }
    discardTree(aside);
    return 0;
}

/// The source goes only after its compared copy has its name on the device. Before that every failure leaves the source
/// whole and nothing at the target. A crash between leaves both whole.
void moveAcross(const QByteArray &source, const QByteArray &target, const MoveNames &names)
{
    if (standsAt(target)) {
        names.fail(EEXIST);
    }
    requireRemovable(source);
    CrossDeviceCopy copy(source, target, names);
    if (const int error = renameWithoutReplacing(copy.path(), target)) {
        names.fail(error);
    }
    copy.keep();
    const int error = syncParents(target) ? removeReplaced(source) : EIO;
    if (error != 0) {
        removeTree(target);
        names.fail(error);
    }
    syncParents(source);
}

/// Puts `replacement`, on the same file system, in the place of `original`. Returns 0 or the error number; then both
/// stand where they stood.
int swapIn(const QByteArray &original, const struct stat &old, const QByteArray &replacement, const struct stat &fresh)
{
    if (!S_ISDIR(old.st_mode) && !S_ISDIR(fresh.st_mode)) {
        return plainRename(replacement, original);
    }
    if (old.st_dev != fresh.st_dev) {
        return EXDEV;
    }
    // Found out now, while both are whole: a folder that could not be emptied afterwards.
    requireRemovable(original);
    // Not by an exchange of the names: a program that ended right behind it would leave the old item at the name of the
    // new one, to be taken for it later.
    const QByteArray aside = hiddenNameBeside(original);
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

/// As in `moveAcross`, the replacement goes only after its copy has taken its place on the device.
void replaceAcross(const QByteArray &original, const struct stat &old, const QByteArray &replacement,
                   const MoveNames &names)
{
    requireRemovable(replacement);
    CrossDeviceCopy copy(replacement, original, names);
    if (const int error = swapIn(original, old, copy.path(), statusOf(copy.path(), names))) {
        names.fail(error);
    }
    copy.keep();
    if (!syncParents(original)) {
        names.fail(EIO); // The replacement stands at both places; nothing of it goes before the device has it.
    }
    if (const int error = removeReplaced(replacement)) {
        names.fail(error);
    }
    syncParents(replacement);
}

/// Two names of one file: a plain rename would do nothing and call it a success.
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
    syncParents(replacement);
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

void moveTo(const QByteArray &source, const QByteArray &target, const MoveNames &names)
{
    (void)statusOf(source, names);
    const int error = renameWithoutReplacing(source, target);
    if (error == EXDEV) {
        moveAcross(source, target, names);
    } else if (error != 0) {
        names.fail(error);
    } else {
        syncParents(target, source);
    }
}

void copyTo(const QByteArray &source, const QByteArray &target, const MoveNames &names)
{
    if (standsAt(target)) {
        names.fail(EEXIST);
    }
    CrossDeviceCopy copy(source, target, names);
    if (const int error = renameWithoutReplacing(copy.path(), target)) {
        names.fail(error);
    }
    copy.keep();
    if (!syncParents(target)) {
        removeTree(target);
        names.fail(EIO);
    }
}

void putInPlaceOf(const QByteArray &original, const QByteArray &replacement, const MoveNames &names)
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
        syncParents(original, replacement);
    }
}

} // namespace quillhaven
