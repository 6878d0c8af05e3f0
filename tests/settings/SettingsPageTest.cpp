// SPDX-License-Identifier: GPL-3.0-or-later

// docs/settings.md against the settings: its table, and the commands that it prints.

#include "platform/linux/settings/SettingValues.h"
#include "platform/linux/settings/SqliteUserDefaultsProvider.h"
#include "settings/Settings.h"
#include "support/PrintText.h"
#include "support/RunTask.h"
#include "support/TemporaryHome.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// The cells of a table's row but for the last, the effect.
using Row = QStringList;

const QString program = QStringLiteral("program");
const QString shared = QStringLiteral("shared");
const QString both = QStringLiteral("program and shared");

QString code(const QString &text)
{
    return QLatin1Char('`') + text + QLatin1Char('`');
}

QString printedDefault(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QString printedDefault(qlonglong value)
{
    return QString::number(value);
}

QString printedDefault(QLatin1String value)
{
    return code(value);
}

/// The name that the store has for the type of a setting.
template <typename Value>
QString typeOf(const OptionalSetting<Value> &setting)
{
    return encodedSetting(setting.key, QVariant::fromValue(Value())).type;
}

template <typename Value>
Row rowOf(const OptionalSetting<Value> &setting, const QString &domain = program)
{
    return {code(setting.key), domain, typeOf(setting), QStringLiteral("none")};
}

template <typename Value, typename Default>
Row rowOf(const Setting<Value, Default> &setting)
{
    return {code(setting.key), program, typeOf(setting), printedDefault(setting.defaultValue)};
}

/// The rows that the page should have. A key that is missing here is noticed by the test that reads Settings.h.
QList<Row> expectedRows()
{
    return {rowOf(settings::autoLockMinutes),
            rowOf(settings::isAutoLockEnabled),
            rowOf(settings::lockOnSleep),
            rowOf(settings::autoLockWithoutMasterPassword),
            rowOf(settings::smartAutoLockEnabled),
            rowOf(settings::smartAutoLockRules),
            rowOf(settings::enableTouchID),
            rowOf(settings::enforceStrongPasswords),
            rowOf(settings::enableiCloudBackup),
            rowOf(settings::startAtLogin),
            rowOf(settings::startHiddenAtLogin),
            rowOf(settings::hideMenuBarIcon),
            rowOf(settings::appearanceMode),
            rowOf(settings::hasCompletedOnboarding),
            rowOf(settings::extensionNotificationShown),
            rowOf(settings::lastUpdateCheck),
            rowOf(settings::protectedItems, both),
            rowOf(settings::pendingAction, shared)};
}

QString page()
{
    return QString::fromUtf8(TemporaryHome::read(QStringLiteral(SETTINGS_PAGE)));
}

/// The part of the page below a heading.
QString section(const QString &heading)
{
    return page()
        .section(QStringLiteral("\n## ") + heading + QLatin1Char('\n'), 1)
        .section(QStringLiteral("\n## "), 0, 0);
}

QList<Row> rowsOfThePage()
{
    QList<Row> rows;
    for (const QString &line : section(QStringLiteral("All settings")).split(QLatin1Char('\n'))) {
        if (!line.startsWith(QStringLiteral("| `"))) {
            continue;
        }
        Row cells;
        for (const QString &cell : line.split(QLatin1Char('|')).mid(1, 5)) {
            cells.append(cell.trimmed());
        }
        EXPECT_EQ(cells.size(), 5) << line.toStdString();
        EXPECT_FALSE(cells.takeLast().isEmpty()) << line.toStdString() << " has no effect";
        rows.append(cells);
    }
    return rows;
}

QStringList sortedTexts(const QList<Row> &rows)
{
    QStringList texts;
    for (const Row &row : rows) {
        texts.append(row.join(QStringLiteral(" | ")));
    }
    texts.sort();
    return texts;
}

/// A home in which the commands of the page run.
class SettingsPageCommands : public ::testing::Test
{
protected:
    /// Runs the commands, each a line of the page that begins with four blanks, after the line that announces them.
    [[nodiscard]] QByteArray run(const QString &announcement)
    {
        const QString after =
            section(QStringLiteral("Reading and changing them")).section(announcement + QLatin1Char('\n'), 1);
        QStringList commands;
        for (const QString &line : after.trimmed().isEmpty() ? QStringList() : after.mid(1).split(QLatin1Char('\n'))) {
            if (!line.startsWith(QStringLiteral("    "))) {
                break;
            }
            commands.append(line.trimmed());
        }
        EXPECT_FALSE(commands.isEmpty()) << announcement.toStdString();
        QProcess shell;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), m_user);
        shell.setProcessEnvironment(environment);
        shell.start(QStringLiteral("/bin/sh"), {QStringLiteral("-ec"), commands.join(QLatin1Char('\n'))});
        EXPECT_TRUE(shell.waitForFinished(int(patience)));
        EXPECT_EQ(shell.exitCode(), 0) << shell.readAllStandardError().toStdString();
        return shell.readAllStandardOutput();
    }

    const QString m_set = QStringLiteral("Set one:");
    const QString m_unset = QStringLiteral("Back to its default:");
    const QString m_touch =
        QStringLiteral("A running program looks for changes when the file beside the database is touched:");
    const QString m_prepare = QStringLiteral("For a user who has never started the program:");
    const QString m_list = QStringLiteral("All settings that have been written, but for the bytes:");
    TemporaryHome m_home;
    QString m_user = m_home.path(QStringLiteral("user")); ///< a home with nothing in it
    QString m_directory = m_user + QStringLiteral("/.config/quillhaven");
};

} // namespace

TEST(SettingsPage, HasTheRowOfEachSettingWithItsTypeAndDefaultAndNoOther)
{
    EXPECT_EQ(sortedTexts(rowsOfThePage()), sortedTexts(expectedRows()));
}

TEST(SettingsPage, HasARowForEachKeyThatTheSourceNames)
{
    const QString source = QString::fromUtf8(TemporaryHome::read(QStringLiteral(SETTINGS_SOURCE)));
    QSet<QString> named;
    qsizetype found = 0;
    auto matches = QRegularExpression(QStringLiteral("etting<[^;]*?\\{\"([^\"]+)\"")).globalMatch(source);
    while (matches.hasNext()) {
        named.insert(code(matches.next().captured(1)));
        ++found;
    }
    ASSERT_GT(found, 0);
    EXPECT_EQ(found, source.count(QStringLiteral("{\""))) << "a setting is written in a way that this test cannot read";
    QSet<QString> listed;
    for (const Row &row : expectedRows()) {
        listed.insert(row.constFirst());
    }
    EXPECT_EQ(named - listed, QSet<QString>()) << "add the setting to expectedRows() and to docs/settings.md";
}

TEST(SettingsPage, NamesTheFilesOfBothDomains)
{
    const QString where = section(QStringLiteral("Where they are"));
    EXPECT_TRUE(where.contains(QStringLiteral("| program | `") + SqliteUserDefaultsProvider::standardDomain +
                               QStringLiteral(".db`")));
    EXPECT_TRUE(where.contains(QStringLiteral("| shared | `") + settings::sharedSuite + QStringLiteral(".db`")));
}

TEST(SettingsPage, NamesEachTypeOfTheStore)
{
    const QString where = section(QStringLiteral("Where they are"));
    const QVariantList values{true, 1, 1.5, QString(), QByteArray(), QDateTime::currentDateTimeUtc(), QVariantMap()};
    for (const QVariant &value : values) {
        const QString type = encodedSetting({}, value).type;
        EXPECT_TRUE(where.contains(QStringLiteral("\n| ") + code(type) + QStringLiteral(" |"))) << type.toStdString();
    }
}

TEST_F(SettingsPageCommands, PrepareTheSettingsOfAUserWhoNeverStartedTheProgram)
{
    EXPECT_EQ(run(m_prepare), "");
    struct ::stat file = {};
    const QString database = m_directory + QStringLiteral("/com.tarnwick.quillhaven.db");
    ASSERT_EQ(::stat(QFile::encodeName(database).constData(), &file), 0);
    EXPECT_EQ(file.st_mode & 0777U, 0600U);
    ASSERT_EQ(::stat(QFile::encodeName(m_directory).constData(), &file), 0);
    EXPECT_EQ(file.st_mode & 0777U, 0700U);
    SqliteUserDefaultsProvider defaults(m_directory);
    EXPECT_EQ(defaults.problem(), std::nullopt);
    EXPECT_TRUE(settings::isAutoLockEnabled.read(defaults.standard()));
    EXPECT_TRUE(settings::lockOnSleep.read(defaults.standard()));
    settings::lockOnSleep.write(defaults.standard(), false);
    EXPECT_FALSE(settings::lockOnSleep.read(defaults.standard()));
}

TEST_F(SettingsPageCommands, ListWhatWasWritten)
{
    {
        SqliteUserDefaultsProvider defaults(m_directory);
        settings::enableTouchID.write(defaults.standard(), false);
        settings::appearanceMode.write(defaults.standard(), QStringLiteral("dark"));
        settings::smartAutoLockRules.write(defaults.standard(), "{}");
        ASSERT_TRUE(defaults.standard().setArray(settings::protectedItems.key, {{QStringLiteral("a"), "{}"}}));
    }
    EXPECT_EQ(run(m_list), "enableTouchID|bool|0\nappearanceMode|string|dark\n");
}

TEST_F(SettingsPageCommands, SetAndRemoveASettingThatTheNextStartReads)
{
    {
        SqliteUserDefaultsProvider defaults(m_directory);
    }
    EXPECT_EQ(run(m_set), "");
    {
        SqliteUserDefaultsProvider defaults(m_directory);
        EXPECT_EQ(settings::autoLockMinutes.read(defaults.standard()), 15);
    }
    EXPECT_EQ(run(m_unset), "");
    SqliteUserDefaultsProvider defaults(m_directory);
    EXPECT_EQ(settings::autoLockMinutes.stored(defaults.standard()), QVariant());
}

TEST_F(SettingsPageCommands, MakeARunningProgramNoticeAChange)
{
    SqliteUserDefaultsProvider defaults(m_directory);
    QObject context;
    QList<qlonglong> seen;
    settings::autoLockMinutes.onChange(defaults.standard(), &context,
                                       [&] { seen.append(settings::autoLockMinutes.read(defaults.standard())); });
    EXPECT_EQ(run(m_set), "");
    EXPECT_EQ(run(m_touch), "");
    EXPECT_TRUE(spinUntil([&] { return seen.size() == 1; }));
    EXPECT_EQ(run(m_unset), "");
    EXPECT_EQ(run(m_touch), "");
    EXPECT_TRUE(spinUntil([&] { return seen.size() == 2; }));
    EXPECT_EQ(seen, QList<qlonglong>({15, 5}));
}
