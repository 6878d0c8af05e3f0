// One operation of the engine over real files in a folder, with the user's answers given at once. Prints one line:
// the seconds of the operation alone and the peak of resident memory in KiB.
//
// engine_bench HOME protect PATH       protects the item
// engine_bench HOME cycle PATH         protects, then measures an unlock and a lock; prints two lines
// engine_bench HOME catalogue COUNT    saves a catalogue of so many records 50 times; prints the seconds of one save

#include "catalogue/CatalogueJson.h"
#include "catalogue/DefaultsKeys.h"
#include "platform/linux/CloudFolders.h"
#include "platform/printLogger.h"
#include "support/EngineHarness.h"

#include <QDir>
#include <QElapsedTimer>

#include <cstdio>

#include <sys/resource.h>

using namespace quillhaven;
using namespace quillhaven::testing;

namespace {

long peakKiB()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

template <typename Work>
void measure(const char *name, Work work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    std::printf("%s %.4f %ld\n", name, static_cast<double>(timer.nsecsElapsed()) / 1e9, peakKiB());
}

/// A platform below a given folder, kept afterwards.
class BenchPlatform
{
public:
    explicit BenchPlatform(const QString &home)
        : directories{.home = home,
                      .applicationSupport = home + QStringLiteral("/data"),
                      .documents = home + QStringLiteral("/Documents"),
                      .temporary = home + QStringLiteral("/tmp"),
                      .configuration = home + QStringLiteral("/config")},
          defaults(directories.configuration)
    {
        for (const QString &folder : {directories.applicationSupport, directories.documents, directories.temporary}) {
            QDir().mkpath(folder);
        }
        queue.setMaxThreadCount(1);
    }

    [[nodiscard]] Platform platform()
    {
        return {.fileManager = files,
                .directories = directories,
                .defaults = defaults,
                .credentials = credentials,
                .credentialQueue = queue,
                .biometrics = biometrics,
                .panels = panels,
                .cloud = cloud,
                .clock = clock,
                .random = random};
    }

    UserDirectories directories;
    LinuxFileManager files;
    SqliteUserDefaultsProvider defaults;
    InMemoryCredentialStore credentials;
    QThreadPool queue;
    FakeBiometricAuthenticator biometrics;
    FakeFilePanels panels;
    CloudFolders cloud{directories};
    ManualClock clock;
    OpenSslRandomSource random;
};

void fillCatalogue(BenchPlatform &services, int count)
{
    QList<ProtectedItem> items;
    for (int i = 0; i < count; ++i) {
        ProtectedItem item;
        item.id = services.random.uuidString();
        item.originalName = QStringLiteral("a document of some length %1.pdf").arg(i);
        item.originalPath = QStringLiteral("/home/somebody/Documents/project/%1").arg(item.originalName);
        item.containerPath = QStringLiteral("/home/somebody/Documents/%1.secured").arg(item.originalName);
        // A path that exists keeps the record through the clean-up of the start.
        item.originalBackupPath = services.directories.documents;
        items.append(item);
    }
    services.defaults.standard().setData(defaults_keys::protectedItems, encodeProtectedItems(items));
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        std::fprintf(stderr, "usage: engine_bench HOME protect|cycle|catalogue PATH|COUNT\n");
        return 2;
    }
    setLogSink([](const QString &) {});
    BenchPlatform services(arguments.at(1));
    const QString mode = arguments.at(2);
    const QString subject = arguments.at(3);
    if (mode == QStringLiteral("catalogue")) {
        fillCatalogue(services, subject.toInt());
    }
    EngineHarness engine(services.platform());
    if (mode == QStringLiteral("protect")) {
        measure("protect", [&] { engine.protect(subject); });
    } else if (mode == QStringLiteral("cycle")) {
        engine.protect(subject);
        measure("unlock", [&] { engine.unlock(); });
        measure("lock", [&] { engine.lock(); });
    } else if (mode == QStringLiteral("catalogue")) {
        constexpr int repeats = 50;
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < repeats; ++i) {
            engine.manager.saveProtectedItems();
        }
        std::printf("save %.6f %ld\n", static_cast<double>(timer.nsecsElapsed()) / 1e9 / repeats, peakKiB());
    } else {
        return 2;
    }
    return 0;
}
