// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace quillhaven {

/// Corrects the variables of the environment that say where the user's folders are, for this process and the programs
/// that it starts: an unusable HOME becomes the home of the user's account, and what is not an absolute path is
/// ignored, as the XDG base directory specification says, and so is a TMPDIR that does not exist. Each change is
/// logged. Call it before any other thread starts.
void repairEnvironment();

} // namespace quillhaven
