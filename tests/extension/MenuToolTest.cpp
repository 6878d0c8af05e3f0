// SPDX-License-Identifier: GPL-3.0-or-later

// Runs the tool as a file manager does, with a program that notes how it was started.

#include "extension/PublishedItems.h"
#include "support/RunTask.h"
#include "support/TemporaryHome.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>
#include <QUrl>
#include <QUrlQuery>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

namespace quillhaven::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class MenuToolTest : public testing::Test
{
protected:
    MenuToolTest() : settings(home.path(QStringLiteral("config/quillhaven")))
    {
        makeProgram("program", "started");
        makeProgram("bin/notify-send", "notified");
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path(QStringLiteral("config"))));
        qputenv("QUILLHAVEN_PROGRAM", QFile::encodeName(home.path(QStringLiteral("program"))));
        qputenv("PATH", QFile::encodeName(home.path(QStringLiteral("bin"))) + ":/usr/bin:/bin");
    }
    ~MenuToolTest() override
    {
        qunsetenv("XDG_CONFIG_HOME");
        qunsetenv("QUILLHAVEN_PROGRAM");
        qputenv("PATH", m_path);
    }

    /// A program that appends its arguments to a file, each with a NUL character after it, and one more at the end.
    void makeProgram(const char *name, const char *file) const
    {
        const QByteArray place = QFile::encodeName(home.path(QLatin1String(file)));
        QFile program(home.write(QLatin1String(name), "#!/bin/bash\nprintf '%s\\0' \"$@\" END >>'" + place + "'\n"));
        program.setPermissions(program.permissions() | QFile::ExeOwner);
    }
    /// Runs the tool with these bytes as arguments; its output, or the exit status where there is none.
    QByteArray run(const QByteArrayList &arguments, const QByteArray &input = {}) const
    {
        // QProcess would pass on only what is valid text.
        QByteArrayList words{QByteArrayLiteral(MENU_TOOL)};
        words += arguments;
        QByteArray script;
        for (QByteArray word : words) {
            script += '\'' + word.replace('\'', "'\\''") + "' ";
        }
        QProcess shell;
        shell.start(QStringLiteral("/bin/bash"), {home.write(QStringLiteral("call"), script)});
        shell.write(input);
        shell.closeWriteChannel();
        EXPECT_TRUE(shell.waitForFinished());
        const QByteArray output = shell.readAllStandardOutput();
        return output.isEmpty() ? QByteArray::number(shell.exitCode()) : output;
    }
    /// The arguments of one start of the program; waits for it.
    [[nodiscard]] QByteArrayList started(const char *file = "started") const
    {
        const QString place = home.path(QLatin1String(file));
        const QByteArray end("END\0", 4);
        EXPECT_TRUE(
            spinUntil([&] { return TemporaryHome::exists(place) && TemporaryHome::read(place).endsWith(end); }));
        QByteArray noted = TemporaryHome::read(place);
        noted.chop(end.size());
        QByteArrayList arguments = noted.split('\0');
        arguments.removeLast();
        return arguments;
    }
    /// The path as the program reads it from an address: decoded by the parser, and once more.
    static QByteArray pathIn(const QByteArray &url)
    {
        const QUrlQuery query(QUrl(QString::fromLatin1(url)));
        return QByteArray::fromPercentEncoding(
            query.queryItemValue(QStringLiteral("path"), QUrl::FullyDecoded).toUtf8());
    }
    [[nodiscard]] QVariantMap pendingAction() const
    {
        const auto shared = SqliteUserDefaults::open(settings, QString(settings::sharedSuite)).domain;
        return settings::pendingAction.read(*shared).value_or(QVariantMap());
    }

    TemporaryHome home;
    QString settings;

private:
    QByteArray m_path = qgetenv("PATH");
};

const QByteArray showMainWindow = "quillhaven://show-main-window";

TEST_F(MenuToolTest, PrintsWhatFits)
{
    EXPECT_EQ(run({"offers", "/a"}), "protect\nshred\n");
    const auto shared = publish(settings, {publishedItem(QStringLiteral("A"), QStringLiteral("/a b"), true)});
    EXPECT_EQ(run({"offers", "file:///a%20b"}), "lock\nshred\n");
    EXPECT_EQ(run({"offers", "/a b", "/c"}), "shred\n");
    EXPECT_EQ(run({"offers", "-"}, QByteArray("file:///a%20b\0/a b", 18)), "lock\nshred\n");
    EXPECT_EQ(run({"offers"}), "0");
}

TEST_F(MenuToolTest, SaysWhetherOneEntryFits)
{
    const auto shared = publish(settings, {publishedItem(QStringLiteral("A"), QStringLiteral("/a"), false)});
    EXPECT_EQ(run({"fits", "unlock", "/a"}), "true");
    EXPECT_EQ(run({"fits", "lock", "/a"}), "false");
    EXPECT_EQ(run({"fits", "open", "/a"}), "64");
    EXPECT_EQ(run({"open", "/a"}), "64");
    EXPECT_EQ(run({}), "64");
    EXPECT_EQ(run({"lock"}), "64");
}

TEST_F(MenuToolTest, ASinglePathIsHandedOverInTheSharedDomain)
{
    const double before = static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000;
    EXPECT_EQ(run({"protect", "/it's a \"plain\" 50% \\ $file\nend"}), "0");
    EXPECT_THAT(started(), ElementsAre(showMainWindow));
    const QVariantMap record = pendingAction();
    EXPECT_EQ(record.size(), 3);
    EXPECT_EQ(record.value(QStringLiteral("action")), QStringLiteral("protect"));
    EXPECT_EQ(record.value(QStringLiteral("path")), QStringLiteral("/it's a \"plain\" 50% \\ $file\nend"));
    const double timestamp = record.value(QStringLiteral("timestamp")).toDouble();
    EXPECT_GE(timestamp, before - 0.01);
    EXPECT_LE(timestamp, static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000 + 0.01);
}

TEST_F(MenuToolTest, ALaterRequestReplacesAnEarlierOne)
{
    EXPECT_EQ(run({"protect", "/first"}), "0");
    EXPECT_EQ(run({"shred", "/second"}), "0");
    EXPECT_EQ(pendingAction().value(QStringLiteral("path")), QStringLiteral("/second"));
}

TEST_F(MenuToolTest, SeveralPathsAreHandedOverAsAddresses)
{
    const QByteArrayList paths{"/it's \"50%\" 25%20 &=+#?", "/line\nend", "/müll 😀", "/--lock"};
    EXPECT_EQ(run(QByteArrayList{"shred"} + paths), "0");
    const QByteArrayList urls = started();
    ASSERT_EQ(urls.size(), paths.size());
    for (int i = 0; i < paths.size(); ++i) {
        EXPECT_TRUE(urls[i].startsWith("quillhaven://shred?path=/")) << urls[i].constData();
        EXPECT_EQ(pathIn(urls[i]), paths[i]);
    }
    EXPECT_THAT(pendingAction(), IsEmpty());
}

TEST_F(MenuToolTest, APathThatIsNoTextKeepsItsBytesInAnAddress)
{
    EXPECT_EQ(run({"shred", "/a\xff\xfe z"}), "0");
    EXPECT_THAT(started(), ElementsAre("quillhaven://shred?path=/a%25FF%25FE%2520z"));
    EXPECT_THAT(pendingAction(), IsEmpty());
}

TEST_F(MenuToolTest, ADomainThatCannotBeWrittenIsReplacedByAnAddress)
{
    home.write(QStringLiteral("config/quillhaven"), "a file where the folder should be");
    EXPECT_EQ(run({"protect", "/a b"}), "0");
    EXPECT_THAT(started(), ElementsAre("quillhaven://protect?path=/a%2520b"));
}

TEST_F(MenuToolTest, ADamagedDomainIsLeftAsItIsAndReplacedByAnAddress)
{
    const QString database = SqliteUserDefaults::databasePath(settings, QString(settings::sharedSuite));
    home.write(database.mid(home.path().size() + 1), QByteArray(8192, 'x'));
    EXPECT_EQ(run({"protect", "/a"}), "0");
    EXPECT_THAT(started(), ElementsAre("quillhaven://protect?path=/a"));
    EXPECT_EQ(TemporaryHome::read(database), QByteArray(8192, 'x'));
}

TEST_F(MenuToolTest, OnlyWhatFitsIsDoneAndTheRestIsSaid)
{
    const auto shared = publish(settings, {publishedItem(QStringLiteral("A"), QStringLiteral("/a"), true),
                                           publishedItem(QStringLiteral("B"), QStringLiteral("/b"), false),
                                           publishedItem(QStringLiteral("C"), QStringLiteral("/c"), true)});
    EXPECT_EQ(run({"lock", "/a", "/b", "/c"}), "0");
    EXPECT_THAT(started(), ElementsAre("quillhaven://lock?path=/a", "quillhaven://lock?path=/c"));
    EXPECT_EQ(started("notified").constLast(), "This item is not unlocked, or not protected by Quillhaven.");
}

TEST_F(MenuToolTest, NothingIsStartedWhenNothingFits)
{
    const auto shared = publish(settings, {publishedItem(QStringLiteral("A"), QStringLiteral("/a"), true)});
    EXPECT_EQ(run({"unlock", "/a", "/b"}), "0");
    EXPECT_EQ(started("notified").constLast(), "2 items are not locked by Quillhaven.");
    EXPECT_FALSE(TemporaryHome::exists(home.path(QStringLiteral("started"))));
}

TEST_F(MenuToolTest, WithoutASummaryTheProgramDecides)
{
    EXPECT_EQ(run({"unlock", "/a", "/b"}), "0");
    EXPECT_EQ(started().size(), 2);
}

TEST_F(MenuToolTest, MorePathsThanFitIntoOneStartAreHandedOverInSeveral)
{
    QByteArray input;
    for (int i = 0; i < 5000; ++i) {
        input += "/folder/a file with a name of some length " + QByteArray::number(i) + '\0';
    }
    input.chop(1);
    EXPECT_EQ(run({"protect", "-"}, input), "0");
    const QString place = home.path(QStringLiteral("started"));
    EXPECT_TRUE(
        spinUntil([&] { return TemporaryHome::exists(place) && TemporaryHome::read(place).count("path=") == 5000; }));
    EXPECT_GT(TemporaryHome::read(place).count("END"), 1);
}

TEST_F(MenuToolTest, AProgramThatCannotBeStartedIsSaid)
{
    qputenv("QUILLHAVEN_PROGRAM", "/no/such/program");
    EXPECT_EQ(run({"protect", "/a"}), "1");
    EXPECT_EQ(started("notified").constLast(), "Quillhaven could not be started.");
}

} // namespace

} // namespace quillhaven::test
