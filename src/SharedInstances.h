// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Platform.h"

#include <QStringList>

namespace quillhaven {

class ApplicationPresence;

/// Sets what the shared instances are built from. To be called once, before the first use of any `shared()`, which ends
/// the process otherwise; the references must outlive `shutDownSharedInstances`.
void installPlatform(const Platform &platform, ApplicationPresence &presence, const QStringList &arguments);

/// Deletes the shared instances that were built, in reverse order, while the application object still exists.
void shutDownSharedInstances();

} // namespace quillhaven
