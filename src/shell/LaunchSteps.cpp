// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/LaunchSteps.h"

#include "async/Jobs.h"
#include "support/printLogger.h"

namespace quillhaven {

namespace {

QCoro::Task<> runUpdateCheck(std::function<QCoro::Task<>()> check)
{
    printLogger(QStringLiteral("🔄 Starting background update check..."));
    printLogger(QStringLiteral("🔄 Background update check requested"));
    co_await check();
    printLogger(QStringLiteral("✅ Background update check completed"));
}

QCoro::Task<> runLoginSynchronization(std::function<QCoro::Task<>()> synchronize)
{
    co_await synchronize();
    printLogger(QStringLiteral("LaunchAtLoginServiceManager: Successfully initialized and synchronized"));
}

} // namespace

LaunchStep autoLockStep(LaunchStep startAutoLockManager, LaunchStep startSmartAutoLockManager)
{
    return [first = std::move(startAutoLockManager), second = std::move(startSmartAutoLockManager)] {
        first();
        second();
        printLogger(QStringLiteral("AutoLockManager and SmartAutoLockManager initialized"));
    };
}

LaunchStep updateCheckStep(std::function<QCoro::Task<>()> performBackgroundUpdateCheck)
{
    return [check = std::move(performBackgroundUpdateCheck)] { startJob([check] { return runUpdateCheck(check); }); };
}

LaunchStep launchAtLoginStep(std::function<QCoro::Task<>()> synchronizeLaunchAtLogin)
{
    return [synchronize = std::move(synchronizeLaunchAtLogin)] {
        startJob([synchronize] { return runLoginSynchronization(synchronize); });
    };
}

} // namespace quillhaven
