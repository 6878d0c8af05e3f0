// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/login/ExecLine.h"

#include <gio/gio.h>

#include <algorithm>
#include <memory>

namespace quillhaven {

namespace {

QString quoted(const QString &argument)
{
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    static const QString escaped = QStringLiteral("\"`$\\");
    const bool needsQuotes = argument.isEmpty() || std::ranges::any_of(argument, [](QChar character) {
                                 return reserved.contains(character);
                             });
    QString text;
    for (const QChar character : argument) {
        if (escaped.contains(character)) {
            text += QLatin1Char('\\');
        } else if (character == QLatin1Char('%')) {
            text += QLatin1Char('%');
        }
        text += character;
    }
    return needsQuotes ? QLatin1Char('"') + text + QLatin1Char('"') : text;
}

/// "%%" is a percent sign; any other code is replaced by what is opened, and nothing is opened at login.
QString withoutFieldCodes(const QString &word)
{
    QString text;
    for (qsizetype i = 0; i < word.size(); ++i) {
        if (word.at(i) != QLatin1Char('%')) {
            text += word.at(i);
            continue;
        }
        ++i;
        if (i < word.size() && word.at(i) == QLatin1Char('%')) {
            text += QLatin1Char('%');
        }
    }
    return text;
}

} // namespace

QString execLine(const QStringList &command)
{
    QStringList words;
    std::ranges::transform(command, std::back_inserter(words), quoted);
    return words.join(QLatin1Char(' '));
}

QStringList commandOfExecLine(const QString &line)
{
    gchar **parsed = nullptr;
    if (!g_shell_parse_argv(line.toUtf8().constData(), nullptr, &parsed, nullptr)) {
        return {};
    }
    const std::unique_ptr<gchar *, decltype(&g_strfreev)> words(parsed, g_strfreev);
    QStringList command;
    for (gchar **word = words.get(); *word; ++word) {
        const QString text = QString::fromUtf8(*word);
        const QString argument = withoutFieldCodes(text);
        if (!argument.isEmpty() || text.isEmpty()) {
            command.append(argument);
        }
    }
    return command;
}

} // namespace quillhaven
