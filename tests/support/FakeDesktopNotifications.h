// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/DesktopNotifications.h"

#include <QList>

namespace quillhaven::test {

/// Keeps the messages that it is asked to show.
class FakeDesktopNotifications : public DesktopNotifications
{
public:
    void show(const Message &message) override { shown.append(message); }

    QList<Message> shown;
};

} // namespace quillhaven::test
