// SPDX-License-Identifier: GPL-3.0-or-later

// sheet_bench: prints the seconds from the call that opens the preferences to the first frame that shows them, in the
// real window with the software renderer, and the same for an empty dialog of the toolkit. The first opening creates
// the sheet; the later ones show it again. bench/run.py runs it under a virtual display.

#include "BenchWindow.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <cstdio>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// Runs the event loop until the window has shown `frames` more frames.
void waitForFrames(QQuickWindow &window, int frames)
{
    int shown = 0;
    const auto counting = QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&] { ++shown; });
    spinUntil([&] {
        window.update();
        return shown >= frames;
    });
    QObject::disconnect(counting);
}

/// The seconds from the call of `open` to the end of the first frame after it.
double secondsToFrame(QQuickWindow &window, const std::function<void()> &open)
{
    waitForFrames(window, 30); // the animations of before are over
    QElapsedTimer timer;
    qint64 elapsed = -1;
    const auto stop = QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&] {
        if (elapsed < 0) {
            elapsed = timer.nsecsElapsed();
        }
    });
    timer.start();
    open();
    spinUntil([&] { return elapsed >= 0; });
    QObject::disconnect(stop);
    return double(elapsed) / 1e9;
}

void measure(const char *name, QQuickWindow &window, const std::function<void()> &open,
             const std::function<void()> &close)
{
    std::printf("%s-first %.6f\n", name, secondsToFrame(window, open));
    for (int i = 0; i < 9; ++i) {
        close();
        std::printf("%s-again %.6f\n", name, secondsToFrame(window, open));
    }
    close();
}

void measurePreferences()
{
    BenchWindow bench;
    measure(
        "preferences", *bench.window.window(), [&] { bench.preferences.model.show(); },
        [&] { bench.preferences.model.handleCloseAttempt(); });
}

void measureEmptyDialog()
{
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(R"(
import QtQuick
import QtQuick.Controls.Basic
ApplicationWindow {
    property Dialog dialog: null
    width: 1200; height: 900; visible: true
    Component { id: content; Dialog { anchors.centerIn: parent; width: 580; height: 700; modal: true; Label { text: "Empty" } } }
    function openDialog() { if (!dialog) dialog = content.createObject(contentItem); dialog.open() }
    function closeDialog() { dialog.close() }
})",
                      QUrl());
    const std::unique_ptr<QObject> root(component.create());
    if (!root) {
        qFatal("%s", qUtf8Printable(component.errorString()));
    }
    measure(
        "empty-dialog", *qobject_cast<QQuickWindow *>(root.get()),
        [&] { QMetaObject::invokeMethod(root.get(), "openDialog"); },
        [&] { QMetaObject::invokeMethod(root.get(), "closeDialog"); });
}

} // namespace

int main(int argc, char **argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argc, argv);
    measurePreferences();
    measureEmptyDialog();
    return 0;
}
