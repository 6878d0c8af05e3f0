#include "support/FinishWorkers.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace {

/// A warning that no test announced is a defect: a binding loop, a bad connect.
void failOnWarning(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg) {
        ADD_FAILURE() << "unexpected warning: " << qUtf8Printable(message);
    }
}

} // namespace

/// Panels and windows need an application with a display.
int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    qInstallMessageHandler(failOnWarning);
    const int result = RUN_ALL_TESTS();
    quillhaven::testing::finishWorkers();
    return result;
}
