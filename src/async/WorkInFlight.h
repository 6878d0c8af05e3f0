// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Before the standard library's coroutines, whose concepts moc cannot read otherwise.
#include <QObject>

#include <coroutine>
#include <functional>
#include <list>

namespace quillhaven {

/// The work that goes on without the user, off the main thread or posted to it, and the end of the process, which waits
/// for it: the process never ends between two steps of an operation. Main thread only.
class WorkInFlight
{
public:
    /// Counts as one running piece of work for as long as it lives.
    class Piece
    {
    public:
        Piece();
        ~Piece();
        Piece(const Piece &) = delete;
        Piece &operator=(const Piece &) = delete;
    };

    [[nodiscard]] static int count();

    /// Asks for the end of the process. From now on no job starts, while an operation that is under way goes on to its
    /// end. As soon as no piece of work is left, the end is decided and `exit` is called from the main event loop. The
    /// first call counts.
    static void close(std::function<void()> exit);
    /// Whether the end has been asked for.
    [[nodiscard]] static bool isClosing();
    /// Whether the end is decided: no work starts and no coroutine goes on any more.
    [[nodiscard]] static bool isClosed();

    /// Calls an action when the end is asked for, or never, for as long as it lives: to limit what the process would
    /// otherwise wait for.
    class AtClosing
    {
    public:
        explicit AtClosing(std::function<void()> action);
        ~AtClosing();
        AtClosing(const AtClosing &) = delete;
        AtClosing &operator=(const AtClosing &) = delete;

    private:
        std::list<std::function<void()>>::iterator m_place;
    };

    /// Keeps a coroutine that wanted to go on after the end was decided. It is never resumed: it stays at the step it
    /// had reached, like one that waits for a user who does not answer.
    static void park(std::coroutine_handle<> waiting);

private:
    static void exitWhenIdle();
};

} // namespace quillhaven
