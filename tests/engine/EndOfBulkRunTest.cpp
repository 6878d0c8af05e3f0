// SPDX-License-Identifier: GPL-3.0-or-later

// A program that is asked to end in a run over many items finishes the item in progress and begins no further one. In a
// program of its own: an end that was asked for cannot be taken back.

#include "support/CallHooks.h"
#include "support/EngineHarness.h"
#include "support/LogCapture.h"

using namespace quillhaven;
using namespace quillhaven::test;

TEST(EndOfBulkRun, ItemInProgressIsFinishedAndTheNextOneIsNotBegun)
{
    TestPlatform services;
    LogCapture log;
    SeamHooks hooks;
    HookedFileManager files(services.fileManager, hooks);
    EngineHarness engine(services, files);
    for (const char *name : {"a.txt", "b.txt", "c.txt"}) {
        engine.protect(services.home.write(QStringLiteral("Desktop/") + QLatin1String(name), name));
        engine.unlock(engine.count() - 1);
    }
    int locked = 0;
    bool hasEnded = false;
    {
        HeldCall move(hooks, "moveItem", engine.item(1).originalPath);
        const RunningTask<void> run(
            engine.manager.bulkLockItems(engine.manager.protectedItems(), [](const QString &, double) {}));
        ASSERT_TRUE(move.hasStarted());
        WorkInFlight::close([&hasEnded] { hasEnded = true; });
        spinOnce();
        EXPECT_FALSE(hasEnded) << "an item is being moved";
        move.letGo();
        ASSERT_TRUE(spinUntil([&hasEnded] { return hasEnded; }));
    }
    for (const ProtectedItem &item : engine.storedItems()) {
        locked += item.isMounted ? 0 : 1;
        EXPECT_EQ(TemporaryHome::exists(item.originalBackupPath), !item.isMounted) << item.originalName.toStdString();
    }
    EXPECT_EQ(locked, 2);
    EXPECT_TRUE(log.contains(QStringLiteral("Quillhaven is ending. The run stops after 2 of 3 items.")));
}
