// SPDX-License-Identifier: GPL-3.0-or-later

#include "StartFailure.h"

#include "presentation/tokens/PanelPalette.h"
#include "shell/TerminationSignals.h"
#include "support/printLogger.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace quillhaven {

namespace {

/// Whether what is shown appears on a screen: Qt's other platforms are for tests and servers.
bool hasScreen()
{
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && !platform.startsWith(QLatin1String("minimal"));
}

} // namespace

AfterStartFailure reportStartFailure(const QString &reason)
{
    printLogger(QStringLiteral("❌ Quillhaven cannot start: ") + reason);
    if (!hasScreen()) {
        return AfterStartFailure::Quit;
    }
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Quillhaven"), QStringLiteral("Quillhaven cannot start."));
    box.setPalette(panelPalette(ColorTokens()));
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(reason +
                           QStringLiteral("\n\nYour protected items are where they were. Try again when the cause is "
                                          "removed."));
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    const QPushButton *tryAgain = box.addButton(QStringLiteral("Try Again"), QMessageBox::AcceptRole);
    QPushButton *quit = box.addButton(QStringLiteral("Quit"), QMessageBox::RejectRole);
    box.setDefaultButton(quit);
    box.setEscapeButton(quit);

    QObject::connect(&box, &QMessageBox::finished, &box, [] { QCoreApplication::exit(); });
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::terminationRequested, &box, &QMessageBox::reject);
    box.show();
    box.activateWindow();
    QApplication::exec();
    return box.clickedButton() == tryAgain ? AfterStartFailure::TryAgain : AfterStartFailure::Quit;
}

} // namespace quillhaven
