// SPDX-License-Identifier: GPL-3.0-or-later

// Every `shared()` is defined here, and only the program links this file, so that a library or test which uses a global
// does not link.

#include "SharedInstances.h"

#include "autolock/AutoLockManager.h"
#include "autolock/SmartAutoLockManager.h"
#include "contact/SupportManager.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordManager.h"
#include "credentials/PasswordInputDialogManager.h"
#include "engine/QuillhavenManager.h"
#include "launch_at_login/LaunchAtLoginServiceManager.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/dialogs/RemoveProtectionDialogManager.h"
#include "presentation/onboarding/OnboardingManager.h"
#include "shell/LaunchContextManager.h"
#include "shredding/QuillhavenShredder.h"
#include "updates/UpdateManager.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quillhaven {

namespace {

struct Foundation
{
    Platform platform;
    ApplicationPresence &presence;
    QStringList arguments;
};

std::optional<Foundation> &installed()
{
    static std::optional<Foundation> foundation;
    return foundation;
}

const Foundation &foundation()
{
    if (!installed()) {
        qFatal("A shared instance was used before installPlatform() or after shutDownSharedInstances().");
    }
    return *installed();
}

/// The functions that delete the instances, in the order in which the instances were created.
std::vector<std::function<void()>> &removals()
{
    static std::vector<std::function<void()>> all;
    return all;
}

/// The shared instance of a class, created at first use.
template <typename Instance, typename... Arguments>
Instance &sharedInstance(Arguments &&...arguments)
{
    static std::unique_ptr<Instance> instance;
    if (!instance) {
        static_cast<void>(foundation()); // ends the process unless called between installation and shutdown
        instance = std::make_unique<Instance>(std::forward<Arguments>(arguments)...);
        removals().push_back([] { instance.reset(); });
    }
    return *instance;
}

} // namespace

void installPlatform(const Platform &platform, ApplicationPresence &presence, const QStringList &arguments)
{
    if (installed()) {
        qFatal("installPlatform() was called twice.");
    }
    installed().emplace(Foundation{platform, presence, arguments});
}

void shutDownSharedInstances()
{
    while (!removals().empty()) {
        const auto remove = removals().back();
        removals().pop_back();
        remove();
    }
    installed().reset();
}

LaunchContextManager &LaunchContextManager::shared()
{
    return sharedInstance<LaunchContextManager>(foundation().arguments, foundation().presence);
}

MasterPasswordDialogManager &MasterPasswordDialogManager::shared()
{
    return sharedInstance<MasterPasswordDialogManager>();
}

PasswordInputDialogManager &PasswordInputDialogManager::shared()
{
    return sharedInstance<PasswordInputDialogManager>();
}

ConfirmationDialogManager &ConfirmationDialogManager::shared()
{
    return sharedInstance<ConfirmationDialogManager>();
}

ProtectionMethodDialogManager &ProtectionMethodDialogManager::shared()
{
    return sharedInstance<ProtectionMethodDialogManager>();
}

RemoveProtectionDialogManager &RemoveProtectionDialogManager::shared()
{
    return sharedInstance<RemoveProtectionDialogManager>();
}

MasterPasswordManager &MasterPasswordManager::shared()
{
    return sharedInstance<MasterPasswordManager>(foundation().platform, MasterPasswordDialogManager::shared());
}

QuillhavenShredder &QuillhavenShredder::shared()
{
    return sharedInstance<QuillhavenShredder>(foundation().platform, MasterPasswordManager::shared());
}

QuillhavenManager &QuillhavenManager::shared()
{
    return sharedInstance<QuillhavenManager>(foundation().platform, MasterPasswordManager::shared(),
                                             PasswordInputDialogManager::shared(), QuillhavenShredder::shared());
}

AutoLockManager &AutoLockManager::shared()
{
    return sharedInstance<AutoLockManager>(foundation().platform, QuillhavenManager::shared());
}

SmartAutoLockManager &SmartAutoLockManager::shared()
{
    return sharedInstance<SmartAutoLockManager>(foundation().platform, QuillhavenManager::shared());
}

OnboardingManager &OnboardingManager::shared()
{
    return sharedInstance<OnboardingManager>(foundation().platform.defaults.standard());
}

LaunchAtLoginServiceManager &LaunchAtLoginServiceManager::shared()
{
    return sharedInstance<LaunchAtLoginServiceManager>(foundation().platform);
}

SupportManager &SupportManager::shared()
{
    return sharedInstance<SupportManager>(foundation().platform);
}

UpdateManager &UpdateManager::shared()
{
    return sharedInstance<UpdateManager>(foundation().platform, UpdateManager::buildManifestAddress());
}

} // namespace quillhaven
