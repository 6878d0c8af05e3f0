#include "support/FinishWorkers.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cstdarg>
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

#if __has_feature(thread_sanitizer)
#include <dlfcn.h>
// Qt starts programs by clone() with shared memory; the sanitizer's own clone() takes that for a fork and stops.
extern "C" int clone(int (*function)(void *), void *stack, int flags, void *argument, ...)
{
    va_list rest;
    va_start(rest, argument);
    auto *parent = va_arg(rest, void *);
    auto *tls = va_arg(rest, void *);
    auto *child = va_arg(rest, void *);
    va_end(rest);
    using Clone = int (*)(int (*)(void *), void *, int, void *, ...);
    return reinterpret_cast<Clone>(dlsym(RTLD_NEXT, "clone"))(function, stack, flags, argument, parent, tls, child);
}
#endif

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    qInstallMessageHandler(failOnWarning);
    const int result = RUN_ALL_TESTS();
    quillhaven::testing::finishWorkers();
    return result;
}
