// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/WorkInFlight.h"

#include "async/MainThread.h"

#include <utility>
#include <vector>

namespace quillhaven {

namespace {

struct State
{
    int count = 0;
    bool isClosing = false;
    bool isClosed = false;
    std::function<void()> exit;
    std::vector<std::coroutine_handle<>> parked;
    std::list<std::function<void()>> atClosing;
};

State &state()
{
    static State &shared = *new State; // never deleted: pieces and parked coroutines may outlive `main`
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
    if (state().count == 0 && state().isClosing) {
        exitWhenIdle();
    }
}

int WorkInFlight::count()
{
    return state().count;
}

void WorkInFlight::close(std::function<void()> exit)
{
    if (state().isClosing) {
        return;
    }
    state().isClosing = true;
    state().exit = std::move(exit);
    for (const auto &action : state().atClosing) {
        action();
    }
    exitWhenIdle();
}

WorkInFlight::AtClosing::AtClosing(std::function<void()> action)
    : m_place(state().atClosing.insert(state().atClosing.end(), std::move(action)))
{
}

WorkInFlight::AtClosing::~AtClosing()
{
    state().atClosing.erase(m_place);
}

bool WorkInFlight::isClosing()
{
    return state().isClosing;
}

bool WorkInFlight::isClosed()
{
    return state().isClosed;
}

void WorkInFlight::park(std::coroutine_handle<> waiting)
{
    state().parked.push_back(waiting);
}

void WorkInFlight::exitWhenIdle()
{
    // Posted: the operation whose work just ended starts its next piece before this runs.
    postToMainThread([] {
        if (state().count == 0 && !state().isClosed) {
            state().isClosed = true;
            state().exit();
        }
    });
}

} // namespace quillhaven
