// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Before the standard library's coroutines, whose concepts moc cannot read otherwise.
#include <QObject>
#include <QSocketNotifier>

#include <QCoroTask>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <optional>

QT_BEGIN_NAMESPACE
class QThreadPool;
QT_END_NAMESPACE

namespace quillhaven {

struct XFree
{
    void operator()(void *memory) const { std::free(memory); }
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};
/// What the X library allocated, or a connection.
template <typename T>
using XOwned = std::unique_ptr<T, XFree>;

/// A connection of our own to the X server, independent of what the toolkit does with its one. Nothing here waits for
/// the server. Main thread only.
class XConnection : public QObject
{
    Q_OBJECT

public:
    /// The number by which the server's messages name an extension; nothing when the server lacks it.
    using FindExtension = std::optional<uint8_t> (*)(xcb_connection_t *connection);

    /// Connects on a thread of `pool`, and looks for the extension there, since both wait for the server. Null when
    /// there is no server, or when it lacks the extension.
    [[nodiscard]] static QCoro::Task<std::unique_ptr<XConnection>> open(QThreadPool &pool, FindExtension findExtension);

    ~XConnection() override;

    [[nodiscard]] xcb_connection_t *get() const { return m_connection.get(); }
    [[nodiscard]] xcb_window_t root() const { return m_root; }
    [[nodiscard]] uint8_t extension() const { return m_extension; }
    /// Sends the requests made so far.
    void send();

Q_SIGNALS:
    void eventReceived(const xcb_generic_event_t *event);
    /// All that has come so far was read: a reply may have been among it.
    void allRead();
    /// The server is gone.
    void lost();

private:
    struct Opened
    {
        XOwned<xcb_connection_t> connection;
        xcb_window_t root = XCB_NONE;
        uint8_t extension = 0;
    };
    [[nodiscard]] static std::shared_ptr<Opened> openBlocking(FindExtension findExtension);
    explicit XConnection(Opened opened);
    void read();

    XOwned<xcb_connection_t> m_connection;
    xcb_window_t m_root;
    uint8_t m_extension;
    QSocketNotifier m_readable;
};

} // namespace quillhaven
