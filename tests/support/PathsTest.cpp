// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/Paths.h"

#include <gtest/gtest.h>

using namespace quillhaven;

TEST(Paths, SlashesAtTheEndDoNotChangeTheNameOrTheFolder)
{
    for (const char *path : {"/a/b", "/a/b/", "/a/b//", "/a//b"}) {
        EXPECT_EQ(lastPathComponent(QLatin1String(path)), QStringLiteral("b")) << path;
        EXPECT_EQ(parentDirectory(QLatin1String(path)), QStringLiteral("/a")) << path;
    }
    EXPECT_EQ(lastPathComponent(QStringLiteral("/a/")), QStringLiteral("a"));
    EXPECT_EQ(parentDirectory(QStringLiteral("/a/")), QStringLiteral("/"));
}

TEST(Paths, TheRootHasNoNameAndIsItsOwnFolder)
{
    for (const char *root : {"/", "//"}) {
        EXPECT_EQ(lastPathComponent(QLatin1String(root)), QString()) << root;
        EXPECT_EQ(parentDirectory(QLatin1String(root)), QStringLiteral("/")) << root;
    }
}
