// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserInput.h"

namespace quillhaven {

/// Input to this program's windows comes from the toolkit.
class QtUserInput : public UserInput
{
public:
    [[nodiscard]] std::unique_ptr<Monitor> addGlobalMonitor(InputEvents events, Handler handler) override;
    [[nodiscard]] std::unique_ptr<Monitor> addLocalMonitor(InputEvents events, Handler handler) override;
};

} // namespace quillhaven
