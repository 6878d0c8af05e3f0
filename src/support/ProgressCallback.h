// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <functional>

namespace quillhaven {

/// A status text and a progress from 0.0 to 1.0. Called on the main thread.
using ProgressCallback = std::function<void(const QString &status, double progress)>;

} // namespace quillhaven
