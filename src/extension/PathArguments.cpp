// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/PathArguments.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace quillhaven {

namespace {

constexpr char fileScheme[] = "file://";

/// Whether the text begins with a scheme (RFC 3986) and two slashes. No path that a file manager passes does.
bool isUri(const QByteArray &text)
{
    const qsizetype end = text.indexOf("://");
    if (end <= 0 || text.startsWith('/')) {
        return false;
    }
    return std::all_of(text.begin(), text.begin() + end, [](char character) {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
               (character >= '0' && character <= '9') || character == '+' || character == '-' || character == '.';
    });
}

std::optional<QByteArray> pathOfUri(const QByteArray &uri)
{
    if (!uri.toLower().startsWith(fileScheme)) {
        return std::nullopt;
    }
    const QByteArray rest = uri.mid(sizeof(fileScheme) - 1);
    const qsizetype slash = rest.indexOf('/');
    const QByteArray host = rest.left(slash).toLower();
    if (slash < 0 || (!host.isEmpty() && host != "localhost")) {
        return std::nullopt;
    }
    return QByteArray::fromPercentEncoding(rest.mid(slash));
}

} // namespace

std::optional<QByteArray> pathOfArgument(const QByteArray &argument)
{
    std::optional<QByteArray> path = isUri(argument) ? pathOfUri(argument) : argument;
    if (!path || path->isEmpty() || path->contains('\0')) {
        return std::nullopt;
    }
    if (!path->startsWith('/')) {
        path->prepend(QFile::encodeName(QDir::currentPath()) + '/');
    }
    while (path->size() > 1 && path->endsWith('/')) {
        path->chop(1);
    }
    return path;
}

QByteArrayList pathsOfArguments(const QByteArrayList &arguments)
{
    QByteArrayList paths;
    for (const QByteArray &argument : arguments) {
        if (const auto path = pathOfArgument(argument)) {
            paths.append(*path);
        }
    }
    return paths;
}

} // namespace quillhaven
