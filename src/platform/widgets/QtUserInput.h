// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserInput.h"

namespace quillhaven {

class GlobalInput;

/// Input to this program's windows comes from the toolkit, and input to all of them from the desktop.
class QtUserInput : public UserInput
{
public:
    explicit QtUserInput(GlobalInput &global) : m_global(global) {}

    [[nodiscard]] std::unique_ptr<Monitor> addGlobalMonitor(InputEvents events, Handler handler) override;
    [[nodiscard]] std::unique_ptr<Monitor> addLocalMonitor(InputEvents events, Handler handler) override;

private:
    GlobalInput &m_global;
};

} // namespace quillhaven
