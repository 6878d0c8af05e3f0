// SPDX-License-Identifier: GPL-3.0-or-later

#include "Application.h"

#include "RunningProgram.h"
#include "SharedInstances.h"
#include "StartFailure.h"
#include "async/Jobs.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/desktop/DesktopFileViewer.h"
#include "platform/linux/files/UserEnvironment.h"
#include "platform/linux/files/XdgDirectories.h"
#include "platform/widgets/QtApplicationPresence.h"
#include "platform/widgets/QtFilePanels.h"
#include "platform/widgets/QtUrlOpener.h"
#include "platform/widgets/QtUserInput.h"
#include "presentation/tokens/Design.h"
#include "presentation/tokens/PanelPalette.h"
#include "presentation/tokens/Typography.h"
#include "shell/ProcessProtection.h"
#include "shell/SingleInstance.h"
#include "support/LocalizedError.h"

#include <QApplication>
#include <QIcon>
#include <QLocale>
#include <QQuickWindow>
#include <QScopeGuard>
#include <QThreadPool>

namespace quillhaven {

namespace {

/// Chooses the software renderer: the window consists of text and rectangles, and without a graphics driver it starts
/// in half the time and memory. A renderer that the environment names takes precedence.
void chooseRenderer()
{
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND") && qEnvironmentVariableIsEmpty("QSG_RHI_BACKEND")) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
}

/// The layout runs in the direction of the user's language. The toolkit by itself knows it only from its translations.
void chooseLayoutDirection()
{
    const QStringList languages = QLocale::system().uiLanguages();
    if (!languages.isEmpty() && QLocale(languages.constFirst()).textDirection() == Qt::RightToLeft) {
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    }
}

/// The panels, which are widgets, follow the size of text that the user wants.
void followTextSize(const DisplayPreferences &display)
{
    const auto follow = [&display] { QApplication::setFont(Typography::settingLabel(shownTextScale(display))); };
    QObject::connect(&display, &DisplayPreferences::changed, qApp, follow);
    follow();
}

/// What the build says of the program.
BundleInformation bundleInformation()
{
    return {.identifier = SqliteUserDefaultsProvider::standardDomain,
            .values = {{BundleInformation::shortVersionKey, QStringLiteral(QUILLHAVEN_VERSION)},
                       {BundleInformation::buildKey, QStringLiteral(QUILLHAVEN_BUILD)}}};
}

/// One start of the program, to its end. Throws what prevents it.
int startAndRun()
{
    const UserDirectories directories = xdgDirectories();
    SingleInstance instance(directories.configuration, directories.temporary);
    if (instance.claim(QCoreApplication::arguments()) == SingleInstance::Role::Secondary) {
        return 0;
    }
    LinuxPlatform services(directories);
    QtFilePanels panels(panelPalette(ColorTokens()));
    QtUserInput input(services.globalInput());
    QtUrlOpener opener;
    DesktopFileViewer fileViewer(opener);
    QtApplicationPresence presence;
    const auto shutDown = qScopeGuard([] {
        shutDownSharedInstances();
        QThreadPool::globalInstance()->waitForDone();
    });
    const Platform platform = services.platform(panels, input, opener, fileViewer, bundleInformation());
    followTextSize(platform.display);
    installPlatform(platform, presence, QCoreApplication::arguments());
    RunningProgram program(platform, instance, presence, [&services] {
        startJob([&services] { return services.openLinks(QStringLiteral("quillhaven")); });
    });
    return program.run();
}

} // namespace

int runApplication(int argc, char **argv)
{
    protectProcess();
    TerminationSignals::block();
    repairEnvironment();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quillhaven"));
    QApplication::setOrganizationDomain(QStringLiteral("tarnwick.com"));
    QApplication::setApplicationVersion(QStringLiteral(QUILLHAVEN_VERSION));
    QApplication::setDesktopFileName(SingleInstance::busName);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/images/logo.svg")));
    QApplication::setQuitOnLastWindowClosed(false);
    chooseRenderer();
    chooseLayoutDirection();
    QApplication::setFont(Typography::settingLabel());
    for (;;) {
        QString failure;
        try {
            return startAndRun();
        } catch (const std::exception &error) {
            failure = localizedDescription(error);
        }
        if (reportStartFailure(failure) == AfterStartFailure::Quit) {
            return 1;
        }
    }
}

} // namespace quillhaven
