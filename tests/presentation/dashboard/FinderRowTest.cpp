// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/FinderRowTexts.h"

#include "Items.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

const QString home = QStringLiteral("/home/ada");

/// The text shown for an item in `folder`.
QString shortened(const QString &folder)
{
    return finder_row::shortenedPath(folder + QStringLiteral("/item"), home);
}

QString iconOf(const char *name)
{
    return finder_row::fileIcon(QString::fromUtf8(name));
}

} // namespace

TEST(FinderRow, FileIconDependsOnlyOnTheName)
{
    EXPECT_EQ(iconOf("Report.PDF"), QStringLiteral("doc.text.fill"));
    EXPECT_EQ(iconOf("notes.txt.bak"), QStringLiteral("doc.text.fill"));
    EXPECT_EQ(iconOf("letter.rtf"), QStringLiteral("doc.text.fill"));
    EXPECT_EQ(iconOf("holiday.JPG"), QStringLiteral("photo.fill"));
    EXPECT_EQ(iconOf("x.png"), QStringLiteral("photo.fill"));
    EXPECT_EQ(iconOf("DiskImage.iso"), QStringLiteral("photo.fill"));
    EXPECT_EQ(iconOf("image.txt"), QStringLiteral("doc.text.fill"));
    EXPECT_EQ(iconOf("holiday.jpeg"), QStringLiteral("doc.fill"));
    EXPECT_EQ(iconOf("archive"), QStringLiteral("doc.fill"));
}

TEST(FinderRow, FolderHasAFolderIconWithAnyName)
{
    ProtectedItem item = namedItem(QStringLiteral("images.png"));
    item.isFolder = true;
    EXPECT_EQ(finder_row::leadingIcon(item), QStringLiteral("folder.fill"));
    item.isFolder = false;
    EXPECT_EQ(finder_row::leadingIcon(item), QStringLiteral("photo.fill"));
}

TEST(FinderRow, NamesAndFoldersThatDeceiveAreShownAsTheyAreOnOneLine)
{
    const QString reversed = QString(QChar(0x202E)) + QStringLiteral("gnp.exe");
    EXPECT_EQ(finder_row::accessibleText(namedItem(reversed)), QStringLiteral("\uFFFDgnp.exe, locked"));
    EXPECT_EQ(shortened(QStringLiteral("/srv/two\nlines")), QStringLiteral("/srv/two↵lines"));
}

TEST(FinderRow, FolderOfFortyCharactersIsNotShortened)
{
    const QString forty = QStringLiteral("/srv/data/") + QString(26, QLatin1Char('x')) + QStringLiteral("/abc");
    ASSERT_EQ(forty.size(), 40);
    EXPECT_EQ(shortened(forty), forty);
}

TEST(FinderRow, FolderOfFortyOneCharactersWithFourPartsLosesItsMiddle)
{
    const QString longer = QStringLiteral("/srv/data/") + QString(27, QLatin1Char('x')) + QStringLiteral("/abc");
    ASSERT_EQ(longer.size(), 41);
    EXPECT_EQ(shortened(longer), QStringLiteral("/…/") + QString(27, QLatin1Char('x')) + QStringLiteral("/abc"));
    const QString below = home + QStringLiteral("/Documents/") + QString(40, QLatin1Char('y')) + QStringLiteral("/z");
    EXPECT_EQ(shortened(below), QStringLiteral("~/…/") + QString(40, QLatin1Char('y')) + QStringLiteral("/z"));
}

TEST(FinderRow, LongFolderWithFewerPartsIsNotShortened)
{
    const QString two = QStringLiteral("/srv/") + QString(60, QLatin1Char('x'));
    EXPECT_EQ(shortened(two), two);
    const QString three = home + QStringLiteral("/Documents/") + QString(60, QLatin1Char('x'));
    EXPECT_EQ(shortened(three), QStringLiteral("~/Documents/") + QString(60, QLatin1Char('x')));
}

TEST(FinderRow, HomeFolderIsReplacedByATildeEverywhere)
{
    EXPECT_EQ(shortened(home), QStringLiteral("~"));
    EXPECT_EQ(shortened(home + QStringLiteral("/a")), QStringLiteral("~/a"));
    EXPECT_EQ(shortened(QStringLiteral("/mnt") + home + QStringLiteral("/a")), QStringLiteral("/mnt~/a"));
}

TEST(FinderRow, ItemInTheRootShowsTheRoot)
{
    EXPECT_EQ(finder_row::shortenedPath(QStringLiteral("/item"), home), QStringLiteral("/"));
}

TEST(FinderRow, LengthCountsUserPerceivedCharacters)
{
    // 20 letters with a combining accent each: 40 code units in the name of one folder.
    const QString accented = QString::fromUtf8("e\u0301").repeated(20);
    const QString folder = QStringLiteral("/srv/data/") + accented + QStringLiteral("/abc");
    EXPECT_EQ(shortened(folder), folder);
}

TEST(FinderRow, ButtonOffersThePossibleAction)
{
    ProtectedItem item = namedItem(QStringLiteral("a"), true);
    EXPECT_EQ(finder_row::toggleLockText(item), QStringLiteral("Lock Item"));
    EXPECT_EQ(finder_row::toggleLockIcon(item), QStringLiteral("lock.fill"));
    item.isMounted = false;
    EXPECT_EQ(finder_row::toggleLockText(item), QStringLiteral("Unlock Item"));
    EXPECT_EQ(finder_row::toggleLockIcon(item), QStringLiteral("key.fill"));
    item.useTouchID = true;
    EXPECT_EQ(finder_row::toggleLockIcon(item), QStringLiteral("touchid"));
}

TEST(FinderRow, ScreenReaderReadsTheNameAndTheState)
{
    EXPECT_EQ(finder_row::accessibleText(namedItem(QStringLiteral("a.txt"), true)), QStringLiteral("a.txt, unlocked"));
    EXPECT_EQ(finder_row::accessibleText(namedItem(QStringLiteral("a.txt"))), QStringLiteral("a.txt, locked"));
}
