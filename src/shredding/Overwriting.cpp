// SPDX-License-Identifier: GPL-3.0-or-later

#include "shredding/Overwriting.h"

#include "platform/FileManager.h"
#include "platform/RandomSource.h"
#include "support/Paths.h"

#include <algorithm>
#include <array>
#include <vector>

namespace quillhaven {

namespace {

constexpr int64_t chunkSize = 65536; // bytes

std::byte patternOf(int pass, RandomSource &random)
{
    if (pass == 2) {
        return std::byte{0xFF};
    }
    if (pass == 3) {
        std::array<std::byte, 8> drawn{};
        random.fill(drawn);
        return drawn.front();
    }
    return std::byte{0};
}

} // namespace

void performSecureOverwrite(FileManager &files, RandomSource &random, const QString &path, int pass, int64_t fileSize,
                            const std::function<void(double fraction)> &progress)
{
    const std::unique_ptr<FileHandle> file = files.openForOverwriting(path);
    const auto bufferSize = static_cast<size_t>(std::min(chunkSize, fileSize));
    const std::vector<std::byte> pattern(bufferSize, patternOf(pass, random));
    file->seek(0);
    const int64_t chunks = (fileSize + chunkSize - 1) / chunkSize;
    for (int64_t chunk = 0; chunk < chunks; ++chunk) {
        const int64_t length = std::min(chunkSize, fileSize - chunk * chunkSize);
        file->writeThrough(std::span(pattern).first(static_cast<size_t>(length)));
        if (progress) {
            progress(static_cast<double>(chunk + 1) / static_cast<double>(chunks));
        }
    }
    file->synchronizeFile();
    file->closeFile();
}

void secureDelete(FileManager &files, RandomSource &random, const QString &path)
{
    const QString renamed = pathInDirectory(parentDirectory(path), random.uuidString());
    files.renameItem(path, renamed);
    files.removeItem(renamed);
    files.sync(); // writes the renaming and the removal to the device too
}

} // namespace quillhaven
