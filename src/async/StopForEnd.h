// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

namespace quillhaven {

/// Whether a run over many items is to stop before the next one, since the end of the program has been asked for. Logs
/// how far it has come then. Main thread only.
[[nodiscard]] bool stopsForEnd(qsizetype done, qsizetype total);

} // namespace quillhaven
