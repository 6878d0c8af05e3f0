// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/MachineInformation.h"

namespace quillhaven {

/// The machine as the system describes it below a root folder, "/" outside tests.
class LinuxMachine : public MachineInformation
{
public:
    explicit LinuxMachine(QString root = QStringLiteral("/")) : m_root(std::move(root)) {}

    [[nodiscard]] QString operatingSystemVersionString() const override;
    [[nodiscard]] QString hardwareModel() const override;

private:
    QString m_root;
};

} // namespace quillhaven
