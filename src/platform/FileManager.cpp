// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/FileManager.h"

#include "platform/ReadWholeFile.h"

namespace quillhaven {

FileBuffer FileManager::readFile(const QString &path) const
{
    return readWholeFile(*openForReading(path), path);
}

void FileManager::writeFile(const QString &path, std::span<const std::byte> bytes)
{
    const std::unique_ptr<FileWriter> writer = openForWriting(path);
    writer->write(bytes);
    writer->close();
}

void FileManager::createFile(const QString &path, std::span<const std::byte> bytes)
{
    const std::unique_ptr<FileWriter> writer = createForWriting(path);
    writer->write(bytes);
    writer->close();
}

} // namespace quillhaven
