#include "support/FinishWorkers.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

/// A warning that no test announced is a defect: a binding loop, a bad connect.
void failOnWarning(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg) {
        ADD_FAILURE() << "unexpected warning: " << qUtf8Printable(message);
    }
}

} // namespace

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    qInstallMessageHandler(failOnWarning);
    const int result = RUN_ALL_TESTS();
    quillhaven::testing::finishWorkers();
    return result;
}
