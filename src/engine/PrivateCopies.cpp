// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/PrivateCopies.h"

#include "platform/FileManager.h"

namespace quillhaven {

QString freePrivatePath(const FileManager &files, const QString &path)
{
    QString candidate = path;
    for (int counter = 1; files.fileExists(candidate); ++counter) {
        (void)files.sizeOfItem(candidate); // throws for a place that cannot be looked at
        candidate = path + QLatin1Char('_') + QString::number(counter);
    }
    return candidate;
}

} // namespace quillhaven
