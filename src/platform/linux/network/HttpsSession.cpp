// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/network/HttpsSession.h"

#include "platform/FileError.h"

namespace quillhaven {

QCoro::Task<UrlResponse> HttpsSession::data(UrlRequest request)
{
    static_cast<void>(request);
    co_return UrlResponse{};
}

} // namespace quillhaven
