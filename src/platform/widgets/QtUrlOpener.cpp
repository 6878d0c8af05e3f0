// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/QtUrlOpener.h"

#include <QDesktopServices>

namespace quillhaven {

bool QtUrlOpener::open(const QUrl &url)
{
    return QDesktopServices::openUrl(url);
}

} // namespace quillhaven
