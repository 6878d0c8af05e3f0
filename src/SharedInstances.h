// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Platform.h"

#include <QStringList>

namespace quillhaven {

class ApplicationPresence;

/// Hands over what the shared instances are built from. Called once, before the first use of any `shared()`; the
/// references outlive `shutDownSharedInstances`.
void installPlatform(const Platform &platform, ApplicationPresence &presence, const QStringList &arguments);

/// Deletes the shared instances that were built, in reverse order, while the application object still lives.
void shutDownSharedInstances();

} // namespace quillhaven
