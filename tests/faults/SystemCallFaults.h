// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/FileManagerDecorator.h"

#include <QStringList>

#include <memory>

namespace quillhaven::testing {

/// What happens to the system calls that the program itself makes while it works on files: the n-th one, counted from 1
/// over all threads, fails or ends the process in its place. Only calls within a scope count.
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

/// The calls of this thread count until the scope is gone.
[[nodiscard]] std::shared_ptr<void> scope();

/// The calls that can be made to fail.
[[nodiscard]] QStringList coveredCalls();
/// Those of them that were counted since the process began.
[[nodiscard]] QStringList seenCalls();

} // namespace system_call_faults

/// The real file operations, within which system calls count.
class FaultyFileManager : public FileManagerDecorator
{
public:
    using FileManagerDecorator::FileManagerDecorator;

protected:
    void around(const FileCall &call, const std::function<void()> &next) const override;
};

} // namespace quillhaven::testing
