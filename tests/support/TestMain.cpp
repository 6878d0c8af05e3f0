// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/RunTests.h"

#include <QCoreApplication>

#include <cstdarg>
#include <cstdlib>

#if __has_feature(thread_sanitizer)
#include <dlfcn.h>
// Qt starts programs with clone() and shared memory; the sanitizer's clone() treats that as a fork and stops.
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
    return quillhaven::test::runTests<QCoreApplication>(argc, argv);
}
