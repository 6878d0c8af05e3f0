// SPDX-License-Identifier: GPL-3.0-or-later

// Every `shared()` is defined here and only the program links this file, so that a library or a test that reaches for
// a global does not link.

#include "SharedInstances.h"

#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordManager.h"
#include "credentials/PasswordInputDialogManager.h"
#include "engine/QuillhavenManager.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/dialogs/RemoveProtectionDialogManager.h"
#include "shell/LaunchContextManager.h"
#include "shredding/QuillhavenShredder.h"

#include <cassert>
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

std::optional<Foundation> &foundation()
{
    static std::optional<Foundation> installed;
    return installed;
}

/// What takes the instances down again, in the order in which they were built.
std::vector<std::function<void()>> &removals()
{
    static std::vector<std::function<void()>> all;
    return all;
}

/// The one instance of a class, built at first use.
template <typename Instance, typename... Arguments>
Instance &sharedInstance(Arguments &&...arguments)
{
    static std::unique_ptr<Instance> instance;
    if (!instance) {
        assert(foundation().has_value());
        instance = std::make_unique<Instance>(std::forward<Arguments>(arguments)...);
        removals().push_back([] { instance.reset(); });
    }
    return *instance;
}

} // namespace

void installPlatform(const Platform &platform, ApplicationPresence &presence, const QStringList &arguments)
{
    assert(!foundation().has_value());
    foundation().emplace(Foundation{platform, presence, arguments});
}

void shutDownSharedInstances()
{
    while (!removals().empty()) {
        const auto remove = removals().back();
        removals().pop_back();
        remove();
    }
    foundation().reset();
}

LaunchContextManager &LaunchContextManager::shared()
{
    return sharedInstance<LaunchContextManager>(foundation()->arguments, foundation()->presence);
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
    return sharedInstance<MasterPasswordManager>(foundation()->platform, MasterPasswordDialogManager::shared());
}

QuillhavenShredder &QuillhavenShredder::shared()
{
    return sharedInstance<QuillhavenShredder>(foundation()->platform, MasterPasswordManager::shared());
}

QuillhavenManager &QuillhavenManager::shared()
{
    return sharedInstance<QuillhavenManager>(foundation()->platform, MasterPasswordManager::shared(),
                                             PasswordInputDialogManager::shared(), QuillhavenShredder::shared());
}

} // namespace quillhaven
