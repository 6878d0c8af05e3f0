// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/RunTests.h"

#include <QApplication>

/// Panels and windows need an application with a display; tests close windows, and the application goes on.
int main(int argc, char **argv)
{
    QApplication::setQuitOnLastWindowClosed(false);
    return quillhaven::testing::runTests<QApplication>(argc, argv);
}
