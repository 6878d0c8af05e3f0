// SPDX-License-Identifier: GPL-3.0-or-later

// sheet_bench: prints the seconds from the call that opens each sheet to the first frame that shows it, in the real
// window with the software renderer, and the same for an empty dialog of the toolkit. The first opening creates the
// sheet; the later ones show it again. bench/run.py runs it under a virtual display.

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

void measureSheets()
{
    BenchWindow bench({namedItem(QStringLiteral("letter.txt"))});
    QQuickWindow &window = *bench.window.window();
    SheetModels &sheets = bench.sheets;
    const QString text = QStringLiteral("letter.txt");
    const auto measureDialog = [&window](const char *name, DialogModel &model, const std::function<void()> &open) {
        measure(name, window, open, [&model] { model.setIsPresented(false); });
    };
    const auto measureProgress = [&window, &text](const char *name, OperationProgress &progress) {
        const auto open = [&] {
            progress.show();
            progress.report(text, 0.5);
        };
        measure(name, window, open, [&] { progress.hide(); });
    };
    measure(
        "preferences", window, [&] { bench.preferences.model.show(); },
        [&] { bench.preferences.model.handleCloseAttempt(); });
    measureDialog("shortcuts", *sheets.keyboardShortcuts(), [&] { sheets.keyboardShortcuts()->setIsPresented(true); });
    measureDialog("method", *sheets.protectionMethodDialogManager(),
                  [&] { (void)sheets.protectionMethodDialogManager()->ask(text); });
    measureDialog("password", *sheets.passwordInputDialogManager(), [&] {
        sheets.passwordInputDialogManager()->show({.title = text, .message = text, .requiresConfirmation = true}, {},
                                                  {});
    });
    measureDialog("master-password", *sheets.masterPasswordDialogManager(),
                  [&] { sheets.masterPasswordDialogManager()->show({.title = text, .message = text}, {}); });
    measureDialog("question", *sheets.confirmationDialogManager(),
                  [&] { sheets.confirmationDialogManager()->show({.title = text, .message = text}); });
    measureDialog("removal", *sheets.removeProtectionDialogManager(),
                  [&] { sheets.removeProtectionDialogManager()->show(text, {}, {}); });
    measureDialog("deletion", *sheets.deleteConfirmation(), [&] { sheets.deleteConfirmation()->show(text, true); });
    measureDialog("shred-question", *sheets.shredConfirmation(), [&] { sheets.shredConfirmation()->show({text}); });
    measureDialog("error", *sheets.errorDialogManager(),
                  [&] { sheets.errorDialogManager()->showErrorWithAutoTroubleshooting(text, text); });
    measureDialog("row-error", *sheets.errorDialogSheet(), [&] { sheets.errorDialogSheet()->show(text); });
    measureDialog("bulk-picker", *sheets.bulkFilePicker(), [&] { sheets.bulkFilePicker()->show(); });
    measureDialog("lost-items", *sheets.rescue(), [&] { sheets.rescue()->setIsPresented(true); });
    measureDialog("recovery", *sheets.recoveryDialogManager(),
                  [&] { sheets.recoveryDialogManager()->setIsPresented(true); });
    measureDialog("details", *sheets.itemDetails(),
                  [&] { sheets.itemDetails()->show(QStringLiteral("ID-letter.txt")); });
    measureProgress("bulk-progress", *sheets.bulkProgress());
    measureProgress("shred-progress", *sheets.shredProgress());
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
    measureSheets();
    measureEmptyDialog();
    return 0;
}
