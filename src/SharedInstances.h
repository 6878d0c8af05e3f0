// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Platform.h"

#include <QStringList>

namespace quillhaven {

class ApplicationPresence;

/// Sets what the shared instances are created from. Call it once, before the first use of any `shared()`, which would
/// otherwise end the process. The references must outlive `shutDownSharedInstances`.
void installPlatform(const Platform &platform, ApplicationPresence &presence, const QStringList &arguments);

/// Deletes the created shared instances in reverse order. Call it while the application object still exists.
void shutDownSharedInstances();

} // namespace quillhaven
