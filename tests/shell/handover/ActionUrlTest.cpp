// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/handover/ActionUrl.h"
#include "support/PrintText.h"

#include <gtest/gtest.h>

using namespace quillhaven;

namespace {

/// "action path" of an address; "ignored" for one that is.
QString read(const char *url)
{
    const std::optional<ActionUrl> request = parseActionUrl(QString::fromUtf8(url));
    return request ? request->action + QLatin1Char(' ') + request->path : QStringLiteral("ignored");
}

} // namespace

TEST(ActionUrl, TheHostIsTheActionAndTheQueryItemIsThePath)
{
    EXPECT_EQ(read("quillhaven://lock?path=/home/me/a.txt"), QStringLiteral("lock /home/me/a.txt"));
    EXPECT_EQ(read("quillhaven://unlock/?x=1&path=%2Fhome%2Fa%20b.txt#end"), QStringLiteral("unlock /home/a b.txt"));
    EXPECT_EQ(read("quillhaven://shred?path=/home/%C3%BC.txt"), QStringLiteral("shred /home/ü.txt"));
}

TEST(ActionUrl, TheFirstItemOfThatNameCounts)
{
    EXPECT_EQ(read("quillhaven://lock?path=/a&path=/b"), QStringLiteral("lock /a"));
}

TEST(ActionUrl, AnotherSchemeIsIgnored)
{
    EXPECT_EQ(read("http://lock?path=/a"), QStringLiteral("ignored"));
    EXPECT_EQ(read("QUILLHAVEN://lock?path=/a"), QStringLiteral("ignored"));
    EXPECT_EQ(read("quillhaven2://lock?path=/a"), QStringLiteral("ignored"));
    EXPECT_EQ(read("/home/me/a.txt"), QStringLiteral("ignored"));
    EXPECT_EQ(read(""), QStringLiteral("ignored"));
}

TEST(ActionUrl, WithoutAPathItIsIgnored)
{
    EXPECT_EQ(read("quillhaven://lock"), QStringLiteral("ignored"));
    EXPECT_EQ(read("quillhaven://lock?"), QStringLiteral("ignored"));
    EXPECT_EQ(read("quillhaven://lock?Path=/a"), QStringLiteral("ignored"));
    EXPECT_EQ(read("quillhaven://lock?path"), QStringLiteral("ignored"));
    EXPECT_EQ(read("quillhaven://show-main-window"), QStringLiteral("ignored"));
}

TEST(ActionUrl, ThePathIsDecodedTwice)
{
    EXPECT_EQ(read("quillhaven://lock?path=/a%2520b"), QStringLiteral("lock /a b"));
    EXPECT_EQ(read("quillhaven://lock?path=/100%2525"), QStringLiteral("lock /100%"));
}

TEST(ActionUrl, APercentSignBeforeSomethingElseThanTwoDigitsIsDropped)
{
    EXPECT_EQ(read("quillhaven://lock?path=/100%25"), QStringLiteral("ignored"));
    EXPECT_EQ(read("quillhaven://lock?path=/100%25%20sure"), QStringLiteral("ignored"));
    EXPECT_EQ(read("quillhaven://lock?path=/100%"), QStringLiteral("ignored"));
}

TEST(ActionUrl, BytesThatAreNoTextAreDropped)
{
    EXPECT_EQ(read("quillhaven://lock?path=/%25FF"), QStringLiteral("ignored"));
}

TEST(ActionUrl, TheActionKeepsItsSpelling)
{
    EXPECT_EQ(read("quillhaven://LOCK?path=/a"), QStringLiteral("LOCK /a"));
    EXPECT_EQ(read("quillhaven://erase?path=/a"), QStringLiteral("erase /a"));
}

TEST(ActionUrl, APathIsAbsoluteAndWithoutSlashesAtItsEnd)
{
    EXPECT_EQ(read("quillhaven://lock?path=/home/folder//"), QStringLiteral("lock /home/folder"));
    EXPECT_EQ(read("quillhaven://lock?path="), QStringLiteral("lock /"));
    EXPECT_EQ(read("quillhaven://lock?path=a.txt"), QStringLiteral("lock /a.txt"));
}
