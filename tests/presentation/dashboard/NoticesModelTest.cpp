// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/NoticesModel.h"

#include <QAbstractItemModelTester>
#include <gtest/gtest.h>

namespace quillhaven::test {

namespace {

QStringList texts(const NoticesModel &notices)
{
    QStringList texts;
    for (int row = 0; row < notices.rowCount(); ++row) {
        texts.append(notices.data(notices.index(row), NoticesModel::TextRole).toString());
    }
    return texts;
}

TEST(NoticesModel, ANoticeOfTheSameIdTakesThePlaceOfTheEarlier)
{
    NoticesModel notices;
    const QAbstractItemModelTester tester(&notices, QAbstractItemModelTester::FailureReportingMode::Fatal);
    notices.show({.id = QStringLiteral("a"), .text = QStringLiteral("one")});
    notices.show({.id = QStringLiteral("b"), .text = QStringLiteral("two")});
    notices.show({.id = QStringLiteral("a"), .text = QStringLiteral("three")});
    EXPECT_EQ(texts(notices), (QStringList{QStringLiteral("three"), QStringLiteral("two")}));
    notices.remove(QStringLiteral("a"));
    notices.remove(QStringLiteral("a"));
    EXPECT_EQ(texts(notices), QStringList(QStringLiteral("two")));
    EXPECT_FALSE(notices.contains(QStringLiteral("a")));
}

TEST(NoticesModel, AnActionMayTakeItsOwnNoticeAway)
{
    NoticesModel notices;
    int others = 0;
    notices.show({.id = QStringLiteral("a"),
                  .text = QStringLiteral("one"),
                  .actionTitle = QStringLiteral("Do"),
                  .action = [&notices] { notices.remove(QStringLiteral("a")); },
                  .otherActionTitle = QStringLiteral("Do Something Else"),
                  .otherAction = [&others] { ++others; }});
    notices.actOtherwise(0);
    EXPECT_EQ(others, 1);
    notices.act(0);
    EXPECT_EQ(notices.count(), 0);
    notices.act(0);
    notices.dismiss(0);
}

TEST(NoticesModel, OnlyADismissibleNoticeIsDismissed)
{
    NoticesModel notices;
    notices.show({.id = QStringLiteral("stays"), .text = QStringLiteral("stays")});
    notices.show({.id = QStringLiteral("goes"), .text = QStringLiteral("goes"), .isDismissible = true});
    notices.dismiss(0);
    notices.dismiss(1);
    EXPECT_EQ(texts(notices), QStringList(QStringLiteral("stays")));
}

} // namespace

} // namespace quillhaven::test
