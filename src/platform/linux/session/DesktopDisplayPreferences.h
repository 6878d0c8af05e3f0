// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/DisplayPreferences.h"

namespace quillhaven {

/// What the settings portal of the desktop reports.
class DesktopDisplayPreferences : public DisplayPreferences
{
    Q_OBJECT

public:
    DesktopDisplayPreferences();
};

} // namespace quillhaven
