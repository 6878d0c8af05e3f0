// SPDX-License-Identifier: GPL-3.0-or-later

// A program that is asked to end while it recovers backups finishes the one in progress and begins no further one. In a
// program of its own: an end that was asked for cannot be taken back.

#include "backup/CloudFolder.h"
#include "support/CallHooks.h"
#include "support/EngineHarness.h"
#include "support/LogCapture.h"

using namespace quillhaven;
using namespace quillhaven::test;

TEST(EndOfRecovery, BackupInProgressIsRecoveredAndTheNextOneIsNotBegun)
{
    TestPlatform services;
    const CloudFolder cloud(services);
    LogCapture log;
    SeamHooks hooks;
    HookedFileManager files(services.fileManager, hooks);
    EngineHarness engine(services, files);
    const QString folder = services.home.path(QStringLiteral("Recovered"));
    QDir().mkpath(folder);
    services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
    services.panels.answer = [&folder](const OpenPanelRequest &) { return folder; };
    for (const char *id : {"one", "two", "three"}) {
        cloud.writeBackup(QLatin1String(id), id);
    }
    bool hasEnded = false;
    {
        HeldCall write(hooks, "writeFile");
        const RunningTask<QStringList> recovery(engine.manager.recoverFromiCloud(QStringLiteral("Master12")));
        ASSERT_TRUE(write.hasStarted());
        WorkInFlight::close([&hasEnded] { hasEnded = true; });
        spinOnce();
        EXPECT_FALSE(hasEnded) << "a backup is being recovered";
        write.letGo();
        ASSERT_TRUE(spinUntil([&hasEnded] { return hasEnded; }));
    }
    const QStringList written = QDir(folder).entryList(QDir::Files);
    ASSERT_EQ(written.size(), 1);
    EXPECT_EQ(TemporaryHome::read(folder + QLatin1Char('/') + written.first()), written.first().toUtf8());
    EXPECT_TRUE(log.contains(QStringLiteral("Quillhaven is ending. The run stops after 1 of 3 items.")));
}
