#include "support/FinishWorkers.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

namespace {

/// A warning that no test announced is a defect: a binding loop, an unknown property, a missing picture.
void failOnWarning(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg) {
        ADD_FAILURE() << "unexpected warning: " << qUtf8Printable(message);
    }
}

} // namespace

/// Fonts, pixmaps and windows need an application with a display, be it an offscreen one.
int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    qInstallMessageHandler(failOnWarning);
    const int result = RUN_ALL_TESTS();
    quillhaven::testing::finishWorkers();
    return result;
}
