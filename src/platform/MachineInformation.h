// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace quillhaven {

/// The computer and its operating system, in words for a person.
class MachineInformation
{
public:
    MachineInformation() = default;
    virtual ~MachineInformation() = default;
    MachineInformation(const MachineInformation &) = delete;
    MachineInformation &operator=(const MachineInformation &) = delete;

    /// Such as "Debian GNU/Linux 12 (bookworm)".
    [[nodiscard]] virtual QString operatingSystemVersionString() const = 0;
    /// The maker's name of the model, such as "ThinkPad X1 Carbon Gen 9"; empty when the computer has none.
    [[nodiscard]] virtual QString hardwareModel() const = 0;
};

} // namespace quillhaven
