// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <cstdint>
#include <functional>

// The steps that shred one file. The functions block: call them from any thread but the main thread.

namespace quillhaven {

class FileManager;
class RandomSource;

/// How often a file is overwritten: with 0x00, then with 0xFF, then with one random byte value.
inline constexpr int overwritingPasses = 3;

/// Overwrites the first `fileSize` bytes with the pattern of `pass`, counted from 1, in chunks of 64 KiB, each flushed
/// to the device before the next one. `progress`, which may be empty, receives the completed fraction after each chunk.
/// Throws a FileError; the file is then partly overwritten.
void performSecureOverwrite(FileManager &files, RandomSource &random, const QString &path, int pass, int64_t fileSize,
                            const std::function<void(double fraction)> &progress);

/// Renames the file to a random name in its folder, removes it and flushes all file systems. Throws a FileError; if
/// only the removal failed, the file exists under the random name.
void secureDelete(FileManager &files, RandomSource &random, const QString &path);

} // namespace quillhaven
