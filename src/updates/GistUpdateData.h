// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

namespace quillhaven {

/// The latest version, as the manifest describes it. Internal to the update check, which gives out an UpdateInfo.
struct AppUpdateInfo
{
    QString version;           ///< "version", such as "1.0.0"
    QString downloadURL;       ///< "download_url": where the user can fetch it
    QString releaseNotes;      ///< "release_notes": text for the user
    QString publishedAt;       ///< "published_at": a date as text, which is not parsed
    bool isPrerelease = false; ///< "is_prerelease"; without effect on any decision

    bool operator==(const AppUpdateInfo &) const = default;
};

/// The manifest: a JSON object with the record under "app". All keys are required.
struct GistUpdateData
{
    AppUpdateInfo app;

    bool operator==(const GistUpdateData &) const = default;
};

/// Throws a JsonError that names what is missing or wrong.
[[nodiscard]] GistUpdateData decodeGistUpdateData(const QByteArray &json);

} // namespace quillhaven
