// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UrlOpener.h"

#include <QList>

namespace quillhaven::test {

/// Keeps the addresses that it is asked to open, and passes them on if there is another opener.
class FakeUrlOpener : public UrlOpener
{
public:
    bool open(const QUrl &url) override
    {
        opened.append(url);
        return next ? next->open(url) : canOpen;
    }

    QList<QUrl> opened;
    bool canOpen = true;
    UrlOpener *next = nullptr;
};

} // namespace quillhaven::test
