// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/FileError.h"

#include <QStringList>

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

QString attemptedWords(FileError::Action action, const QString &path, const QString &target)
{
    QString name = quoted(nameOf(path));
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
    case FileError::Action::Trash:
        return QStringLiteral("move ") + name + QStringLiteral(" to the trash");
    case FileError::Action::CreateFolder:
        return QStringLiteral("create the folder ") + name;
    case FileError::Action::List:
        return QStringLiteral("open the folder ") + name;
    case FileError::Action::Use:
        return QStringLiteral("use ") + name;
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

/// What was tried, in the words that follow "Could not", and why it may have failed for want of the file.
struct Attempt
{
    QString words;
    QString missingFile;
    QString linkedItem = QStringLiteral("item"); ///< what to choose in place of a link
    QString target = {};
};

QString sentenceFor(FileError::Kind kind, const Attempt &attempt, const QString &reason)
{
    const QString couldNot = QStringLiteral("Could not ") + attempt.words;
    const QString because = couldNot + QStringLiteral(" because ");
    switch (kind) {
    case FileError::Kind::NoSuchFile:
        return because + attempt.missingFile + QLatin1Char('.');
    case FileError::Kind::NoPermission:
        return QStringLiteral("You don't have permission to ") + attempt.words + QLatin1Char('.');
    case FileError::Kind::TargetExists:
        return because + (attempt.target.isEmpty() ? QStringLiteral("an item with that name already exists.")
                                                   : QStringLiteral("there is already an item named ") +
                                                         quoted(nameOf(attempt.target)) + QLatin1Char('.'));
    case FileError::Kind::NoSpace:
        return QStringLiteral("There is not enough space on the disk to ") + attempt.words + QLatin1Char('.');
    case FileError::Kind::ReadOnlyVolume:
        return because + QStringLiteral("the volume is read-only.");
    case FileError::Kind::NotAFileOrFolder:
        return because + QStringLiteral("it is neither a file nor a folder.");
    case FileError::Kind::OnlyALink:
        return because + QStringLiteral("it is only a link. Choose the ") + attempt.linkedItem +
               QStringLiteral(" it leads to instead.");
    case FileError::Kind::TooLargeForMemory:
        return because + QStringLiteral("it is too large for the available memory.");
    case FileError::Kind::InvalidName:
        return because + QStringLiteral("a name in its path is not valid or too long.");
    case FileError::Kind::NotPreserved:
        return because + QStringLiteral("the copy would lack some of its properties.");
    case FileError::Kind::Other:
        break;
    }
    return couldNot + (reason.isEmpty() ? QString() : QStringLiteral(": ") + reason) + QLatin1Char('.');
}

} // namespace

FileError FileError::of(Kind kind, Action action, const QString &path, const QString &target, const QString &reason)
{
    const Attempt attempt{attemptedWords(action, path, target), missing(action, path, target),
                          action == Action::List ? QStringLiteral("folder") : QStringLiteral("item"), target};
    return FileError(kind, sentenceFor(kind, attempt, reason), path, reason);
}

FileError FileError::withVerb(const QString &verb) const
{
    if (m_path.isEmpty()) {
        return *this;
    }
    const Attempt attempt{verb + QLatin1Char(' ') + quoted(nameOf(m_path)), missing(Action::Use, m_path, {})};
    return FileError(m_kind, sentenceFor(m_kind, attempt, m_reason), m_path, m_reason);
}

} // namespace quillhaven
