// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/OpenPanelDialog.h"
#include "platform/widgets/QtFilePanels.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

// PanelEnder DIRECTORY: a program that ends while its panel is still open.
int main(int argc, char **argv)
{
    using namespace quillhaven;
    QApplication application(argc, argv);
    QtFilePanels panels;
    const auto opened = panels.open({.canChooseDirectories = true, .directory = QApplication::arguments().at(1)});
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [] {
        if (qobject_cast<OpenPanelDialog *>(QApplication::activeWindow())) {
            std::puts("open");
            QApplication::exit(0);
        }
    });
    timer.start(1);
    return QApplication::exec();
}
