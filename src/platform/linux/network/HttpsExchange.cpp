// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/network/HttpsExchange.h"

#include "platform/Clock.h"
#include "support/DisplayName.h"

#include <QNetworkProxy>
#include <QNetworkReply>
#include <QSslConfiguration>

namespace quillhaven {

namespace {

constexpr int maxRedirects = 5;
constexpr qint64 maxBytes = qint64(1024) * 1024;
constexpr int firstErrorStatus = 400;

QNetworkRequest networkRequest(const UrlRequest &request, const QList<QSslCertificate> &authorities)
{
    QNetworkRequest network(request.url);
    for (const auto &[name, value] : request.headers) {
        network.setRawHeader(name, value);
    }
    // A compressed body would have to be limited twice.
    network.setRawHeader("Accept-Encoding", "identity");
    network.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    network.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    network.setMaximumRedirectsAllowed(maxRedirects);
    network.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    network.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    network.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    if (!authorities.isEmpty()) { // otherwise the configuration must stay Qt's: it loads the system's on demand
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setCaCertificates(authorities);
        network.setSslConfiguration(tls);
    }
    return network;
}

} // namespace

HttpsExchange::HttpsExchange(const UrlRequest &request, Clock &clock, const QList<QSslCertificate> &authorities,
                             QObject *parent)
    : QObject(parent),
      m_host(displayName(request.url.host())),
      m_atClosing([this] { fail(QStringLiteral("The transfer was stopped, because the program is ending.")); })
{
    // To find the system's proxy, Qt would block this thread, for as long as a server with its configuration likes.
    m_network.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    m_reply = m_network.get(networkRequest(request, authorities));
    m_reply->setReadBufferSize(maxBytes + 1);
    connect(m_reply, &QNetworkReply::readyRead, this, &HttpsExchange::read);
    connect(m_reply, &QNetworkReply::finished, this, &HttpsExchange::finish);
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(request.timeout).count();
    const QString tooSlow = QStringLiteral("The server %1 did not send the whole document within %2 seconds.");
    m_deadline =
        clock.startOneShot(request.timeout, [this, sentence = tooSlow.arg(m_host).arg(seconds)] { fail(sentence); });
}

HttpsExchange::~HttpsExchange()
{
    fail(QStringLiteral("The transfer was stopped."));
}

void HttpsExchange::read()
{
    m_data += m_reply->read(maxBytes + 1 - m_data.size());
    if (m_data.size() > maxBytes) {
        fail(QStringLiteral("The server %1 sent more than 1 MiB, so the transfer was stopped.").arg(m_host));
    }
}

void HttpsExchange::finish()
{
    read();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    // A response whose status is an error is a response too. Below these are the errors of the transport.
    const bool isErrorStatus = status >= firstErrorStatus && m_reply->error() >= QNetworkReply::ContentAccessDenied;
    if (m_reply->error() == QNetworkReply::NoError || isErrorStatus) {
        end({.response = {.data = m_data, .statusCode = status}, .failure = {}});
    } else {
        fail(QStringLiteral("The document could not be read from the server %1: %2")
                 .arg(m_host, displayName(m_reply->errorString())));
    }
}

void HttpsExchange::end(const Outcome &outcome)
{
    if (!m_outcome.give(outcome)) {
        return;
    }
    m_deadline.reset();
    m_reply->disconnect(this);
    m_reply->abort();
    deleteLater();
}

} // namespace quillhaven
