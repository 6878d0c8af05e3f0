// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/XConnection.h"

#include "async/OffMainThread.h"

namespace quillhaven {

std::shared_ptr<XConnection::Opened> XConnection::openBlocking(FindExtension findExtension)
{
    int screens = 0;
    XOwned<xcb_connection_t> connection(xcb_connect(nullptr, &screens));
    if (xcb_connection_has_error(connection.get()) != 0) {
        return nullptr;
    }
    const std::optional<uint8_t> extension = findExtension(connection.get());
    if (!extension) {
        return nullptr;
    }
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    while (screens-- > 0) {
        xcb_screen_next(&screen);
    }
    return std::make_shared<Opened>(
        Opened{.connection = std::move(connection), .root = screen.data->root, .extension = *extension});
}

QCoro::Task<std::unique_ptr<XConnection>> XConnection::open(QThreadPool &pool, FindExtension findExtension)
{
    auto openIt = [findExtension] { return openBlocking(findExtension); };
    const std::shared_ptr<Opened> opened = co_await offMainThread(pool, std::move(openIt));
    std::unique_ptr<XConnection> connection;
    if (opened) {
        connection.reset(new XConnection(std::move(*opened)));
    }
    co_return connection;
}

XConnection::XConnection(Opened opened)
    : m_connection(std::move(opened.connection)),
      m_root(opened.root),
      m_extension(opened.extension),
      m_readable(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read)
{
    connect(&m_readable, &QSocketNotifier::activated, this, &XConnection::read);
}

XConnection::~XConnection() = default;

void XConnection::send()
{
    xcb_flush(m_connection.get());
    // The library may have read something while it wrote, for which the socket does not become readable again.
    QMetaObject::invokeMethod(this, &XConnection::read, Qt::QueuedConnection);
}

void XConnection::read()
{
    if (!m_readable.isEnabled()) {
        return;
    }
    while (const XOwned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        Q_EMIT eventReceived(event.get());
    }
    Q_EMIT allRead();
    if (xcb_connection_has_error(m_connection.get()) != 0) {
        m_readable.setEnabled(false);
        Q_EMIT lost();
    }
}

} // namespace quillhaven
