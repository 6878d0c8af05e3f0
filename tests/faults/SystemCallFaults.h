// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/FileManagerDecorator.h"

#include <QStringList>

#include <memory>

namespace quillhaven::test {

/// Faults for the system calls that the program itself makes while it works on files: the n-th one, counted from 1 over
/// all threads, fails, or the process is killed instead. Only calls within a scope are counted.
namespace system_call_faults {

void countOnly();
void failCall(int n, int errorNumber);
/// Kills the process with SIGKILL instead of the n-th call.
void killAtCall(int n);
void disarm();
/// The number of calls since one of the above.
[[nodiscard]] int callCount();
/// The name of the call that failed.
[[nodiscard]] const char *failedCall();

/// The calls of this thread are counted until the scope is destroyed.
[[nodiscard]] std::shared_ptr<void> scope();

/// The calls that can be made to fail.
[[nodiscard]] QStringList coveredCalls();
/// Those of them that were counted since the process started.
[[nodiscard]] QStringList seenCalls();

} // namespace system_call_faults

/// The real file operations, whose system calls are counted.
class FaultyFileManager : public FileManagerDecorator
{
public:
    using FileManagerDecorator::FileManagerDecorator;

protected:
    void around(const FileCall &call, const std::function<void()> &next) const override;
};

} // namespace quillhaven::test
