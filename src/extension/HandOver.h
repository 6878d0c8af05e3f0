// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "extension/MenuAction.h"

#include <QByteArrayList>
#include <QString>

namespace quillhaven {

/// The address by which the program is asked to do this. Its reader decodes the path twice.
[[nodiscard]] QByteArray actionUrl(const MenuAction &action, const QByteArray &path);

/// Writes what the program is to do to the shared domain in this folder, in place of an earlier request that it has not
/// taken yet. False when that fails, also for a path that is not UTF-8. Needs an application object.
[[nodiscard]] bool writePendingAction(const QString &configuration, const MenuAction &action, const QByteArray &path);

/// Asks the program to do this with the paths: by the shared domain for a single one, else by addresses. Starts the
/// program, which is the same as addressing the one that is running. False when it cannot be started.
[[nodiscard]] bool handOver(const QString &configuration, const QByteArray &program, const MenuAction &action,
                            const QByteArrayList &paths);

} // namespace quillhaven
