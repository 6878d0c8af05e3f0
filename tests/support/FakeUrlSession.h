// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UrlSession.h"

#include <functional>

namespace quillhaven::test {

/// Keeps the requests, and answers them as the test says.
class FakeUrlSession : public UrlSession
{
public:
    [[nodiscard]] QCoro::Task<UrlResponse> data(UrlRequest request) override
    {
        requests.append(request);
        const std::function<QCoro::Task<UrlResponse>(UrlRequest)> give = answer;
        co_return co_await give(std::move(request));
    }

    QList<UrlRequest> requests;
    /// May throw, and may suspend.
    std::function<QCoro::Task<UrlResponse>(UrlRequest)> answer = [](UrlRequest) -> QCoro::Task<UrlResponse> {
        co_return UrlResponse{.data = {}, .statusCode = 404};
    };
};

} // namespace quillhaven::test
