// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"
#include "async/WorkInFlight.h"
#include "platform/UrlSession.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QSslCertificate>

#include <memory>

QT_BEGIN_NAMESPACE
class QNetworkReply;
QT_END_NAMESPACE

namespace quillhaven {

class Clock;
class RunningTimer;

/// One request and its response, with a connection of its own, so that nothing remains of it afterwards: no cookie, no
/// cached document, no thread. Deletes itself after it has ended.
class HttpsExchange : public QObject
{
    Q_OBJECT

public:
    struct Outcome
    {
        UrlResponse response;
        QString failure; ///< a sentence for the user if there is no complete response, or else empty
    };

    /// Starts the request, whose address must be one of an HTTPS server. The clock must outlive this object.
    HttpsExchange(const UrlRequest &request, Clock &clock, const QList<QSslCertificate> &authorities, QObject *parent);
    /// Ends the request if it is still running.
    ~HttpsExchange() override;

    /// Is given in every case, at the latest by the destructor.
    [[nodiscard]] Answer<Outcome> outcome() const { return m_outcome; }

private:
    void read();
    void finish();
    void end(const Outcome &outcome);
    void fail(const QString &sentence) { end({.response = {}, .failure = sentence}); }

    Answer<Outcome> m_outcome;
    QString m_host; ///< for sentences
    QByteArray m_data;
    QNetworkAccessManager m_network;
    QNetworkReply *m_reply = nullptr; ///< owned by m_network
    std::unique_ptr<RunningTimer> m_deadline;
    WorkInFlight::AtClosing m_atClosing;
};

} // namespace quillhaven
