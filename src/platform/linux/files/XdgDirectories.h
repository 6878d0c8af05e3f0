// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserDirectories.h"

namespace quillhaven {

/// The user's places after the XDG base directory and user directory specifications. Makes the documents folder and the
/// temporary directory (`quillhaven-UID`, mode 0700) when they are missing. Throws a FileError when the temporary one
/// is a link or belongs to another user.
[[nodiscard]] UserDirectories xdgDirectories();

} // namespace quillhaven
