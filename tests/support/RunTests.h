// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTemporaryDir>
#include <QThreadPool>

#include <gtest/gtest.h>

namespace quillhaven::test {

/// A warning that no test expects is an error: a binding loop, an unknown property, a wrong connect.
inline void failOnWarning(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg) {
        ADD_FAILURE() << "unexpected warning: " << qUtf8Printable(message);
    }
}

/// Runs the tests of a program with an application of the given class; returns the exit code.
template <typename Application>
int runTests(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    const QTemporaryDir dataHome; // The trash is in it.
    qputenv("XDG_DATA_HOME", dataHome.path().toUtf8());
    const Application application(argc, argv);
    qInstallMessageHandler(failOnWarning);
    const int result = RUN_ALL_TESTS();
    // A worker thread that ends at the same time as the process would look like a leak of its library's data.
    QThreadPool::globalInstance()->waitForDone();
    return result;
}

} // namespace quillhaven::test
