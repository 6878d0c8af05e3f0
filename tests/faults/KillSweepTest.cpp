// SPDX-License-Identifier: GPL-3.0-or-later

// The process that runs an operation is killed instead of each of its system calls in turn. After a restart and a
// rescue the item is at its place or in the list, unless it was to be destroyed, no temporary file remains, and the
// operation can be continued. A run tries only some of the calls: see support/Sample.h.

#include "faults/HomePlatform.h"
#include "faults/Rescue.h"
#include "faults/SmallDisk.h"
#include "support/Sample.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>

#include <csignal>
#include <cstdio>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

using Case = OperationCase;

class Scene
{
public:
    explicit Scene(const Case &subject) : m_case(subject)
    {
        if (subject.isAcross) {
            m_storage = std::make_unique<SmallDisk>(home.path(QStringLiteral(".local/share/quillhaven")), "4m");
            EXPECT_TRUE(m_storage->isMounted()) << "this test needs the right to mount a tmpfs: run it as root";
        }
        makeItem(home.path(), subject.isFolder);
        withEngine([this](const OperationScene &scene) { operation().prepare(scene); });
    }

    /// Starts the program once.
    template <typename Work>
    void withEngine(Work work) const
    {
        HomePlatform services(home.path());
        EngineHarness engine(services.platform());
        engine.masterPasswordEntry = operationMasterPassword;
        work(OperationScene{engine, home.path()});
    }

    /// Runs the operation in another process; returns false if it was killed at the call.
    bool run(int killAt, QByteArray *output = nullptr) const
    {
        QProcess process;
        process.start(QStringLiteral(INTERRUPTED_OPERATION),
                      {home.path(), m_case.operation, QStringLiteral("call"), QString::number(killAt)});
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

    [[nodiscard]] const Operation &operation() const { return operationNamed(m_case.operation); }

    [[nodiscard]] int wholeCopies() const { return wholeCopiesBelow(home.path()); }

    /// Temporary files of moves, wherever they are, and everything in the temporary directory.
    [[nodiscard]] QStringList leftovers() const
    {
        QStringList found;
        QDirIterator each(home.path(), {QStringLiteral(".quillhaven-*")}, QDir::AllEntries | QDir::Hidden,
                          QDirIterator::Subdirectories);
        while (each.hasNext()) {
            found.append(each.next());
        }
        const QDir temporary(home.directories().temporary);
        return found + temporary.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    /// Whether the item can be had: at its place, or by unlocking it.
    void expectReachable(const OperationScene &scene, const std::string &where) const
    {
        for (qsizetype i = 0; i < scene.engine.count(); ++i) {
            if (scene.engine.item(i).originalPath == scene.place() && !scene.engine.item(i).isMounted) {
                scene.engine.unlock(i);
            }
        }
        EXPECT_EQ(TemporaryHome::read(scene.place() + (m_case.isFolder ? QStringLiteral("/inner.txt") : QString())),
                  itemBytes())
            << where;
    }

    TemporaryHome home;

private:
    Case m_case;
    std::unique_ptr<SmallDisk> m_storage;
};

class KillSweep : public ::testing::TestWithParam<Case>
{
protected:
    /// Whether the process was killed at the call. Runs may differ by a few calls, since data arrives in varying
    /// pieces.
    static bool killAt(const Case &subject, int n)
    {
        const Scene scene(subject);
        const LogCapture log;
        if (scene.run(n)) {
            return false;
        }
        continueAfterKill(subject, n, scene);
        return true;
    }

    static void continueAfterKill(const Case &subject, int n, const Scene &scene)
    {
        const std::string where = subject.operation.toStdString() + ", killed at call " + std::to_string(n);
        if (!scene.operation().destroysData) {
            ASSERT_GE(scene.wholeCopies(), 1) << "the data was lost: " << where;
        }
        scene.withEngine([&](const OperationScene &restarted) {
            const auto returned = subject.operation.contains(QStringLiteral("remove"), Qt::CaseInsensitive)
                                      ? QuillhavenManager::Returned::Removed
                                      : QuillhavenManager::Returned::Unlocked;
            const auto placeOf = [&restarted](const LostItem &) {
                return restarted.engine.count() == 0 ? restarted.place() : restarted.home + QStringLiteral("/Rescued");
            };
            rescueAll(restarted.engine, placeOf, returned);
            // A copy that another program makes for the killed one may go on for a moment.
            const bool isTidy = spinUntil([&] {
                (void)runTask(restarted.engine.manager.findLostItems());
                return scene.leftovers().isEmpty();
            });
            ASSERT_TRUE(isTidy) << scene.leftovers().join(QLatin1Char(' ')).toStdString() << ", " << where;
            if (!scene.operation().isDone(restarted)) {
                EXPECT_NO_THROW(scene.operation().perform(restarted)) << where;
            }
            if (!scene.operation().destroysData) {
                scene.expectReachable(restarted, where);
            }
        });
        if (scene.operation().destroysData && !subject.isAcross) {
            ASSERT_EQ(scene.wholeCopies(), 0) << "not destroyed after continuing: " << where;
        }
    }
};

} // namespace

TEST_P(KillSweep, NoKillAtAnyCallLosesData)
{
    int calls = 0;
    {
        const Scene scene(GetParam());
        QByteArray output;
        ASSERT_TRUE(scene.run(0, &output));
        calls = output.trimmed().toInt();
    }
    ASSERT_GT(calls, 0);
    Sample sample;
    int tried = 0;
    int killed = 0;
    for (int n = 1; n <= calls && !HasFailure(); ++n) {
        if (sample.isDrawn()) {
            ++tried;
            killed += static_cast<int>(killAt(GetParam(), n));
        }
    }
    constexpr int fewer = 3;
    EXPECT_GE(killed, tried - fewer);
    std::printf("%d of %d calls\n", tried, calls);
}

INSTANTIATE_TEST_SUITE_P(Operations, KillSweep, ::testing::ValuesIn(everyOperationCase()),
                         [](const auto &info) { return info.param.name(); });
