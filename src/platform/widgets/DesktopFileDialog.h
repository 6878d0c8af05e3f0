// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FilePanels.h"

#include <QFileDialog>

#include <memory>

namespace quillhaven {

/// The desktop's own dialog for a request for only files or only folders, not yet shown; Qt's where the desktop has
/// none. It has the palette where it is Qt's. A desktop's dialog shows no message, so that the title contains it.
[[nodiscard]] std::unique_ptr<QFileDialog> desktopFileDialog(const OpenPanelRequest &request, const QPalette &palette,
                                                             QWidget *parent = nullptr);

} // namespace quillhaven
