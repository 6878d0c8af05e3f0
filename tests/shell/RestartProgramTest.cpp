// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/RestartProgram.h"

#include "support/LogCapture.h"
#include "support/RunTask.h"
#include "support/TemporaryHome.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

TEST(RestartProgram, EndIsAnnouncedBeforeTheNextProcessStarts)
{
    const TemporaryHome home;
    const QString announced = home.path(QStringLiteral("announced"));
    const QString seen = home.path(QStringLiteral("seen"));
    const QString program = home.write(QStringLiteral("program"), "#!/bin/sh\n[ -e \"" + announced.toUtf8() +
                                                                      "\" ] && touch \"" + seen.toUtf8() + "\"\n");
    ASSERT_TRUE(QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner));
    EXPECT_TRUE(restartProgram(program, [&home] { home.write(QStringLiteral("announced")); }));
    EXPECT_TRUE(spinUntil([&seen] { return TemporaryHome::exists(seen); }));
}

TEST(RestartProgram, NothingHappensIfTheProgramIsGone)
{
    const LogCapture log;
    bool isAnnounced = false;
    EXPECT_FALSE(restartProgram(QStringLiteral("/nowhere/program"), [&isAnnounced] { isAnnounced = true; }));
    EXPECT_FALSE(isAnnounced);
    EXPECT_EQ(log.lines().size(), 1);
}
