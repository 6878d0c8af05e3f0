// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileError.h"
#include "support/HookedSeam.h"
#include "support/RunTask.h"

#include <QSemaphore>
#include <QStringList>

#include <map>
#include <memory>
#include <new>
#include <string>

namespace quillhaven::test {

/// A hook that makes this call of a file manager fail with the error number, for every path or only for these.
[[nodiscard]] inline SeamHooks::Hook failing(const std::string &call, int errorNumber, const QStringList &paths = {})
{
    using Action = FileError::Action;
    static const std::map<std::string, Action> actions{
        {"copyItem", Action::Copy},   {"createDirectory", Action::CreateFolder},
        {"moveItem", Action::Move},   {"openForOverwriting", Action::Overwrite},
        {"readFile", Action::Read},   {"removeItem", Action::Remove},
        {"writeFile", Action::Write}, {"replaceItemAt", Action::Replace},
        {"trashItem", Action::Trash}, {"renameItem", Action::Move},
    };
    return [=, action = actions.at(call)](const char *name, const QString &path) {
        if (name == call && (paths.isEmpty() || paths.contains(path))) {
            throw FileError::fromErrno(errorNumber, action, path);
        }
    };
}

/// A hook that makes this call of a file manager run out of memory for this path.
[[nodiscard]] inline SeamHooks::Hook withoutMemory(const std::string &call, const QString &path)
{
    return [=](const char *name, const QString &at) {
        if (name == call && at == path) {
            throw std::bad_alloc();
        }
    };
}

/// Holds this call, for this path or for every path, on the thread that makes it.
class HeldCall
{
public:
    HeldCall(SeamHooks &hooks, const std::string &call, const QString &path = {})
    {
        hooks.before = [=, state = m_state](const char *name, const QString &at) {
            if (name == call && (path.isEmpty() || at == path)) {
                state->started.release();
                state->letGo.acquire();
            }
        };
    }
    ~HeldCall() { letGo(); }
    HeldCall(const HeldCall &) = delete;
    HeldCall &operator=(const HeldCall &) = delete;

    /// Runs the event loop until the call is made; returns false if it is not.
    [[nodiscard]] bool hasStarted()
    {
        return spinUntil([this] { return m_state->started.tryAcquire(); });
    }
    /// Lets one call continue.
    void letGo() { m_state->letGo.release(); }

private:
    struct State
    {
        QSemaphore started;
        QSemaphore letGo;
    };
    const std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace quillhaven::test
