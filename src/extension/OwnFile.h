// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quillhaven {

/// What is at a place where a file is to be written. A link is never followed.
struct FileAtPlace
{
    enum class Kind {
        Missing,
        File,
        Other, ///< a link, a folder, or something that cannot be read
    };
    Kind kind = Kind::Missing;
    QByteArray contents{};
    bool isExecutable = false;
};

[[nodiscard]] FileAtPlace fileAt(const QString &path);

/// Writes a file in one step, with the folders above it. An existing file keeps its mode, except for the right to
/// execute. Returns what prevents it, as a sentence.
[[nodiscard]] std::optional<QString> writeInOneStep(const QString &path, const QByteArray &contents, bool isExecutable);

/// Removes a file. Returns what prevents it, as a sentence.
[[nodiscard]] std::optional<QString> removeFile(const QString &path);

} // namespace quillhaven
