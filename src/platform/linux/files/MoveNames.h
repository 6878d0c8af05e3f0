// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileError.h"

namespace quillhaven {

/// The two paths of an operation as its caller named them, for the sentence of an error.
struct MoveNames
{
    FileError::Action action;
    QString path;
    QString target;

    [[noreturn]] void fail(int errorNumber) const { throw FileError::fromErrno(errorNumber, action, path, target); }
};

} // namespace quillhaven
