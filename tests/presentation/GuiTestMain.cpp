// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/RunTests.h"

#include <QGuiApplication>

/// Fonts, pixmaps, the clipboard and windows need an application with a display, even an offscreen one.
int main(int argc, char **argv)
{
    return quillhaven::test::runTests<QGuiApplication>(argc, argv);
}
