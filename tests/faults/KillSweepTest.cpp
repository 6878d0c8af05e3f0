// SPDX-License-Identifier: GPL-3.0-or-later

// The process that runs an operation dies in place of each of its file system calls in turn. After a restart the item's
// bytes stand somewhere unless they were to be destroyed, and the operation goes on from where it was.

#include "faults/HomePlatform.h"
#include "faults/Operations.h"
#include "faults/SmallDisk.h"

#include <QDirIterator>
#include <QProcess>

#include <csignal>
#include <cstdio>

using namespace quillhaven;
using namespace quillhaven::testing;

namespace {

const QByteArray mine("these are the bytes that nobody may lose");

struct Case
{
    QString operation;
    bool isFolder;
    bool isAcross;
};

class Scene
{
public:
    explicit Scene(const Case &subject) : m_case(subject)
    {
        if (subject.isAcross) {
            m_storage = std::make_unique<SmallDisk>(home.path(QStringLiteral(".local/share/quillhaven")), "4m");
            EXPECT_TRUE(m_storage->isMounted()) << "this test needs the right to mount a tmpfs: run it as root";
        }
        home.write(subject.isFolder ? QStringLiteral("Desktop/item/inner.txt") : QStringLiteral("Desktop/item"), mine);
        withEngine([this](Operations &operations, EngineHarness &) { operations.prepare(m_case.operation); });
    }

    /// One start of the program.
    template <typename Work>
    void withEngine(Work work) const
    {
        HomePlatform services(home.path());
        EngineHarness engine(services.platform());
        engine.masterPasswordEntry = Operations::masterPassword;
        Operations operations(engine, home.path());
        work(operations, engine);
    }

    /// Has another process run the operation; false when it died at the call.
    bool run(int killAt, QByteArray *output = nullptr) const
    {
        QProcess process;
        process.start(QStringLiteral(INTERRUPTED_CALL), {home.path(), m_case.operation, QString::number(killAt)});
        EXPECT_TRUE(process.waitForFinished(60'000));
        if (output) {
            *output = process.readAllStandardOutput();
        }
        if (process.exitStatus() == QProcess::CrashExit) {
            EXPECT_EQ(process.exitCode(), SIGKILL);
            return false;
        }
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        return true;
    }

    [[nodiscard]] int wholeCopies() const
    {
        int count = 0;
        QDirIterator each(home.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (each.hasNext()) {
            count += static_cast<int>(TemporaryHome::read(each.next()) == mine);
        }
        return count;
    }

    [[nodiscard]] QStringList abandonedInStorage() const
    {
        return QDir(home.path(QStringLiteral(".local/share/quillhaven")))
            .entryList({QStringLiteral(".quillhaven-*")}, QDir::AllEntries | QDir::Hidden);
    }

    TemporaryHome home;

private:
    Case m_case;
    std::unique_ptr<SmallDisk> m_storage;
};

class KillSweep : public ::testing::TestWithParam<Case>
{
protected:
    [[nodiscard]] static bool destroys(const Case &subject)
    {
        return subject.operation.startsWith(QStringLiteral("shred"));
    }

    /// Whether the operation is done now.
    static bool goOn(const Case &subject, Operations &operations, EngineHarness &engine)
    {
        const bool hasItem = engine.count() > 0;
        const bool isPlain = subject.operation == QStringLiteral("shredPlain");
        const bool locks =
            subject.operation == QStringLiteral("lock") || subject.operation == QStringLiteral("bulkLock");
        const bool isLeft =
            isPlain ? TemporaryHome::exists(operations.place())
                    : hasItem && (!locks || engine.item().isMounted) && subject.operation != QStringLiteral("protect");
        if (!isLeft) {
            return true;
        }
        try {
            operations.perform(subject.operation);
            return true;
        } catch (const QuillhavenError &) {
            // The move was done, and only the record does not know of it: the data is where it belongs.
            EXPECT_FALSE(locks);
            return false;
        }
    }

    /// Whether the process died at the call; a run may have a few calls fewer than another, as pieces come in.
    static bool killAt(const Case &subject, int n)
    {
        const Scene scene(subject);
        const LogCapture log;
        if (scene.run(n)) {
            return false;
        }
        goOnAfterKill(subject, n, scene);
        return true;
    }

    static void goOnAfterKill(const Case &subject, int n, const Scene &scene)
    {
        const std::string where = subject.operation.toStdString() + ", killed at call " + std::to_string(n);
        if (!destroys(subject)) {
            ASSERT_GE(scene.wholeCopies(), 1) << "the data is gone: " << where;
        }
        bool isDone = false;
        scene.withEngine(
            [&](Operations &operations, EngineHarness &engine) { isDone = goOn(subject, operations, engine); });
        ASSERT_EQ(scene.abandonedInStorage().join(QLatin1Char(' ')).toStdString(), "") << where;
        if (!destroys(subject)) {
            ASSERT_GE(scene.wholeCopies(), 1) << "the data is gone after going on: " << where;
        } else if (isDone && !subject.isAcross) {
            ASSERT_EQ(scene.wholeCopies(), 0) << "not destroyed after going on: " << where;
        }
    }
};

std::vector<Case> everyCase()
{
    std::vector<Case> cases;
    for (const QString &operation : Operations::all()) {
        for (const bool isFolder : {false, true}) {
            // A folder has no password that its duplicate could take over.
            if (!isFolder || operation != QStringLiteral("duplicate")) {
                cases.push_back({operation, isFolder, false});
                cases.push_back({operation, isFolder, true});
            }
        }
    }
    return cases;
}

} // namespace

TEST_P(KillSweep, EveryCallIsTheLast)
{
    int calls = 0;
    {
        const Scene scene(GetParam());
        QByteArray output;
        ASSERT_TRUE(scene.run(0, &output));
        calls = output.trimmed().toInt();
    }
    ASSERT_GT(calls, 0);
    int killed = 0;
    for (int n = 1; n <= calls && !HasFailure(); ++n) {
        killed += static_cast<int>(killAt(GetParam(), n));
    }
    constexpr int fewer = 3;
    EXPECT_GE(killed, calls - fewer);
    std::printf("%d cases\n", killed);
}

INSTANTIATE_TEST_SUITE_P(Operations, KillSweep, ::testing::ValuesIn(everyCase()), [](const auto &info) {
    return info.param.operation.toStdString() + (info.param.isFolder ? "Folder" : "File") +
           (info.param.isAcross ? "AcrossFileSystems" : "");
});
