// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/PlaceholderFile.h"

#include "support/CallHooks.h"
#include "support/LogCapture.h"
#include "support/TestPlatform.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

TEST(PlaceholderFile, AFailedWriteIsReportedEvenIfWhatItLeftCannotBeRemoved)
{
    TestPlatform services;
    const LogCapture log;
    SeamHooks hooks;
    HookedFileManager files(services.fileManager, hooks);
    hooks.after = failing("writeFile", ENOSPC);
    hooks.before = failing("removeItem", EIO);
    try {
        writePlaceholder(files, services.home.path(QStringLiteral("a.txt")));
        ADD_FAILURE() << "no error";
    } catch (const FileError &error) {
        EXPECT_EQ(error.kind(), FileError::Kind::NoSpace);
    }
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.lines().first().startsWith(QStringLiteral("⚠️ A piece of a placeholder could not be removed: ")));
}
