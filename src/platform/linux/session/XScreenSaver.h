// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/session/XConnection.h"

namespace quillhaven {

/// The screen saver of the X server itself.
class XScreenSaver : public QObject
{
    Q_OBJECT

public:
    /// Null when the X server has none.
    [[nodiscard]] static QCoro::Task<std::unique_ptr<XConnection>> connectTo(QThreadPool &pool);

    explicit XScreenSaver(std::unique_ptr<XConnection> server);

Q_SIGNALS:
    void started();
    /// The server is gone.
    void lost();

private:
    void onEvent(const xcb_generic_event_t *event);

    std::unique_ptr<XConnection> m_server;
};

} // namespace quillhaven
