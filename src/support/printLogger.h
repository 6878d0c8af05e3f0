// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace quillhaven {

/// Writes the items, joined with the separator, to standard output and flushes it. Thread-safe. Nothing is written
/// where standard output is the session's journal, since the lines contain passwords and the journal is kept.
void printLogger(const QStringList &items, const QString &separator = QStringLiteral(" "),
                 const QString &terminator = QStringLiteral("\n"));

/// Writes one item as a line.
void printLogger(const QString &line);

/// "true" or "false", the form of a Boolean in the log.
[[nodiscard]] QString printed(bool value);

/// Sets the function that receives every printed text, including the terminator, instead of standard output; an empty
/// function restores standard output. Any thread may call the sink, and a thread that is just logging may call it once
/// more after it was replaced, so it must own all that it uses.
void setLogSink(std::function<void(const QString &)> sink);

} // namespace quillhaven
