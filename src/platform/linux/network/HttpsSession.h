// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UrlSession.h"

namespace quillhaven {

/// Reads documents over HTTPS only.
class HttpsSession : public UrlSession
{
public:
    [[nodiscard]] QCoro::Task<UrlResponse> data(UrlRequest request) override;
};

} // namespace quillhaven
