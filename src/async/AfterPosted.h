// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"
#include "async/WorkInFlight.h"

#include <QCoroTask>

namespace quillhaven {

/// Goes on from the main event loop, once everything that was posted to it before the call has been delivered. Main
/// thread only.
inline QCoro::Task<> afterPosted()
{
    const WorkInFlight::Piece piece; // an operation that waits for its turn is under way
    const Answer<bool> turn;
    QMetaObject::invokeMethod(QCoreApplication::instance(), [turn] { turn.give(true); }, Qt::QueuedConnection);
    (void)co_await turn;
}

} // namespace quillhaven
