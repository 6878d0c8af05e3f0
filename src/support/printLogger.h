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

/// Sets what receives every printed text, terminator included, in place of standard output; an empty function restores
/// it. Any thread may call the sink, and one that is logging meanwhile may call it once more after it was replaced, so
/// it must own all it uses.
void setLogSink(std::function<void(const QString &)> sink);

} // namespace quillhaven
