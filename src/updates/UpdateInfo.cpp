// SPDX-License-Identifier: GPL-3.0-or-later

#include "updates/UpdateInfo.h"

#include "updates/GistUpdateData.h"
#include "updates/JsonReader.h"

#include <QJsonDocument>

namespace quillhaven {

namespace {

constexpr QLatin1String versionKey("version");
constexpr QLatin1String downloadURLKey("downloadURL");
constexpr QLatin1String releaseNotesKey("releaseNotes");
constexpr QLatin1String publishedAtKey("publishedAt");
constexpr QLatin1String isPrereleaseKey("isPrerelease");

} // namespace

UpdateInfo::UpdateInfo(const AppUpdateInfo &app)
    : version(app.version),
      downloadURL(app.downloadURL),
      releaseNotes(app.releaseNotes),
      publishedAt(app.publishedAt),
      isPrerelease(app.isPrerelease)
{
}

std::optional<QUrl> webAddress(const UpdateInfo &info)
{
    const QUrl url(info.downloadURL, QUrl::StrictMode);
    const bool isOnTheWeb = url.scheme() == QStringLiteral("https") || url.scheme() == QStringLiteral("http");
    return isOnTheWeb && !url.host().isEmpty() ? std::optional(url) : std::nullopt;
}

QByteArray encodeUpdateInfo(const UpdateInfo &info)
{
    const QJsonObject object{{versionKey, info.version},
                             {downloadURLKey, info.downloadURL},
                             {releaseNotesKey, info.releaseNotes},
                             {publishedAtKey, info.publishedAt},
                             {isPrereleaseKey, info.isPrerelease}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

UpdateInfo decodeUpdateInfo(const QByteArray &json)
{
    const JsonReader object(json);
    UpdateInfo info;
    info.version = object.string(versionKey);
    info.downloadURL = object.string(downloadURLKey);
    info.releaseNotes = object.string(releaseNotesKey);
    info.publishedAt = object.string(publishedAtKey);
    info.isPrerelease = object.boolean(isPrereleaseKey);
    return info;
}

} // namespace quillhaven
