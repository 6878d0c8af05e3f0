// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UrlOpener.h"

namespace quillhaven {

/// Opens addresses with the program that the desktop prefers for them, and the settings of the desktop with its own
/// program.
class QtUrlOpener : public UrlOpener
{
public:
    bool open(const QUrl &url) override;
};

} // namespace quillhaven
