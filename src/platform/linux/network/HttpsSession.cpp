// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/network/HttpsSession.h"

#include "async/WorkInFlight.h"
#include "platform/linux/network/HttpsExchange.h"
#include "platform/linux/network/NetworkError.h"
#include "support/DisplayName.h"

namespace quillhaven {

HttpsSession::HttpsSession(Clock &clock, QList<QSslCertificate> authorities)
    : m_clock(clock), m_authorities(std::move(authorities))
{
}

QCoro::Task<UrlResponse> HttpsSession::data(UrlRequest request)
{
    if (request.url.scheme() != QStringLiteral("https") || request.url.host().isEmpty()) {
        throw NetworkError(QStringLiteral("\"%1\" is not the address of an HTTPS server.")
                               .arg(displayName(request.url.toDisplayString())));
    }
    if (WorkInFlight::isClosing()) {
        throw NetworkError(QStringLiteral("No transfer was started, because the program is ending."));
    }
    const auto *exchange = new HttpsExchange(request, m_clock, m_authorities, &m_exchanges);
    const Answer<HttpsExchange::Outcome> answer = exchange->outcome();
    const HttpsExchange::Outcome outcome = co_await answer;
    if (!outcome.failure.isEmpty()) {
        throw NetworkError(outcome.failure);
    }
    co_return outcome.response;
}

} // namespace quillhaven
