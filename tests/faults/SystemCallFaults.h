// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/FileManagerDecorator.h"

#include <functional>

namespace quillhaven::testing {

/// What happens to the file system calls that the program itself makes while it works on files: the n-th one, counted
/// from 1 over all threads, fails or ends the process in its place. Only calls within a FaultyFileManager count.
namespace system_call_faults {

void countOnly();
void failCall(int n, int errorNumber);
/// Ends the process by SIGKILL in place of the n-th call.
void killAtCall(int n);
void disarm();
/// The calls since one of the above.
[[nodiscard]] int callCount();
/// The name of the call that failed.
[[nodiscard]] const char *failedCall();

} // namespace system_call_faults

/// The real file operations, within which system calls count.
class FaultyFileManager : public FileManagerDecorator
{
public:
    using FileManagerDecorator::FileManagerDecorator;

    [[nodiscard]] bool fileExists(const QString &path) const override;
    [[nodiscard]] bool isDirectory(const QString &path) const override;
    [[nodiscard]] bool isWritableFile(const QString &path) const override;
    void requireReadableAndMovable(const QString &path, size_t headroom) const override;
    [[nodiscard]] QStringList contentsOfDirectory(const QString &path) const override;
    void createDirectory(const QString &path) override;
    void moveItem(const QString &source, const QString &target) override;
    void replaceItemAt(const QString &original, const QString &replacement) override;
    void renameItem(const QString &path, const QString &newPath) override;
    void copyItem(const QString &source, const QString &target) override;
    void removeItem(const QString &path) override;
    [[nodiscard]] std::unique_ptr<FileReader> openForReading(const QString &path) const override;
    [[nodiscard]] std::unique_ptr<FileWriter> openForWriting(const QString &path) override;
    [[nodiscard]] int64_t sizeOfItem(const QString &path) const override;
    [[nodiscard]] QList<FileEntry> regularFilesBelow(const QString &folder) const override;
    [[nodiscard]] std::unique_ptr<FileHandle> openForOverwriting(const QString &path) override;
};

} // namespace quillhaven::testing
