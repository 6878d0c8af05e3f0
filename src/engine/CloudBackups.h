// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/Paths.h"

/// Where recovery backups stand: `<container>/Documents/QuillhavenBackups/<id>.backup`.
namespace quillhaven::cloud_backups {

inline const QString containerIdentifier = QStringLiteral("iCloud.com.tarnwick.quillhaven");
inline const QString suffix = QStringLiteral(".backup");

[[nodiscard]] inline QString directoryIn(const QString &container)
{
    return pathInDirectory(container, QStringLiteral("Documents/QuillhavenBackups"));
}

} // namespace quillhaven::cloud_backups
