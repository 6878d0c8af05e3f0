// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QThreadPool>

#include <gtest/gtest.h>

namespace quillhaven::testing {

/// A warning that no test announced is a defect: a binding loop, an unknown property, a bad connect.
inline void failOnWarning(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg) {
        ADD_FAILURE() << "unexpected warning: " << qUtf8Printable(message);
    }
}

/// Runs the tests of a program under an application of the given class; returns the exit status.
template <typename Application>
int runTests(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    const Application application(argc, argv);
    qInstallMessageHandler(failOnWarning);
    const int result = RUN_ALL_TESTS();
    // A worker thread that still ends while the process does leaves what a library keeps for it: it reads as a leak.
    QThreadPool::globalInstance()->waitForDone();
    return result;
}

} // namespace quillhaven::testing
