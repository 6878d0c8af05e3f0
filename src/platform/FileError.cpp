// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/FileError.h"

#include <QStringList>

#include <cerrno>
#include <cstring>

namespace quillhaven {

namespace {

QString quoted(const QString &name)
{
    return QLatin1Char('"') + name + QLatin1Char('"');
}

/// The last component of a path; "/" for the root.
QString nameOf(const QString &path)
{
    const QStringList parts = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    return parts.isEmpty() ? QStringLiteral("/") : parts.last();
}

QString folderNameOf(const QString &path)
{
    return nameOf(path.left(path.lastIndexOf(QLatin1Char('/'))));
}

QString attempt(FileError::Action action, const QString &path, const QString &target)
{
    const QString name = quoted(nameOf(path));
    switch (action) {
    case FileError::Action::Read:
        return QStringLiteral("read ") + name;
    case FileError::Action::Write:
        return QStringLiteral("write ") + name;
    case FileError::Action::Move:
        return QStringLiteral("move ") + name +
               (target.isEmpty() ? QString() : QStringLiteral(" to ") + quoted(folderNameOf(target)));
    case FileError::Action::Overwrite:
        return QStringLiteral("overwrite ") + name;
    case FileError::Action::Copy:
        return QStringLiteral("copy ") + name +
               (target.isEmpty() ? QString() : QStringLiteral(" to ") + quoted(folderNameOf(target)));
    case FileError::Action::Replace:
        return QStringLiteral("replace ") + name;
    case FileError::Action::Remove:
        return QStringLiteral("remove ") + name;
    case FileError::Action::CreateFolder:
        return QStringLiteral("create the folder ") + name;
    case FileError::Action::List:
        return QStringLiteral("open the folder ") + name;
    case FileError::Action::Protect:
        return QStringLiteral("protect ") + name;
    }
    return name;
}

QString missing(FileError::Action action, const QString &path, const QString &target)
{
    switch (action) {
    case FileError::Action::Write:
    case FileError::Action::CreateFolder:
        return quoted(folderNameOf(path)) + QStringLiteral(" is not a folder that exists");
    case FileError::Action::Move:
    case FileError::Action::Copy:
        return target.isEmpty() ? QStringLiteral("it does not exist")
                                : QStringLiteral("either the item or the folder does not exist");
    default:
        return QStringLiteral("it does not exist");
    }
}

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

QString sentenceFor(FileError::Kind kind, FileError::Action action, const QString &path, const QString &target)
{
    const QString verb = attempt(action, path, target);
    const QString couldNot = QStringLiteral("Could not ") + verb;
    const QString because = couldNot + QStringLiteral(" because ");
    switch (kind) {
    case FileError::Kind::NoSuchFile:
        return because + missing(action, path, target) + QLatin1Char('.');
    case FileError::Kind::NoPermission:
        return QStringLiteral("You don't have permission to ") + verb + QLatin1Char('.');
    case FileError::Kind::TargetExists:
        return because + (target.isEmpty() ? QStringLiteral("something else stands in its place.")
                                           : QStringLiteral("there is already an item named ") +
                                                 quoted(nameOf(target)) + QLatin1Char('.'));
    case FileError::Kind::NoSpace:
        return QStringLiteral("There is not enough space on the disk to ") + verb + QLatin1Char('.');
    case FileError::Kind::ReadOnlyVolume:
        return because + QStringLiteral("the volume is read-only.");
    case FileError::Kind::NotAFileOrFolder:
        return because + QStringLiteral("it is neither a file nor a folder.");
    case FileError::Kind::TooLargeForMemory:
        return because + QStringLiteral("it is too large for the available memory.");
    case FileError::Kind::InvalidName:
        return because + QStringLiteral("a name in its path is not valid or too long.");
    case FileError::Kind::NotPreserved:
        return because + QStringLiteral("the copy would lack some of its properties.");
    case FileError::Kind::Other:
        break;
    }
    return couldNot + QLatin1Char('.');
}

} // namespace

FileError FileError::fromErrno(int errorNumber, Action action, const QString &path, const QString &target)
{
    const Kind kind = kindOf(errorNumber);
    const char *reason = strerrordesc_np(errorNumber);
    if (kind != Kind::Other || reason == nullptr) {
        return of(kind, action, path, target);
    }
    return FileError(kind, QStringLiteral("Could not ") + attempt(action, path, target) + QStringLiteral(": ") +
                               QString::fromUtf8(reason) + QLatin1Char('.'));
}

FileError FileError::of(Kind kind, Action action, const QString &path, const QString &target)
{
    return FileError(kind, sentenceFor(kind, action, path, target));
}

} // namespace quillhaven
