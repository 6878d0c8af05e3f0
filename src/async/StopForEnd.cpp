// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/StopForEnd.h"

#include "async/WorkInFlight.h"
#include "support/printLogger.h"

namespace quillhaven {

bool stopsForEnd(qsizetype done, qsizetype total)
{
    if (!WorkInFlight::isClosing()) {
        return false;
    }
    printLogger(QStringLiteral("Quillhaven is ending. The run stops after %1 of %2 items.").arg(done).arg(total));
    return true;
}

} // namespace quillhaven
