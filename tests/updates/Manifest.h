// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QJsonDocument>
#include <QJsonObject>

namespace quillhaven::test {

/// The record of a valid manifest.
inline QJsonObject appRecord(const QString &version = QStringLiteral("2.0.0"))
{
    return {{QStringLiteral("version"), version},
            {QStringLiteral("download_url"), QStringLiteral("https://downloads.example/quillhaven")},
            {QStringLiteral("release_notes"), QStringLiteral("Better locks.")},
            {QStringLiteral("published_at"), QStringLiteral("2026-11-01")},
            {QStringLiteral("is_prerelease"), true}};
}

inline QByteArray manifest(const QJsonObject &app)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("app"), app}}).toJson();
}

} // namespace quillhaven::test
