// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/JournalStream.h"

#include <QByteArray>

#include <sys/stat.h>

namespace quillhaven {

bool isJournalStream(int descriptor)
{
    struct stat status{};
    return ::fstat(descriptor, &status) == 0 &&
           qgetenv("JOURNAL_STREAM") == QByteArray::number(static_cast<qulonglong>(status.st_dev)) + ':' +
                                            QByteArray::number(static_cast<qulonglong>(status.st_ino));
}

} // namespace quillhaven
