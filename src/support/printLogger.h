// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace quillhaven {

/// Joins the printed forms with the separator and writes them to standard output, flushed. Any thread may call it.
void printLogger(const QStringList &items, const QString &separator = QStringLiteral(" "),
                 const QString &terminator = QStringLiteral("\n"));

/// One line of one item.
void printLogger(const QString &line);

/// "true" or "false", as a Boolean is printed in the log.
[[nodiscard]] QString printed(bool value);

/// Receives every printed text, terminator included, in place of standard output; an empty function restores it.
/// Set before any thread logs.
void setLogSink(std::function<void(const QString &)> sink);

} // namespace quillhaven
