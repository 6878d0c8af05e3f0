// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayList>

namespace quillhaven {

/// Starts a program that outlives this process, without its streams and with the signals' default actions, none of them
/// blocked. A name without a slash is looked for in PATH. The arguments are passed byte for byte. False when it cannot
/// be started.
[[nodiscard]] bool startDetached(const QByteArray &program, const QByteArrayList &arguments);

} // namespace quillhaven
