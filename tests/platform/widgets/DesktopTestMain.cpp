// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/RunTests.h"

#include <QApplication>

/// Panels and windows need an application with a display. The application continues when a test closes its windows.
int main(int argc, char **argv)
{
    QApplication::setQuitOnLastWindowClosed(false);
    return quillhaven::test::runTests<QApplication>(argc, argv);
}
