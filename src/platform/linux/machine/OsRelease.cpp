// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/machine/OsRelease.h"

#include <QList>

namespace quillhaven {

namespace {

/// A word of the shell without its quotes and backslashes.
std::optional<QString> unquoted(const QByteArray &word)
{
    QByteArray bytes;
    char quote = 0;
    for (qsizetype i = 0; i < word.size(); ++i) {
        const char byte = word.at(i);
        const bool isQuote = byte == '"' || byte == '\'';
        if (quote ? byte == quote : isQuote) {
            quote = quote ? char(0) : byte;
        } else if (byte == '\\' && quote != '\'' && i + 1 < word.size()) {
            bytes.append(word.at(++i));
        } else {
            bytes.append(byte);
        }
    }
    return quote ? std::nullopt : std::optional(QString::fromUtf8(bytes));
}

} // namespace

std::optional<QString> osReleaseValue(const QByteArray &file, const QByteArray &name)
{
    std::optional<QString> value;
    for (const QByteArray &line : file.split('\n')) {
        const QByteArray assignment = line.trimmed();
        if (assignment.startsWith(name + '=')) {
            value = unquoted(assignment.mid(name.size() + 1));
        }
    }
    return value;
}

} // namespace quillhaven
