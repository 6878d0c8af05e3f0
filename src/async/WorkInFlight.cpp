// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/WorkInFlight.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <utility>
#include <vector>

namespace quillhaven {

namespace {

struct State
{
    int count = 0;
    std::vector<std::function<void()>> idleActions;
};

State &state()
{
    static State shared;
    return shared;
}

} // namespace

WorkInFlight::Piece::Piece()
{
    ++state().count;
}

WorkInFlight::Piece::~Piece()
{
    --state().count;
    if (state().count == 0 && !state().idleActions.empty()) {
        checkIdle();
    }
}

int WorkInFlight::count()
{
    return state().count;
}

void WorkInFlight::whenIdle(std::function<void()> action)
{
    state().idleActions.push_back(std::move(action));
    checkIdle();
}

void WorkInFlight::checkIdle()
{
    // Queued: the operation whose work just ended starts its next piece before this runs.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [] {
            if (state().count > 0) {
                return;
            }
            for (const auto &action : std::exchange(state().idleActions, {})) {
                action();
            }
        },
        Qt::QueuedConnection);
}

} // namespace quillhaven
