// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QUrl>

namespace quillhaven {

/// Opens addresses with the programs that the desktop has for them. Main thread only.
class UrlOpener
{
public:
    UrlOpener() = default;
    virtual ~UrlOpener() = default;
    UrlOpener(const UrlOpener &) = delete;
    UrlOpener &operator=(const UrlOpener &) = delete;

    /// Starts the program and returns at once. False when there is none, or when it cannot be started. The scheme
    /// "x-apple.systempreferences" means the desktop's own settings.
    virtual bool open(const QUrl &url) = 0;
};

} // namespace quillhaven
