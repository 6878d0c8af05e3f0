// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/MachineInformation.h"

#include <QByteArray>

namespace quillhaven {

/// The machine as the system describes it below a root folder, "/" outside tests. Each call reads its files again.
class LinuxMachine : public MachineInformation
{
public:
    explicit LinuxMachine(QString root = QStringLiteral("/")) : m_root(std::move(root)) {}

    /// From os-release(5); "Linux" where that gives no name.
    [[nodiscard]] QString operatingSystemVersionString() const override;
    /// From the firmware (DMI) or the device tree. Words that a maker left in place of a name, such as "System Product
    /// Name", are kept.
    [[nodiscard]] QString hardwareModel() const override;

private:
    /// The bytes of a file below the root; empty when it cannot be read.
    [[nodiscard]] QByteArray read(const QString &path) const;

    QString m_root;
};

} // namespace quillhaven
