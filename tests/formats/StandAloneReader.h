// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>

namespace quillhaven::testing {

/// What `docs/open_quillhaven_file.py`, which shares no code with the program, said about a file.
struct ReaderRun
{
    int exitCode = -1;
    QByteArray output; ///< standard output: the plaintext when that was where it was to go
    QByteArray errors;
};

/// Runs the reader, with the password on its standard input.
inline ReaderRun runReader(const QStringList &arguments, const QByteArray &password)
{
    QProcess python;
    python.start(
        QStringLiteral("/usr/bin/python3"),
        QStringList{QStringLiteral(STAND_ALONE_READER), QStringLiteral("--password-file"), QStringLiteral("-")} +
            arguments);
    python.write(password);
    python.closeWriteChannel();
    EXPECT_TRUE(python.waitForFinished(-1)) << qUtf8Printable(python.errorString());
    return {.exitCode = python.exitCode(),
            .output = python.readAllStandardOutput(),
            .errors = python.readAllStandardError()};
}

/// The status with which the reader ends when the password is wrong or a byte was changed.
inline constexpr int readerNotOpened = 4;
/// The same for a file that is none of ours, or a piece of one.
inline constexpr int readerNotOurs = 3;

} // namespace quillhaven::testing
