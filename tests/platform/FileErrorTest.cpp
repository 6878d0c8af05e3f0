// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/FileError.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <ostream>
#include <utility>

namespace quillhaven {

namespace {

using Action = FileError::Action;
using Kind = FileError::Kind;

std::string sentence(int error, Action action, const QString &target = {})
{
    return FileError::fromErrno(error, action, QStringLiteral("/home/me/a.txt"), target)
        .errorDescription()
        .toStdString();
}

TEST(FileError, NameInTheSentenceDeceivesNobody)
{
    const QString path = QStringLiteral("/home/me/") + QChar(0x202E) + QStringLiteral("gnp.\nexe");
    EXPECT_EQ(FileError::of(Kind::NoSuchFile, Action::Read, path).errorDescription(),
              QStringLiteral("Could not read \"\uFFFDgnp.↵exe\" because it does not exist."));
}

TEST(FileError, EachErrorNumberHasItsKind)
{
    const std::pair<int, Kind> table[] = {
        {ENOENT, Kind::NoSuchFile},
        {ENOTDIR, Kind::NoSuchFile},
        {EACCES, Kind::NoPermission},
        {EPERM, Kind::NoPermission},
        {EEXIST, Kind::TargetExists},
        {ENOTEMPTY, Kind::TargetExists},
        {ENOSPC, Kind::NoSpace},
        {EDQUOT, Kind::NoSpace},
        {EROFS, Kind::ReadOnlyVolume},
        {ENXIO, Kind::NotAFileOrFolder},
        {ENODEV, Kind::NotAFileOrFolder},
        {ENOMEM, Kind::TooLargeForMemory},
        {ENAMETOOLONG, Kind::InvalidName},
        {EILSEQ, Kind::InvalidName},
        {EIO, Kind::Other},
        {EBUSY, Kind::Other},
        {ELOOP, Kind::Other},
        {EINVAL, Kind::Other},
    };
    for (const auto &[number, kind] : table) {
        EXPECT_EQ(FileError::fromErrno(number, Action::Read, QStringLiteral("/a")).kind(), kind) << number;
    }
}

TEST(FileError, AMoveErrorNamesTheItemAndTheFolder)
{
    const QString target = QStringLiteral("/data/quillhaven/1_original");
    EXPECT_EQ(sentence(EACCES, Action::Move, target), "You don't have permission to move \"a.txt\" to \"quillhaven\".");
    EXPECT_EQ(sentence(EEXIST, Action::Move, target),
              "Could not move \"a.txt\" to \"quillhaven\" because there is already an item named \"1_original\".");
    EXPECT_EQ(sentence(EROFS, Action::Move, target),
              "Could not move \"a.txt\" to \"quillhaven\" because the volume is read-only.");
    EXPECT_EQ(sentence(ENOENT, Action::Move, target),
              "Could not move \"a.txt\" to \"quillhaven\" because either the item or the folder does not exist.");
}

TEST(FileError, EachActionReadsAsASentence)
{
    EXPECT_EQ(sentence(ENOSPC, Action::Write), "There is not enough space on the disk to write \"a.txt\".");
    EXPECT_EQ(sentence(ENOENT, Action::Read), "Could not read \"a.txt\" because it does not exist.");
    EXPECT_EQ(sentence(ENOENT, Action::Write), "Could not write \"a.txt\" because \"me\" is not a folder that exists.");
    EXPECT_EQ(sentence(EPERM, Action::Replace), "You don't have permission to replace \"a.txt\".");
    EXPECT_EQ(sentence(EBUSY, Action::Remove), "Could not remove \"a.txt\": Device or resource busy.");
    EXPECT_EQ(sentence(EEXIST, Action::CreateFolder),
              "Could not create the folder \"a.txt\" because an item with that name already exists.");
    EXPECT_EQ(sentence(EACCES, Action::List), "You don't have permission to open the folder \"a.txt\".");
    EXPECT_EQ(sentence(ENXIO, Action::Use), "Could not use \"a.txt\" because it is neither a file nor a folder.");
    EXPECT_EQ(sentence(ENOMEM, Action::Read),
              "Could not read \"a.txt\" because it is too large for the available memory.");
    EXPECT_EQ(sentence(ENAMETOOLONG, Action::Read),
              "Could not read \"a.txt\" because a name in its path is not valid or too long.");
}

TEST(FileError, ANameThatLooksLikeAPlaceholderIsNotReplaced)
{
    const QString path = QStringLiteral("/tmp/100%1 \"q\" %2");
    EXPECT_EQ(FileError::fromErrno(EIO, Action::Read, path).errorDescription().toStdString(),
              "Could not read \"100%1 \"q\" %2\": Input/output error.");
}

TEST(FileError, TheErrorForALinkPointsToItsTarget)
{
    const QString path = QStringLiteral("/home/me/link");
    EXPECT_EQ(FileError::of(Kind::OnlyALink, Action::Overwrite, path).errorDescription().toStdString(),
              "Could not overwrite \"link\" because it is only a link. Choose the item it leads to instead.");
    EXPECT_EQ(FileError::of(Kind::OnlyALink, Action::List, path).errorDescription().toStdString(),
              "Could not open the folder \"link\" because it is only a link. Choose the folder it leads to instead.");
}

TEST(FileError, TheCallersVerbReplacesTheActionForEveryKind)
{
    const QString path = QStringLiteral("/home/me/a.txt");
    const auto printing = [&path](int error, const QString &target = {}) {
        const FileError failure = FileError::fromErrno(error, Action::Move, path, target);
        EXPECT_EQ(failure.withVerb(QStringLiteral("print")).kind(), failure.kind());
        return failure.withVerb(QStringLiteral("print")).errorDescription().toStdString();
    };
    EXPECT_EQ(printing(ENOENT, QStringLiteral("/data/b.txt")), "Could not print \"a.txt\" because it does not exist.");
    EXPECT_EQ(printing(EACCES), "You don't have permission to print \"a.txt\".");
    EXPECT_EQ(printing(ENXIO), "Could not print \"a.txt\" because it is neither a file nor a folder.");
    EXPECT_EQ(printing(EBUSY), "Could not print \"a.txt\": Device or resource busy.");
    const FileError ownSentence(Kind::Other, QStringLiteral("The disk is upside down."));
    EXPECT_EQ(ownSentence.withVerb(QStringLiteral("print")).errorDescription(), ownSentence.errorDescription());
}

} // namespace

} // namespace quillhaven
