// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/FilePaths.h"

#include "support/Utf8.h"

#include <algorithm>

namespace quillhaven {

namespace {

constexpr char16_t escapeBase = 0xDC00;
constexpr char16_t firstEscape = 0xDC80;
constexpr char16_t lastEscape = 0xDCFF;

/// The bytes of a text in which halves of surrogate pairs may represent single bytes.
QByteArray unescaped(const QString &path)
{
    QByteArray name;
    qsizetype start = 0;
    for (qsizetype i = 0; i < path.size(); ++i) {
        const char16_t unit = path.at(i).unicode();
        if (QChar::isHighSurrogate(unit)) {
            ++i; // a whole pair, or an error that the way back shows
        } else if (unit >= firstEscape && unit <= lastEscape) {
            name += QStringView(path).sliced(start, i - start).toUtf8();
            name += static_cast<char>(unit - escapeBase);
            start = i + 1;
        }
    }
    return name + QStringView(path).sliced(start).toUtf8();
}

/// The character that the bytes begin with; empty when they begin with none.
QString firstCharacter(QByteArrayView bytes)
{
    constexpr qsizetype maxSequence = 4;
    for (qsizetype length = 1; length <= std::min(maxSequence, bytes.size()); ++length) {
        if (std::optional<QString> character = decodedUtf8(bytes.first(length))) {
            return *std::move(character);
        }
    }
    return {};
}

} // namespace

QString decodedPath(const QByteArray &path)
{
    if (std::optional<QString> whole = decodedUtf8(path)) {
        return *std::move(whole);
    }
    QString text;
    for (qsizetype i = 0; i < path.size();) {
        const QString character = firstCharacter(QByteArrayView(path).sliced(i));
        if (character.isEmpty()) {
            text += QChar(static_cast<char16_t>(escapeBase + static_cast<uchar>(path.at(i))));
            ++i;
        } else {
            text += character;
            i += character.toUtf8().size();
        }
    }
    return text;
}

QByteArray encodedPath(const QString &path, FileError::Action action)
{
    const QByteArray name = unescaped(path);
    if (path.contains(QChar(u'\0')) || decodedPath(name) != path) {
        throw FileError::of(FileError::Kind::InvalidName, action, path);
    }
    return name;
}

QByteArray encodedItemPath(const QString &path, FileError::Action action)
{
    return withoutTrailingSlashes(encodedPath(path, action));
}

bool hasReplacementCharacter(const QString &path)
{
    return path.contains(QChar(QChar::ReplacementCharacter));
}

QByteArray withoutTrailingSlashes(const QByteArray &path)
{
    qsizetype end = path.size();
    while (end > 1 && path.at(end - 1) == '/') {
        --end;
    }
    return path.left(end);
}

QByteArray parentOf(const QByteArray &path)
{
    const QByteArray trimmed = withoutTrailingSlashes(path);
    const qsizetype slash = trimmed.lastIndexOf('/');
    if (slash < 0) {
        return QByteArrayLiteral(".");
    }
    return slash == 0 ? QByteArrayLiteral("/") : trimmed.left(slash);
}

QByteArray nameOf(const QByteArray &path)
{
    const QByteArray trimmed = withoutTrailingSlashes(path);
    return trimmed.mid(trimmed.lastIndexOf('/') + 1);
}

} // namespace quillhaven
