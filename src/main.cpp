#include "SharedInstances.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordManager.h"
#include "credentials/PasswordInputDialog.h"
#include "engine/QuillhavenManager.h"
#include "platform/FileError.h"
#include "platform/desktop/QtApplicationPresence.h"
#include "platform/desktop/QtFilePanels.h"
#include "platform/desktop/SingleInstance.h"
#include "platform/desktop/TerminationSignals.h"
#include "platform/linux/CloudFolders.h"
#include "platform/linux/EventLoopClock.h"
#include "platform/linux/FprintAuthenticator.h"
#include "platform/linux/LinuxFileManager.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/SqliteUserDefaults.h"
#include "platform/linux/SystemCredentialStore.h"
#include "platform/linux/XdgDirectories.h"
#include "platform/printLogger.h"
#include "presentation/DashboardViewModel.h"
#include "presentation/MainWindow.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/tokens/Typography.h"
#include "shell/AppDelegate.h"
#include "shell/LaunchContextManager.h"
#include "shell/quillhavenApp.h"

#include <QApplication>
#include <QFileInfo>
#include <QQuickWindow>
#include <QThreadPool>

#include <sys/resource.h>

using namespace quillhaven;

namespace {

/// The real services of this desktop.
struct Services
{
    explicit Services(const UserDirectories &userDirectories)
        : directories(userDirectories),
          defaults(userDirectories.configuration),
          credentials(userDirectories.configuration)
    {
        credentialQueue.setMaxThreadCount(1);
    }
    ~Services() { credentialQueue.waitForDone(); }

    [[nodiscard]] Platform platform()
    {
        return {.fileManager = fileManager,
                .directories = directories,
                .defaults = defaults,
                .credentials = credentials,
                .credentialQueue = credentialQueue,
                .biometrics = biometrics,
                .panels = panels,
                .cloud = cloud,
                .clock = clock,
                .random = random};
    }

    UserDirectories directories;
    LinuxFileManager fileManager;
    SqliteUserDefaultsProvider defaults;
    SystemCredentialStore credentials;
    QThreadPool credentialQueue;
    FprintAuthenticator biometrics;
    QtFilePanels panels;
    CloudFolders cloud{directories};
    EventLoopClock clock;
    OpenSslRandomSource random;
};

/// A memory image of this process would hold passwords.
void forbidCoreDumps()
{
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
}

/// A window of text and rectangles: drawn without a graphics driver it starts in half the time and memory. Whoever
/// names another renderer in the environment gets it.
void chooseRenderer()
{
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND") && qEnvironmentVariableIsEmpty("QSG_RHI_BACKEND")) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
}

LaunchConnections launchConnections()
{
    LaunchConnections connections;
    connections.launchContext = [] { return &LaunchContextManager::shared(); };
    // The menu bar's view is what brings the engine into being.
    connections.setupMenuBar = [] { QuillhavenManager::shared(); };
    return connections;
}

/// Runs the program over its services, from the launch to the end of the event loop.
int runApplication(Services &services, SingleInstance &instance, QtApplicationPresence &presence)
{
    const Platform platform = services.platform();
    installPlatform(platform, presence, QCoreApplication::arguments());
    AppDelegate delegate(presence, launchConnections());
    delegate.applicationDidFinishLaunching();

    PasswordInputDialog passwordInput(PasswordInputDialogManager::shared(), services.defaults.standard());
    DashboardViewModel dashboard(platform, QuillhavenManager::shared(), MasterPasswordManager::shared(),
                                 {.confirmation = ConfirmationDialogManager::shared(),
                                  .protectionMethod = ProtectionMethodDialogManager::shared(),
                                  .passwordInput = PasswordInputDialogManager::shared(),
                                  .masterPassword = MasterPasswordDialogManager::shared()});
    MainWindow window({.dashboard = dashboard,
                       .confirmation = ConfirmationDialogManager::shared(),
                       .protectionMethod = ProtectionMethodDialogManager::shared(),
                       .passwordInput = PasswordInputDialogManager::shared(),
                       .passwordInputState = passwordInput,
                       .masterPassword = MasterPasswordDialogManager::shared(),
                       .biometrics = services.biometrics});
    quillhavenApp app(LaunchContextManager::shared(), presence, services.clock, {});

    QObject::connect(&window, &MainWindow::contentAppeared, &window, [&app] { app.contentAppeared(); });
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &window, [&app](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) {
            app.applicationDidBecomeActive();
        }
    });
    // Until there is a tray, a closed window would leave no way back in.
    QObject::connect(&window, &MainWindow::closeRequested, &window, [&presence] { presence.terminate(); });
    const auto reopen = [&delegate, &presence] {
        delegate.applicationShouldHandleReopen(presence.hasVisibleWindows());
        presence.activate();
    };
    QObject::connect(&instance, &SingleInstance::activationRequested, &window, reopen);
    QObject::connect(&instance, &SingleInstance::openRequested, &window, reopen);
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::terminationRequested, &window,
                     [&presence] { presence.terminate(); });

    if (LaunchContextManager::shared().shouldShowMainWindow()) {
        window.show();
    } else {
        app.contentAppeared();
    }
    const int result = QApplication::exec();
    delegate.applicationWillTerminate();
    return result;
}

} // namespace

int main(int argc, char **argv)
{
    forbidCoreDumps();
    TerminationSignals::block();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quillhaven"));
    QApplication::setApplicationVersion(QStringLiteral(QUILLHAVEN_VERSION));
    QApplication::setDesktopFileName(SingleInstance::busName);
    QApplication::setQuitOnLastWindowClosed(false);
    chooseRenderer();
    QApplication::setFont(Typography::settingLabel());
    try {
        const UserDirectories directories = xdgDirectories();
        const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
        SingleInstance instance(QFileInfo(runtime).isWritable() ? runtime : directories.temporary);
        if (instance.claim(QCoreApplication::arguments()) == SingleInstance::Role::Secondary) {
            return 0;
        }
        Services services(directories);
        QtApplicationPresence presence;
        const int result = runApplication(services, instance, presence);
        shutDownSharedInstances();
        QThreadPool::globalInstance()->waitForDone();
        return result;
    } catch (const LocalizedError &error) {
        printLogger(QStringLiteral("❌ Quillhaven cannot start: ") + error.errorDescription());
        return 1;
    }
}
