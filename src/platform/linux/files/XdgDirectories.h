// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserDirectories.h"

#include <QStringList>

namespace quillhaven {

/// The user's places after the XDG base directory and user directory specifications; the environment must have been
/// repaired (`repairEnvironment`). Makes the documents folder and the temporary directory when they are missing. A
/// documents folder that cannot be made is only logged. Throws a FileError when there is no place for a temporary
/// directory.
[[nodiscard]] UserDirectories xdgDirectories();

/// The first of the paths at which there is, or can be made, a folder of this user's own: no link, with mode 0700, and
/// writable. The reason against each earlier one is logged. Throws a FileError that names all paths when none is
/// usable.
[[nodiscard]] QString privateDirectoryAmong(const QStringList &paths);

} // namespace quillhaven
