#pragma once

#include <QString>

namespace quillhaven {

class FileManager;

/// Writes the small text file that stands where a locked item stood, in place. The program never reads one back.
/// Blocks; throws FileError.
void writePlaceholder(FileManager &fileManager, const QString &path);

/// The whole content of a placeholder, without a line end.
inline const QString placeholderText =
    QStringLiteral("This file is protected by Quillhaven. Use the app to unlock it.");

} // namespace quillhaven
