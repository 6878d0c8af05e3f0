// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/session/BusConnection.h"

#include <optional>

namespace quillhaven::logind {

inline const QString service = QStringLiteral("org.freedesktop.login1");
inline const QString managerPath = QStringLiteral("/org/freedesktop/login1");
inline const QString managerInterface = QStringLiteral("org.freedesktop.login1.Manager");
inline const QString sessionInterface = QStringLiteral("org.freedesktop.login1.Session");
inline const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

/// As long as the bus itself waits: a busy logind answers late.
inline constexpr std::chrono::seconds answerLimit{25};

/// Calls a method of the manager of the logind with this connection name.
[[nodiscard]] QCoro::Task<QDBusMessage> callManager(std::shared_ptr<BusConnection> bus, QString owner, QString method,
                                                    QVariantList arguments);

/// The path of the session that this process belongs to, or else of the user's graphical one. Never another user's,
/// which the environment of a program started with su names. Empty when there is none; nothing when logind did not
/// answer in time.
[[nodiscard]] QCoro::Task<std::optional<QString>> findOwnSession(std::shared_ptr<BusConnection> bus, QString owner);

} // namespace quillhaven::logind
