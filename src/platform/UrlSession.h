// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QList>
#include <QUrl>

#include <chrono>
#include <optional>
#include <utility>

namespace quillhaven {

struct UrlRequest
{
    QUrl url;
    std::chrono::milliseconds timeout = std::chrono::seconds(60); ///< for the whole exchange, to the last byte
    QList<std::pair<QByteArray, QByteArray>> headers{};           ///< name and value
};

struct UrlResponse
{
    QByteArray data;
    std::optional<int> statusCode; ///< nothing when the response did not come over HTTP
};

/// Reads documents from the network. Main thread only.
class UrlSession
{
public:
    UrlSession() = default;
    virtual ~UrlSession() = default;
    UrlSession(const UrlSession &) = delete;
    UrlSession &operator=(const UrlSession &) = delete;

    /// The document at an address, whatever the status of the response. Throws a LocalizedError when there is no
    /// complete response: no network, no trusted server, too much data, too little time.
    [[nodiscard]] virtual QCoro::Task<UrlResponse> data(UrlRequest request) = 0;
};

} // namespace quillhaven
