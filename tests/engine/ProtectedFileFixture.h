// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/PlaceholderFile.h"
#include "support/CallHooks.h"
#include "support/EngineHarness.h"

#include <QFile>

namespace quillhaven::test {

/// An engine with one protected file, whose file operations pass through the hooks.
class ProtectedFileTest : public ::testing::Test
{
protected:
    void startLocked(const QByteArray &bytes = "mine", bool useTouchID = false)
    {
        services.home.write(QStringLiteral("Desktop/a.txt"), bytes);
        engine.protect(path, useTouchID ? QString() : QStringLiteral("Abcdefg1"), useTouchID);
        services.panels.placeRequests.clear();
    }
    void startLockedWithTouchID() { startLocked("mine", true); }
    void startUnlocked(const QByteArray &bytes = "mine")
    {
        startLocked(bytes);
        engine.unlock();
        services.panels.placeRequests.clear();
    }
    /// Sets a master password that the user knows, without opening a session.
    void setMasterPassword()
    {
        runTask(engine.masterPassword.setMasterPassword(QStringLiteral("Master12")));
        engine.masterPasswordEntry = QStringLiteral("Master12");
    }

    TestPlatform services;
    LogCapture log;
    SeamHooks hooks;
    HookedFileManager files{services.fileManager, hooks};
    EngineHarness engine{services, files};
    const QString path = services.home.path(QStringLiteral("Desktop/a.txt"));
};

} // namespace quillhaven::test
