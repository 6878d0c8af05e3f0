// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/DesktopDisplayPreferences.h"

namespace quillhaven {

DesktopDisplayPreferences::DesktopDisplayPreferences() = default;

} // namespace quillhaven
