// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/login/ExecLine.h"

#include "support/PrintText.h"

#include <gtest/gtest.h>

using namespace quillhaven;

TEST(ExecLine, PlainCommandIsNotQuoted)
{
    EXPECT_EQ(execLine({QStringLiteral("/usr/bin/quillhaven")}), QStringLiteral("/usr/bin/quillhaven"));
    EXPECT_EQ(execLine({QStringLiteral("/usr/bin/quillhaven"), QStringLiteral("--login-item")}),
              QStringLiteral("/usr/bin/quillhaven --login-item"));
}

TEST(ExecLine, ReservedCharactersAreQuotedAndEscaped)
{
    EXPECT_EQ(execLine({QStringLiteral("/opt/my apps/q")}), QStringLiteral("\"/opt/my apps/q\""));
    EXPECT_EQ(execLine({QStringLiteral("/opt/it's/q")}), QStringLiteral("\"/opt/it's/q\""));
    EXPECT_EQ(execLine({QStringLiteral("/a\"b/q")}), QStringLiteral("\"/a\\\"b/q\""));
    EXPECT_EQ(execLine({QStringLiteral("/a$b`c\\d")}), QStringLiteral("\"/a\\$b\\`c\\\\d\""));
    EXPECT_EQ(execLine({QString()}), QStringLiteral("\"\""));
}

TEST(ExecLine, PercentSignIsDoubled)
{
    EXPECT_EQ(execLine({QStringLiteral("/a/50%/q")}), QStringLiteral("/a/50%%/q"));
    EXPECT_EQ(commandOfExecLine(QStringLiteral("/a/50%%/q")), QStringList{QStringLiteral("/a/50%/q")});
}

TEST(ExecLine, EveryPathIsReadBackAsItWasWritten)
{
    const QStringList paths{QStringLiteral("/plain"),           QStringLiteral("/with space"),
                            QStringLiteral("/quote\"and'"),     QStringLiteral("/dollar$HOME"),
                            QStringLiteral("/back\\slash\\\\"), QStringLiteral("/percent%20%%f"),
                            QStringLiteral("/new\nline\ttab"),  QStringLiteral("/`tick`;&|<>(*?#~)"),
                            QStringLiteral("/ünïcødé/好"),      QStringLiteral("/equals=sign")};
    for (const QString &path : paths) {
        const QStringList command{path, QStringLiteral("--login-item")};
        EXPECT_EQ(commandOfExecLine(execLine(command)), command) << qPrintable(path);
    }
}

TEST(ExecLine, FieldCodesAreNoPartOfTheCommand)
{
    EXPECT_EQ(commandOfExecLine(QStringLiteral("quillhaven %U --new")),
              (QStringList{QStringLiteral("quillhaven"), QStringLiteral("--new")}));
}

TEST(ExecLine, LineThatIsNoCommandGivesNone)
{
    EXPECT_EQ(commandOfExecLine(QString()), QStringList());
    EXPECT_EQ(commandOfExecLine(QStringLiteral("\"/never closed")), QStringList());
}
