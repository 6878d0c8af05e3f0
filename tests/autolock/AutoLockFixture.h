// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/PlaceholderFile.h"
#include "platform/NotificationCenter.h"
#include "support/CallHooks.h"
#include "support/EngineHarness.h"

namespace quillhaven::test {

/// An engine with real files, some of which are unlocked.
class AutoLockTest : public ::testing::Test
{
protected:
    /// Protects files of these names and unlocks them.
    void startUnlocked(const QStringList &names)
    {
        for (const QString &name : names) {
            const QString path = services.home.path(QStringLiteral("Desktop/") + name);
            services.home.write(QStringLiteral("Desktop/") + name, name.toUtf8());
            engine.protect(path);
            engine.unlock(engine.count() - 1);
        }
        log.clear();
    }
    /// Runs the jobs that were started to their end.
    static void finishJobs()
    {
        spinOnce();
        spinUntil([] { return WorkInFlight::count() == 0; });
        spinOnce();
    }
    [[nodiscard]] QStringList lockedNames() const
    {
        QStringList names;
        for (const ProtectedItem &item : engine.manager.protectedItems()) {
            if (!item.isMounted) {
                names.append(item.originalName);
            }
        }
        return names;
    }
    /// The lines of the managers themselves.
    [[nodiscard]] QStringList managerLines() const { return log.lines().filter(QStringLiteral("AutoLockManager: ")); }
    [[nodiscard]] UserDefaults &defaults() { return services.defaults.standard(); }
    void post(NotificationCenter &center, const QString &name)
    {
        center.post(name);
        finishJobs();
    }

    TestPlatform services;
    LogCapture log;
    SeamHooks hooks;
    HookedFileManager files{services.fileManager, hooks};
    EngineHarness engine{services, files};
};

} // namespace quillhaven::test
