// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>
#include <QUrl>

#include <optional>

namespace quillhaven {

struct AppUpdateInfo;

/// A published version of the program.
struct UpdateInfo
{
    UpdateInfo() = default;
    explicit UpdateInfo(const AppUpdateInfo &app);

    QString version;           ///< such as "1.0.0"
    QString downloadURL;       ///< where the user can fetch it; whatever the manifest says, so check it before use
    QString releaseNotes;      ///< text for the user
    QString publishedAt;       ///< a date as text
    bool isPrerelease = false; ///< without effect on any decision

    bool operator==(const UpdateInfo &) const = default;
};

/// The download's address if it can be opened: an absolute one on the web, HTTP or HTTPS. The manifest could also name
/// a file or a program.
[[nodiscard]] std::optional<QUrl> webAddress(const UpdateInfo &info);

/// A JSON object whose keys are the names of the fields.
[[nodiscard]] QByteArray encodeUpdateInfo(const UpdateInfo &info);
/// The reverse. All keys are required; throws a JsonError that names what is missing or wrong.
[[nodiscard]] UpdateInfo decodeUpdateInfo(const QByteArray &json);

} // namespace quillhaven

Q_DECLARE_METATYPE(quillhaven::UpdateInfo)
