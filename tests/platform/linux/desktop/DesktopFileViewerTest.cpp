// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/desktop/DesktopFileViewer.h"
#include "platform/linux/files/FilePaths.h"
#include "support/FakeUrlOpener.h"
#include "support/RunTask.h"

#include <QDBusContext>

#include <gtest/gtest.h>

namespace quillhaven::test {
namespace {

using namespace std::chrono_literals;

const QString fileManagerName = QStringLiteral("org.freedesktop.FileManager1");

/// A file manager on the session bus, which writes its calls down and answers as it is told.
class FileManagerOnBus : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    enum class Answer { AtOnce, Later, Error };

    explicit FileManagerOnBus(Answer answer = Answer::AtOnce) : m_answer(answer)
    {
        EXPECT_TRUE(m_bus.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), this,
                                         QDBusConnection::ExportScriptableSlots));
        EXPECT_TRUE(m_bus.registerService(fileManagerName));
    }
    ~FileManagerOnBus() override
    {
        m_bus.unregisterService(fileManagerName);
        m_bus.unregisterObject(QStringLiteral("/org/freedesktop/FileManager1"));
    }

    void answerNow() const
    {
        for (const QDBusMessage &call : m_waiting) {
            m_bus.send(call.createReply());
        }
    }

    /// The method and the addresses of each call.
    QStringList calls;

public Q_SLOTS:
    Q_SCRIPTABLE void ShowItems(const QStringList &addresses, const QString &startupId) // NOLINT: names of the bus
    {
        note(QStringLiteral("ShowItems"), addresses, startupId);
    }
    Q_SCRIPTABLE void ShowFolders(const QStringList &addresses, const QString &startupId) // NOLINT
    {
        note(QStringLiteral("ShowFolders"), addresses, startupId);
    }

private:
    void note(const QString &method, const QStringList &addresses, const QString &startupId)
    {
        EXPECT_EQ(startupId, QString());
        calls.append(method + QLatin1Char(' ') + addresses.join(QLatin1Char(' ')));
        if (m_answer == Answer::Later) {
            setDelayedReply(true);
            m_waiting.append(message());
        } else if (m_answer == Answer::Error) {
            sendErrorReply(QDBusError::Failed, QStringLiteral("The folder is not mounted"));
        }
    }

    Answer m_answer;
    QDBusConnection m_bus = QDBusConnection::sessionBus();
    QList<QDBusMessage> m_waiting;
};

using Answer = FileManagerOnBus::Answer;

class DesktopFileViewerTest : public ::testing::Test
{
protected:
    bool show(const QString &path, const QString &folder = {}) { return runTask(viewer.selectFile(path, folder)); }

    FakeUrlOpener opener;
    DesktopFileViewer viewer{opener, 1min};
};

const QString letter = QStringLiteral("/home/ada/letter.txt");
const QString showLetter = QStringLiteral("ShowItems file:///home/ada/letter.txt");
const QUrl home(QStringLiteral("file:///home/ada"));

TEST_F(DesktopFileViewerTest, TheFileManagerSelectsTheFile)
{
    const FileManagerOnBus manager;
    EXPECT_TRUE(show(letter));
    EXPECT_EQ(manager.calls, QStringList(showLetter));
    EXPECT_TRUE(opener.opened.isEmpty()) << "nothing else is opened beside it";
}

TEST_F(DesktopFileViewerTest, AFolderWithoutASelectionIsShownAsAFolder)
{
    const FileManagerOnBus manager;
    EXPECT_TRUE(show(QString(), QStringLiteral("/home/ada")));
    EXPECT_EQ(manager.calls, QStringList(QStringLiteral("ShowFolders file:///home/ada")));
}

TEST_F(DesktopFileViewerTest, EveryByteOfANameReachesTheFileManager)
{
    const FileManagerOnBus manager;
    EXPECT_TRUE(show(decodedPath("/home/a d/100% #1?\n\xC3\xBC.txt")));
    EXPECT_TRUE(show(decodedPath("/home/caf\xE9/%41")));
    EXPECT_EQ(manager.calls, QStringList({QStringLiteral("ShowItems file:///home/a%20d/100%25%20%231%3F%0A%C3%BC.txt"),
                                          QStringLiteral("ShowItems file:///home/caf%E9/%2541")}));
}

TEST_F(DesktopFileViewerTest, ALateAnswerIsWaitedForWithoutBlockingTheLoop)
{
    const FileManagerOnBus manager(Answer::Later);
    const RunningTask<bool> showing(viewer.selectFile(letter, {}));
    ASSERT_TRUE(spinUntil([&] { return !manager.calls.isEmpty(); }));
    EXPECT_FALSE(showing.isFinished());
    manager.answerNow();
    EXPECT_TRUE(showing.wait());
    EXPECT_TRUE(opener.opened.isEmpty());
}

TEST_F(DesktopFileViewerTest, AFileManagerThatDoesNotAnswerInTimeIsNotFollowedByAnotherProgram)
{
    const FileManagerOnBus manager(Answer::Later);
    DesktopFileViewer impatient(opener, 100ms);
    EXPECT_TRUE(runTask(impatient.selectFile(letter, {})));
    EXPECT_TRUE(opener.opened.isEmpty());
    EXPECT_TRUE(runTask(impatient.selectFile(letter, {}))) << "and is asked again the next time";
    EXPECT_EQ(manager.calls, QStringList({showLetter, showLetter}));
}

TEST_F(DesktopFileViewerTest, AnErrorOfTheFileManagerOpensTheFolder)
{
    const FileManagerOnBus manager(Answer::Error);
    EXPECT_TRUE(show(letter));
    EXPECT_EQ(manager.calls, QStringList(showLetter));
    EXPECT_EQ(opener.opened, QList<QUrl>{home});
}

TEST_F(DesktopFileViewerTest, WithoutAFileManagerOnTheBusTheFolderIsOpened)
{
    EXPECT_TRUE(show(letter));
    EXPECT_TRUE(show(QString(), QStringLiteral("/home/ada")));
    EXPECT_EQ(opener.opened, (QList<QUrl>{home, home}));
}

TEST_F(DesktopFileViewerTest, TheAddressOfAFolderThatIsOpenedKeepsEveryByte)
{
    EXPECT_TRUE(show(decodedPath("/home/caf\xE9 %41/letter.txt")));
    ASSERT_EQ(opener.opened.size(), 1);
    EXPECT_EQ(opener.opened.first().toEncoded(), "file:///home/caf%E9%20%2541");
}

TEST_F(DesktopFileViewerTest, WithoutAnyProgramForFoldersTheCallerIsTold)
{
    opener.canOpen = false;
    EXPECT_FALSE(show(letter));
}

TEST_F(DesktopFileViewerTest, AFileManagerThatAppearsLaterIsUsed)
{
    EXPECT_TRUE(show(letter));
    const FileManagerOnBus manager;
    EXPECT_TRUE(show(letter));
    EXPECT_EQ(manager.calls, QStringList(showLetter));
    EXPECT_EQ(opener.opened.size(), 1);
}

TEST_F(DesktopFileViewerTest, WithoutASessionBusTheFolderIsOpened)
{
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_TRUE(show(letter));
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    qputenv("XDG_RUNTIME_DIR", runtime);
    EXPECT_EQ(opener.opened, QList<QUrl>{home});
    const FileManagerOnBus manager;
    EXPECT_TRUE(show(letter));
    EXPECT_EQ(manager.calls, QStringList(showLetter)) << "the bus is looked for again";
}

TEST_F(DesktopFileViewerTest, TheCallMayOutliveTheViewer)
{
    const FileManagerOnBus manager(Answer::Later);
    auto shortLived = std::make_unique<DesktopFileViewer>(opener, 1min);
    const RunningTask<bool> showing(shortLived->selectFile(letter, {}));
    ASSERT_TRUE(spinUntil([&] { return !manager.calls.isEmpty(); }));
    shortLived.reset();
    manager.answerNow();
    EXPECT_TRUE(showing.wait());
}

} // namespace
} // namespace quillhaven::test

#include "DesktopFileViewerTest.moc"
