// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/XScreenSaver.h"

#include <xcb/screensaver.h>

namespace quillhaven {

namespace {

std::optional<uint8_t> findScreenSaver(xcb_connection_t *server)
{
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(server, &xcb_screensaver_id);
    if (extension == nullptr || extension->present == 0) {
        return {};
    }
    return extension->first_event;
}

} // namespace

QCoro::Task<std::unique_ptr<XConnection>> XScreenSaver::connectTo(QThreadPool &pool)
{
    return XConnection::open(pool, findScreenSaver);
}

XScreenSaver::XScreenSaver(std::unique_ptr<XConnection> server) : m_server(std::move(server))
{
    connect(m_server.get(), &XConnection::eventReceived, this, &XScreenSaver::onEvent);
    connect(m_server.get(), &XConnection::lost, this, &XScreenSaver::lost);
    xcb_screensaver_select_input(m_server->get(), m_server->root(), XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
    m_server->send();
}

void XScreenSaver::onEvent(const xcb_generic_event_t *event)
{
    const auto *notify = reinterpret_cast<const xcb_screensaver_notify_event_t *>(event);
    if ((event->response_type & 0x7f) == m_server->extension() + XCB_SCREENSAVER_NOTIFY &&
        notify->state == XCB_SCREENSAVER_STATE_ON) {
        Q_EMIT started();
    }
}

} // namespace quillhaven
