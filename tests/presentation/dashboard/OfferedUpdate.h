// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/TestPlatform.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace quillhaven::test {

/// Lets the next check for an update find this version.
inline void offerUpdate(FolderPlatform &services, const QString &version, const QString &downloadURL)
{
    const QJsonObject app{{QStringLiteral("version"), version},
                          {QStringLiteral("download_url"), downloadURL},
                          {QStringLiteral("release_notes"), QString()},
                          {QStringLiteral("published_at"), QString()},
                          {QStringLiteral("is_prerelease"), false}};
    const QByteArray manifest = QJsonDocument(QJsonObject{{QStringLiteral("app"), app}}).toJson();
    services.urlSession.answer = [manifest](UrlRequest) -> QCoro::Task<UrlResponse> {
        co_return UrlResponse{.data = manifest, .statusCode = 200};
    };
}

} // namespace quillhaven::test
