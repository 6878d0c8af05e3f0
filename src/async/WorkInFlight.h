// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

namespace quillhaven {

/// Counts the pieces of work that go on without the user, off the main thread or posted to it, so that the process ends
/// between two steps of an operation only when none is under way. Main thread only.
class WorkInFlight
{
public:
    /// One piece of work; its end is the end of its life.
    class Piece
    {
    public:
        Piece();
        ~Piece();
        Piece(const Piece &) = delete;
        Piece &operator=(const Piece &) = delete;
    };

    [[nodiscard]] static int count();

    /// Calls `action` from the main event loop as soon as nothing is under way, after the operations that waited have
    /// gone on to their next wait.
    static void whenIdle(std::function<void()> action);

private:
    static void checkIdle();
};

} // namespace quillhaven
