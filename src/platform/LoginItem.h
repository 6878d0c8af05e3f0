// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>

#include <QStringList>

namespace quillhaven {

/// This program as something that the desktop starts when the user logs in. Main thread only.
class LoginItem
{
public:
    enum class Status {
        NotRegistered = 0,
        Enabled = 1,
        RequiresApproval = 2, ///< registered, but the user or the desktop has switched it off
        NotFound = 3,         ///< the registration cannot be read
    };

    LoginItem() = default;
    virtual ~LoginItem() = default;
    LoginItem(const LoginItem &) = delete;
    LoginItem &operator=(const LoginItem &) = delete;

    /// What the desktop will do at the next login.
    [[nodiscard]] virtual QCoro::Task<Status> status() = 0;
    /// Has the program started at each login, with these arguments; replaces an earlier registration and what switched
    /// it off. Throws a LocalizedError, and the earlier registration stays whole.
    [[nodiscard]] virtual QCoro::Task<> registerItem(QStringList arguments) = 0;
    /// Ends the registration, if there is one. Throws a LocalizedError.
    [[nodiscard]] virtual QCoro::Task<> unregisterItem() = 0;
};

} // namespace quillhaven
