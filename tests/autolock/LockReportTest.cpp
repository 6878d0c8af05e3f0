// SPDX-License-Identifier: GPL-3.0-or-later

#include "autolock/LockReport.h"

#include <gtest/gtest.h>

using namespace quillhaven;

namespace {

const QString cause = QStringLiteral("after inactivity");

} // namespace

TEST(LockReport, IsCompleteWhenEachItemHasEnded)
{
    LockReport report(3);
    report.locked();
    report.leftUnlocked();
    EXPECT_FALSE(report.isComplete());
    report.failed(QStringLiteral("The disk is full."));
    EXPECT_TRUE(report.isComplete());
}

TEST(LockReport, CountsTheLockedItems)
{
    LockReport report(2);
    report.locked();
    EXPECT_EQ(report.text(cause), QStringLiteral("1 item was locked after inactivity."));
    report.locked();
    EXPECT_EQ(report.text(cause), QStringLiteral("2 items were locked after inactivity."));
}

TEST(LockReport, SaysNothingWhenTheUserWantedNoItemLocked)
{
    LockReport report(2);
    report.leftUnlocked();
    report.leftUnlocked();
    EXPECT_EQ(report.text(cause), QString());
}

TEST(LockReport, SaysEachReasonOnce)
{
    LockReport report(4);
    report.failed(QStringLiteral("The disk is full."));
    report.failed(QStringLiteral("The file is in use."));
    report.locked();
    report.failed(QStringLiteral("The disk is full."));
    EXPECT_EQ(report.text(cause), QStringLiteral("1 item was locked after inactivity.\n"
                                                 "2 items could not be locked: The disk is full.\n"
                                                 "1 item could not be locked: The file is in use."));
}

TEST(LockReport, CountsOnlyTheItemsOfFurtherReasons)
{
    LockReport report(6);
    for (const char *reason : {"A.", "B.", "C.", "D.", "E.", "D."}) {
        report.failed(QString::fromLatin1(reason));
    }
    EXPECT_EQ(report.text(cause), QStringLiteral("1 item could not be locked: A.\n"
                                                 "1 item could not be locked: B.\n"
                                                 "1 item could not be locked: C.\n"
                                                 "3 items could not be locked for other reasons."));
}
