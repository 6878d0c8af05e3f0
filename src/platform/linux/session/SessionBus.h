// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFileInfo>
#include <QString>

namespace quillhaven {

/// Whether the session has a message bus. Asked before any client connects, since those would start a bus of their own
/// where there is none, and that bus would belong to nobody.
[[nodiscard]] inline bool hasSessionBus()
{
    if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) {
        return true;
    }
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/bus"));
}

} // namespace quillhaven
