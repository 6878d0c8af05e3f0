// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/FileError.h"

#include <cerrno>
#include <cstring>

namespace quillhaven {

namespace {

FileError::Kind kindOf(int errorNumber)
{
    switch (errorNumber) {
    case ENOENT:
    case ENOTDIR:
        return FileError::Kind::NoSuchFile;
    case EACCES:
    case EPERM:
        return FileError::Kind::NoPermission;
    case EEXIST:
    case ENOTEMPTY:
        return FileError::Kind::TargetExists;
    case ENOSPC:
    case EDQUOT:
        return FileError::Kind::NoSpace;
    case EROFS:
        return FileError::Kind::ReadOnlyVolume;
    case ENXIO:
    case ENODEV:
        return FileError::Kind::NotAFileOrFolder;
    case ENOMEM:
        return FileError::Kind::TooLargeForMemory;
    case ENAMETOOLONG:
    case EILSEQ:
        return FileError::Kind::InvalidName;
    default:
        return FileError::Kind::Other;
    }
}

} // namespace

FileError FileError::fromErrno(int errorNumber, Action action, const QString &path, const QString &target)
{
    return of(kindOf(errorNumber), action, path, target, QString::fromUtf8(strerrordesc_np(errorNumber)));
}

} // namespace quillhaven
