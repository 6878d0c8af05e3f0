// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/machine/LinuxMachine.h"

#include <QSysInfo>

namespace quillhaven {

QString LinuxMachine::operatingSystemVersionString() const
{
    return QSysInfo::prettyProductName();
}

QString LinuxMachine::hardwareModel() const
{
    return {};
}

} // namespace quillhaven
