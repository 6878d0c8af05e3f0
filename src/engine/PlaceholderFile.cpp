#include "engine/PlaceholderFile.h"

#include "platform/FileManager.h"

namespace quillhaven {

void writePlaceholder(FileManager &fileManager, const QString &path)
{
    const QByteArray bytes = placeholderText.toUtf8();
    fileManager.writeFile(path, std::as_bytes(std::span(bytes.constData(), static_cast<size_t>(bytes.size()))));
}

} // namespace quillhaven
