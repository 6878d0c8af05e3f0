// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>

namespace quillhaven::test {

/// The result of `docs/open_quillhaven_file.py`, which shares no code with the program, for a file.
struct ReaderRun
{
    int exitCode = -1;
    QByteArray output; ///< standard output, which may be the plaintext
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

/// The reader's exit status if the password is wrong or a byte was changed.
inline constexpr int readerNotOpened = 4;
/// The reader's exit status for a file that is not one of Quillhaven's, or is truncated.
inline constexpr int readerNotOurs = 3;

} // namespace quillhaven::test
