// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/MachineInformation.h"

namespace quillhaven::test {

class FakeMachine : public MachineInformation
{
public:
    [[nodiscard]] QString operatingSystemVersionString() const override { return system; }
    [[nodiscard]] QString hardwareModel() const override { return model; }

    QString system = QStringLiteral("Example OS 4.2");
    QString model = QStringLiteral("Example 9000");
};

} // namespace quillhaven::test
