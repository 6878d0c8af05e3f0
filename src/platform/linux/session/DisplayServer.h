// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace quillhaven {

enum class DisplayServer { None, X11, Wayland };

/// What the session is shown by. A Wayland session usually has an X server too, for old programs, but that one knows
/// only the input to those; to connect to it could also start it.
[[nodiscard]] DisplayServer displayServer();

} // namespace quillhaven
