// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UrlSession.h"

#include <QList>
#include <QObject>
#include <QSslCertificate>

namespace quillhaven {

class Clock;

/// Reads documents over HTTPS only, of at most 1 MiB, without cookies, caches, passwords and proxies. A redirect is
/// followed to another HTTPS address, and at most five of them.
///
/// A request's timeout is one deadline for everything, from the look-up of the name to the last byte, so that a server
/// that sends a little at a time does not keep it running. What runs is stopped at once, with an error, when the end of
/// the program is asked for or this object is destroyed. Only the look-up of a name cannot be stopped: Qt waits for it
/// when the application object is destroyed, which takes as long as the system's resolver waits for its servers.
///
/// Before the first request nothing of the network exists.
class HttpsSession : public UrlSession
{
public:
    /// Trusts servers with a certificate of these authorities; if there are none, of the system's. The clock must
    /// outlive this object.
    explicit HttpsSession(Clock &clock, QList<QSslCertificate> authorities = {});

    [[nodiscard]] QCoro::Task<UrlResponse> data(UrlRequest request) override;

private:
    Clock &m_clock;
    QList<QSslCertificate> m_authorities;
    QObject m_exchanges; ///< the parent of those that are running
};

} // namespace quillhaven
