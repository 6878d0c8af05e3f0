// SPDX-License-Identifier: GPL-3.0-or-later

// Each file operation of protect, lock, unlock and remove fails in turn, with each error that a disk reports. After any
// failure the item's bytes exist somewhere, the error names a file and the reason, and the state is the documented one.

#include "engine/PlaceholderFile.h"
#include "faults/SmallDisk.h"
#include "support/EngineHarness.h"
#include "support/HookedSeam.h"

#include <QDir>
#include <QProcess>

#include <cerrno>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

struct Reason
{
    const char *name;
    int errorNumber;
};

class FaultMatrix : public ::testing::TestWithParam<Reason>
{
protected:
    /// Makes the n-th change of a file from now on fail, counted from 1.
    void failChange(int n)
    {
        remaining = n;
        hooks.before = [this](const char *call, const QString &path) {
            if (--remaining == 0) {
                failedCall = QString::fromLatin1(call);
                throw FileError::fromErrno(GetParam().errorNumber, FileError::Action::Write, path);
            }
        };
    }
    /// Makes the next call of this name fail.
    void failNext(const QString &name)
    {
        hooks.before = [this, name](const char *call, const QString &path) {
            if (name == QLatin1String(call) && std::exchange(failedCall, name) != name) {
                throw FileError::fromErrno(GetParam().errorNumber, FileError::Action::Write, path);
            }
        };
    }
    void failNothing() { hooks.before = nullptr; }

    /// Returns the description of the error that the call throws, or nothing if it throws none.
    template <typename Call>
    static QString errorOf(Call call)
    {
        try {
            call();
        } catch (const LocalizedError &error) {
            return error.errorDescription();
        }
        return {};
    }

    [[nodiscard]] QString contentsOf(const QString &path) const
    {
        if (!TemporaryHome::exists(path)) {
            return QStringLiteral("nothing");
        }
        const QByteArray bytes = TemporaryHome::read(path);
        if (bytes == placeholderText.toUtf8()) {
            return QStringLiteral("placeholder");
        }
        return bytes == "mine" ? QStringLiteral("data") : QStringLiteral("other");
    }
    [[nodiscard]] QString state(const EngineHarness &subject) const
    {
        const QDir storage(services.home.path(QStringLiteral(".local/share/quillhaven")));
        const QStringList stored = storage.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        const QString record = subject.count() == 0       ? QStringLiteral("none")
                               : subject.item().isMounted ? QStringLiteral("unlocked")
                                                          : QStringLiteral("locked");
        EXPECT_LE(stored.size(), 1) << "something was left in private storage";
        return QStringLiteral("%1, %2, %3")
            .arg(contentsOf(itemPath),
                 stored.isEmpty() ? QStringLiteral("nothing") : contentsOf(storage.filePath(stored.first())), record);
    }

    TestPlatform services;
    LogCapture log;
    SeamHooks hooks;
    HookedFileManager files{services.fileManager, hooks};
    EngineHarness engine{services, files};
    QString itemPath = services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    std::atomic<int> remaining = 0;
    QString failedCall;
};

/// A file for which one of the user's folders has no space.
class FullDisk : public ::testing::Test
{
protected:
    /// Protects the file, expects that there is no space, and returns the error message.
    QString protectWithoutSpace(EngineHarness &engine)
    {
        try {
            engine.protect(path);
        } catch (const FileError &error) {
            EXPECT_EQ(error.kind(), FileError::Kind::NoSpace) << error.errorDescription().toStdString();
            return error.errorDescription();
        }
        ADD_FAILURE() << "no error";
        return {};
    }

    TestPlatform services;
    LogCapture log;
    const QByteArray bytes = QByteArray(1024 * 1024, 'x');
    const QString path = services.home.write(QStringLiteral("Desktop/big.bin"), bytes);
};

} // namespace

TEST_P(FaultMatrix, ProtectFailsInTurn)
{
    // The move, reading the file for the container, the container, the placeholder.
    const QStringList states{QStringLiteral("data, nothing, none"), QStringLiteral("nothing, data, none"),
                             QStringLiteral("nothing, data, none"), QStringLiteral("nothing, data, none")};
    for (int n = 1; n <= states.size(); ++n) {
        TestPlatform own;
        HookedFileManager ownFiles(own.fileManager, hooks);
        EngineHarness ownEngine(own, ownFiles);
        const QString ownPath = own.home.write(QStringLiteral("Desktop/a.txt"), "mine");
        failChange(n);
        const QString sentence = errorOf([&] { ownEngine.protect(ownPath); });
        failNothing();
        EXPECT_TRUE(sentence.contains(QLatin1Char('"'))) << "does not name a file: " << sentence.toStdString();
        EXPECT_EQ(ownEngine.count(), 0);
        const QDir storage(own.home.path(QStringLiteral(".local/share/quillhaven")));
        const QStringList stored = storage.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        const QString state =
            QStringLiteral("%1, %2, none")
                .arg(contentsOf(ownPath),
                     stored.isEmpty() ? QStringLiteral("nothing") : contentsOf(storage.filePath(stored.first())));
        EXPECT_EQ(state, states.at(n - 1)) << "failed at " << failedCall.toStdString();
    }
}

TEST_P(FaultMatrix, LockFailsInTurn)
{
    engine.protect(itemPath);
    engine.unlock();
    failChange(1);
    QString sentence = errorOf([&] { engine.lock(); });
    EXPECT_EQ(failedCall, QStringLiteral("moveItem"));
    EXPECT_TRUE(sentence.startsWith(QStringLiteral("Could not move file to secure storage: ")));
    EXPECT_EQ(state(engine), QStringLiteral("data, nothing, unlocked"));

    failChange(2);
    sentence = errorOf([&] { engine.lock(); });
    EXPECT_EQ(failedCall, QStringLiteral("writeFile"));
    EXPECT_TRUE(sentence.contains(QStringLiteral("a.txt"))) << sentence.toStdString();
    EXPECT_EQ(state(engine), QStringLiteral("nothing, data, unlocked"));

    failNothing();
    engine.lock();
    EXPECT_EQ(state(engine), QStringLiteral("placeholder, data, locked"));
}

TEST_P(FaultMatrix, UnlockFailsInTurn)
{
    engine.protect(itemPath);
    failNext(QStringLiteral("removeItem"));
    QString sentence = errorOf([&] { engine.unlock(); });
    EXPECT_TRUE(sentence.contains(QStringLiteral("a.txt"))) << sentence.toStdString();
    EXPECT_EQ(state(engine), QStringLiteral("placeholder, data, locked"));
    EXPECT_FALSE(engine.item().isProcessing);

    failNext(QStringLiteral("moveItem"));
    sentence = errorOf([&] { engine.unlock(); });
    EXPECT_FALSE(sentence.isEmpty());
    EXPECT_EQ(state(engine), QStringLiteral("nothing, data, locked"));
    EXPECT_FALSE(engine.item().isProcessing);
}

TEST_P(FaultMatrix, RemovalFailsInTurn)
{
    engine.protect(itemPath);
    failNext(QStringLiteral("replaceItemAt"));
    const QString sentence = errorOf([&] { engine.remove(); });
    EXPECT_TRUE(sentence.startsWith(QStringLiteral("Could not restore file to original location.")));
    EXPECT_EQ(state(engine), QStringLiteral("placeholder, data, locked"));

    failNext(QStringLiteral("removeItem"));
    EXPECT_EQ(errorOf([&] { engine.remove(); }), QString()) << "a container that cannot be removed is only logged";
    EXPECT_EQ(failedCall, QStringLiteral("removeItem"));
    EXPECT_EQ(state(engine), QStringLiteral("data, nothing, none"));
}

INSTANTIATE_TEST_SUITE_P(Reasons, FaultMatrix,
                         ::testing::Values(Reason{"Permission", EACCES}, Reason{"NoSpace", ENOSPC},
                                           Reason{"InputOutput", EIO}),
                         [](const auto &info) { return info.param.name; });

TEST_F(FullDisk, WithoutSpaceForTheContainerNothingMoves)
{
    const SmallDisk documents(services.home.path(QStringLiteral("Documents")), "256k");
    ASSERT_TRUE(documents.isMounted()) << "this test needs the right to mount a tmpfs: run it as root";
    EngineHarness engine(services);
    const QString sentence = protectWithoutSpace(engine);
    EXPECT_TRUE(sentence.contains(QStringLiteral("\"big.bin\""))) << sentence.toStdString();
    EXPECT_EQ(engine.count(), 0);
    EXPECT_EQ(TemporaryHome::read(path), bytes);
    EXPECT_TRUE(QDir(services.home.path(QStringLiteral(".local/share/quillhaven"))).isEmpty());
    EXPECT_TRUE(QDir(services.home.path(QStringLiteral("Documents"))).isEmpty());
}

TEST_F(FullDisk, AContainerThatIsReplacedCountsAsSpace)
{
    const SmallDisk documents(services.home.path(QStringLiteral("Documents")), "1536k");
    ASSERT_TRUE(documents.isMounted()) << "this test needs the right to mount a tmpfs: run it as root";
    EngineHarness engine(services);
    engine.protect(path);
    engine.protect(services.home.write(QStringLiteral("papers/big.bin"), bytes));
    EXPECT_EQ(engine.count(), 2);
}

TEST_F(FullDisk, StorageWithoutSpaceForTheItemLeavesItAtItsPlace)
{
    const SmallDisk storage(services.home.path(QStringLiteral(".local/share/quillhaven")), "256k");
    ASSERT_TRUE(storage.isMounted()) << "this test needs the right to mount a tmpfs: run it as root";
    EngineHarness engine(services);
    protectWithoutSpace(engine);
    EXPECT_EQ(TemporaryHome::read(path), bytes);
    const QDir directory(services.home.path(QStringLiteral(".local/share/quillhaven")));
    EXPECT_TRUE(directory.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).isEmpty());
}
