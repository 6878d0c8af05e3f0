// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace quillhaven {

/// What protects this process from its surroundings, and its memory, which holds passwords, from other programs of the
/// user. To be called first of all. A reader of the log that goes away does not end the process. No memory image is
/// written at a crash, and no other process of the user can read the memory or trace this one (prctl(2),
/// PR_SET_DUMPABLE), except in a build with a sanitizer, which traces itself.
///
/// The desktop's portal refuses a process that it cannot inspect, so one whose dialogs are the portal's
/// (QT_QPA_PLATFORMTHEME) stays readable.
void protectProcess();

} // namespace quillhaven
