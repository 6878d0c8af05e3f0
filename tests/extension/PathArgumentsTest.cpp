// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/PathArguments.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace quillhaven {

namespace {

std::optional<QByteArray> path(const QByteArray &argument)
{
    return pathOfArgument(argument);
}

TEST(PathArguments, APathIsTakenAsItIs)
{
    for (const QByteArray each : {"/a b/c.txt", "/it's \"q\"", "/line\nend", "/50%25", "/\xff\xfe", "/a/../b"}) {
        EXPECT_EQ(path(each), each);
    }
}

TEST(PathArguments, ASlashAtTheEndIsLeftOut)
{
    EXPECT_EQ(path("/folder/"), "/folder");
    EXPECT_EQ(path("/"), "/");
}

TEST(PathArguments, ARelativePathBelongsToTheCurrentFolder)
{
    const QByteArray current = QFile::encodeName(QDir::currentPath());
    EXPECT_EQ(path("--lock"), current + "/--lock");
}

TEST(PathArguments, AFileUriIsDecodedOnce)
{
    EXPECT_EQ(path("file:///a%20b/50%2525%0Aend"), "/a b/50%25\nend");
    EXPECT_EQ(path("file:///a%FF"), "/a\xff");
    EXPECT_EQ(path("FILE://localhost/a"), "/a");
}

TEST(PathArguments, AnotherUriNamesNoFile)
{
    for (const QByteArray each : {"smb://server/a", "file://server/a", "file://", "trash:///a", ""}) {
        EXPECT_EQ(path(each), std::nullopt) << each.constData();
    }
    EXPECT_EQ(path("file:///a%00b"), std::nullopt);
}

TEST(PathArguments, WhatNamesNoFileIsLeftOut)
{
    EXPECT_EQ(pathsOfArguments({"/a", "smb://server/b", "file:///c"}), (QByteArrayList{"/a", "/c"}));
}

} // namespace

} // namespace quillhaven
