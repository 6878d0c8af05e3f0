// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserInput.h"

namespace quillhaven {

/// The desktop's reports of input to any program. Main thread only.
class GlobalInput
{
public:
    GlobalInput() = default;
    virtual ~GlobalInput() = default;
    GlobalInput(const GlobalInput &) = delete;
    GlobalInput &operator=(const GlobalInput &) = delete;

    /// As `UserInput::addGlobalMonitor`. While it is still being found out what the desktop offers, there is a monitor,
    /// which keeps silent until then.
    [[nodiscard]] virtual std::unique_ptr<UserInput::Monitor> addMonitor(InputEvents events,
                                                                         UserInput::Handler handler) = 0;
};

} // namespace quillhaven
