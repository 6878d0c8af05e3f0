// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/DisplayServer.h"

#include <QtGlobal>

namespace quillhaven {

DisplayServer displayServer()
{
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        return DisplayServer::Wayland;
    }
    return qEnvironmentVariableIsEmpty("DISPLAY") ? DisplayServer::None : DisplayServer::X11;
}

} // namespace quillhaven
