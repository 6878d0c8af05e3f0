// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace quillhaven {

/// Lets screen readers know which controls are disabled. The toolkit reports every item of a window as enabled.
/// Main thread; later calls do nothing.
void reportDisabledControls();

} // namespace quillhaven
