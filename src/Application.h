// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace quillhaven {

/// Creates the platform, the services and the window, runs the event loop, and destroys them in order. Returns the exit
/// code of the process. Call it once, from `main`.
int runApplication(int argc, char **argv);

} // namespace quillhaven
