// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/handover/ActionUrl.h"

#include "support/Paths.h"
#include "support/Utf8.h"

#include <QRegularExpression>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>

namespace quillhaven {

namespace {

const QString scheme = QStringLiteral("quillhaven://");

/// The text with every percent-encoded byte replaced; nothing when a percent sign is not followed by two hexadecimal
/// digits, or when the bytes are not valid UTF-8.
std::optional<QString> removingPercentEncoding(const QString &text)
{
    static const QRegularExpression stray(QStringLiteral("%(?![0-9A-Fa-f]{2})"));
    if (text.contains(stray)) {
        return std::nullopt;
    }
    return decodedUtf8(QByteArray::fromPercentEncoding(text.toUtf8()));
}

/// The host as it is spelled; QUrl changes its case.
QString hostOf(const QString &url)
{
    static const QRegularExpression end(QStringLiteral("[/?#:]"));
    const QString rest = url.mid(scheme.size());
    return rest.left(rest.indexOf(end));
}

} // namespace

std::optional<ActionUrl> parseActionUrl(const QString &url)
{
    if (!url.startsWith(scheme)) {
        return std::nullopt;
    }
    const auto items = QUrlQuery(QUrl(url)).queryItems(QUrl::FullyDecoded);
    const auto named =
        std::find_if(items.begin(), items.end(), [](const auto &item) { return item.first == QStringLiteral("path"); });
    if (named == items.end() || named->second.isNull()) {
        return std::nullopt;
    }
    const std::optional<QString> path = removingPercentEncoding(named->second);
    if (!path) {
        return std::nullopt;
    }
    return ActionUrl{hostOf(url), filePath(*path)};
}

QString filePath(const QString &path)
{
    return withoutTrailingSlashes(QFileInfo(path).isAbsolute() ? path : QLatin1Char('/') + path);
}

} // namespace quillhaven
