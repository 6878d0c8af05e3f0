// SPDX-License-Identifier: GPL-3.0-or-later

#include "SettingsFixture.h"
#include "support/RunTask.h"

#include <QFileInfo>

namespace quillhaven::test {

namespace {

const QString key = QStringLiteral("list");

ArrayElement element(const QString &id, const QByteArray &value)
{
    return {id, value};
}

/// Elements with the size of a record with long paths.
QList<ArrayElement> elements(int count)
{
    QList<ArrayElement> all;
    for (int i = 0; i < count; ++i) {
        all.append(element(QString::number(i), "\"" + QByteArray::number(i).rightJustified(398, '0') + "\""));
    }
    return all;
}

class SettingsArraysTest : public SettingsFixture
{
protected:
    /// A domain with the array ["a","b","c"], under ids of one letter.
    [[nodiscard]] std::unique_ptr<SqliteUserDefaultsProvider> withThreeElements() const
    {
        auto provider = std::make_unique<SqliteUserDefaultsProvider>(directory());
        EXPECT_TRUE(provider->standard().setArray(key, {element(QStringLiteral("a"), R"("a")"),
                                                        element(QStringLiteral("b"), R"("b")"),
                                                        element(QStringLiteral("c"), R"("c")")}));
        return provider;
    }
    /// The value after a restart.
    [[nodiscard]] QByteArray stored() const
    {
        return SqliteUserDefaultsProvider(directory()).standard().dataForKey(key).value_or("absent");
    }
    /// The number of bytes that a change writes to the log of the database, in a domain opened only for it.
    [[nodiscard]] qint64 loggedBytes(const ArrayChange &change) const
    {
        SqliteUserDefaultsProvider provider(directory());
        EXPECT_EQ(QFileInfo(database() + QStringLiteral("-wal")).size(), 0);
        EXPECT_TRUE(provider.standard().changeArray(key, change));
        return QFileInfo(database() + QStringLiteral("-wal")).size();
    }
};

TEST_F(SettingsArraysTest, ElementsAreReadAsOneJsonArrayAndSurviveARestart)
{
    EXPECT_EQ(withThreeElements()->standard().dataForKey(key), R"(["a","b","c"])");
    EXPECT_EQ(stored(), R"(["a","b","c"])");
}

TEST_F(SettingsArraysTest, AnEmptyArrayIsNotAMissingValue)
{
    {
        SqliteUserDefaultsProvider provider(directory());
        EXPECT_TRUE(provider.standard().setArray(key, {}));
        EXPECT_EQ(provider.standard().dataForKey(key), "[]");
    }
    EXPECT_EQ(stored(), "[]");
}

TEST_F(SettingsArraysTest, AReplacedElementKeepsItsPlaceAndANewOneIsLast)
{
    EXPECT_TRUE(withThreeElements()->standard().changeArray(
        key,
        {.put = {element(QStringLiteral("d"), "4"), element(QStringLiteral("a"), "{\"long\":true}")}, .removed = {}}));
    EXPECT_EQ(stored(), R"([{"long":true},"b","c",4])");
}

TEST_F(SettingsArraysTest, ElementsAreRemovedBeforeOthersArePut)
{
    EXPECT_TRUE(withThreeElements()->standard().changeArray(
        key, {.put = {element(QStringLiteral("a"), "1")}, .removed = {QStringLiteral("c"), QStringLiteral("a"), key}}));
    EXPECT_EQ(stored(), R"(["b",1])");
}

TEST_F(SettingsArraysTest, AChangeOfAnAbsentKeyIsRefused)
{
    {
        SqliteUserDefaultsProvider provider(directory());
        EXPECT_FALSE(provider.standard().changeArray(key, {.put = {element(key, "1")}, .removed = {}}));
    }
    EXPECT_EQ(stored(), "absent");
}

TEST_F(SettingsArraysTest, AChangeOfAnotherValueIsRejectedAndSetArrayReplacesIt)
{
    SqliteUserDefaultsProvider provider(directory());
    UserDefaults &defaults = provider.standard();
    defaults.setData(key, "[1,2]");
    EXPECT_FALSE(defaults.changeArray(key, {.put = {element(key, "3")}, .removed = {}}));
    EXPECT_EQ(defaults.dataForKey(key), "[1,2]");
    EXPECT_TRUE(defaults.setArray(key, {element(QStringLiteral("x"), "3")}));
    EXPECT_EQ(defaults.dataForKey(key), "[3]");
}

TEST_F(SettingsArraysTest, APlainValueReplacesAllElements)
{
    const auto provider = withThreeElements();
    provider->standard().setData(key, "plain");
    EXPECT_EQ(provider->standard().dataForKey(key), "plain");
    EXPECT_TRUE(provider->standard().setArray(key, {element(key, "1")}));
    EXPECT_EQ(stored(), "[1]");
}

TEST_F(SettingsArraysTest, RemovingTheKeyRemovesAllElements)
{
    const auto provider = withThreeElements();
    provider->standard().removeObject(key);
    EXPECT_EQ(stored(), "absent");
    EXPECT_TRUE(provider->standard().setArray(key, {element(QStringLiteral("b"), "1")}));
    EXPECT_EQ(stored(), "[1]");
}

TEST_F(SettingsArraysTest, ArraysOfSeveralKeysAreSeparate)
{
    const QString other = QStringLiteral("other");
    const auto provider = withThreeElements();
    UserDefaults &defaults = provider->standard();
    EXPECT_TRUE(defaults.setArray(other, {element(QStringLiteral("a"), "1"), element(QStringLiteral("z"), "2")}));
    EXPECT_TRUE(defaults.changeArray(key, {.put = {}, .removed = {QStringLiteral("a")}}));
    EXPECT_EQ(defaults.dataForKey(key), R"(["b","c"])");
    EXPECT_EQ(defaults.dataForKey(other), "[1,2]");
}

TEST_F(SettingsArraysTest, IfTwoElementsHaveOneIdTheFirstIsReplacedAndBothAreRemoved)
{
    SqliteUserDefaultsProvider provider(directory());
    UserDefaults &defaults = provider.standard();
    EXPECT_TRUE(defaults.setArray(key, {element(key, "1"), element(QStringLiteral("x"), "2"), element(key, "3")}));
    EXPECT_TRUE(defaults.changeArray(key, {.put = {element(key, "9")}, .removed = {}}));
    EXPECT_EQ(defaults.dataForKey(key), "[9,2,3]");
    EXPECT_TRUE(defaults.changeArray(key, {.put = {}, .removed = {key}}));
    EXPECT_EQ(defaults.dataForKey(key), "[2]");
}

TEST_F(SettingsArraysTest, ATransactionIsReportedOnceAndOnlyIfItChangesSomething)
{
    const auto provider = withThreeElements();
    UserDefaults &defaults = provider->standard();
    const auto changes = changesOf(defaults);
    const ArrayElement changed = element(QStringLiteral("a"), "1");
    EXPECT_TRUE(defaults.changeArray(key, {.put = {changed}, .removed = {QStringLiteral("b"), QStringLiteral("c")}}));
    EXPECT_EQ(*changes, QStringList{key});
    EXPECT_TRUE(defaults.changeArray(key, {.put = {changed}, .removed = {QStringLiteral("b")}}));
    EXPECT_TRUE(defaults.setArray(key, {changed}));
    spinOnce();
    EXPECT_EQ(*changes, QStringList{key});
    EXPECT_TRUE(defaults.setArray(key, {}));
    EXPECT_EQ(*changes, QStringList({key, key}));
}

TEST_F(SettingsArraysTest, AnElementChangedByAnotherProcessIsReported)
{
    const auto provider = withThreeElements();
    UserDefaults &defaults = provider->standard();
    const auto changes = changesOf(defaults);
    ASSERT_EQ(runWriter({QStringLiteral("put"), key, QStringLiteral("b"), QStringLiteral("7")}), 0);
    EXPECT_EQ(defaults.dataForKey(key), R"(["a",7,"c"])");
    ASSERT_TRUE(spinUntil([&] { return !changes->isEmpty(); }));
    EXPECT_EQ(*changes, QStringList{key});
}

TEST_F(SettingsArraysTest, AFailedChangeKeepsAllElementsAndIsLogged)
{
    const auto provider = withThreeElements();
    UserDefaults &defaults = provider->standard();
    ASSERT_TRUE(runSql("CREATE TRIGGER refuse BEFORE INSERT ON elements BEGIN SELECT RAISE(ABORT, 'refused'); END"));
    const auto changes = changesOf(defaults);
    LogCapture log;
    EXPECT_FALSE(defaults.changeArray(
        key, {.put = {element(QStringLiteral("a"), "1"), element(QStringLiteral("d"), "4")}, .removed = {}}));
    EXPECT_FALSE(defaults.setArray(key, {element(QStringLiteral("a"), "1")}));
    EXPECT_EQ(defaults.dataForKey(key), R"(["a","b","c"])");
    EXPECT_TRUE(changes->isEmpty());
    ASSERT_EQ(log.lines().size(), 2);
    EXPECT_TRUE(log.lines().constFirst().contains(key) && log.lines().constFirst().contains(QStringLiteral("refused")))
        << log.lines().constFirst().toStdString();
}

TEST_F(SettingsArraysTest, ADatabaseWithoutTheTableOfElementsGetsIt)
{
    SqliteUserDefaultsProvider(directory()).standard().setData(key, "[1]");
    ASSERT_TRUE(runSql("DROP TABLE elements"));
    SqliteUserDefaultsProvider provider(directory());
    EXPECT_EQ(provider.standard().dataForKey(key), "[1]");
    EXPECT_TRUE(provider.standard().setArray(key, {element(key, "2")}));
    EXPECT_EQ(stored(), "[2]");
    EXPECT_TRUE(setAside().isEmpty());
}

TEST_F(SettingsArraysTest, AChangeOfOneOfTenThousandElementsWritesAFewPages)
{
    constexpr int fewPages = 8 * 4096;
    ASSERT_TRUE(SqliteUserDefaultsProvider(directory()).standard().setArray(key, elements(10'000)));
    const ArrayElement changed = element(QStringLiteral("5000"), QByteArray(430, '1'));
    EXPECT_LT(loggedBytes({.put = {changed}, .removed = {}}), fewPages);
    EXPECT_LT(loggedBytes({.put = {element(QStringLiteral("new"), QByteArray(400, '2'))}, .removed = {}}), fewPages);
    EXPECT_LT(loggedBytes({.put = {}, .removed = {QStringLiteral("7000")}}), fewPages);
    const QByteArray whole = stored();
    EXPECT_EQ(whole.count(','), 9'999);
    EXPECT_TRUE(whole.endsWith("," + QByteArray(400, '2') + "]"));
    EXPECT_FALSE(whole.contains("7000\""));
}

} // namespace

} // namespace quillhaven::test
