// SPDX-License-Identifier: GPL-3.0-or-later

// Runs one operation of the engine on real files in a folder; all questions are answered immediately. Prints one line:
// the seconds of the operation alone, the peak of resident memory in KiB and the seconds of processor time.
//
// engine_bench HOME protect PATH       protects the item
// engine_bench HOME cycle PATH         protects, then measures an unlock and a lock; prints two lines
// engine_bench HOME catalogue COUNT    saves a catalogue of COUNT records 50 times; prints the seconds of one save
// engine_bench HOME backup PATH        protects the item, then measures its recovery backup
// engine_bench HOME recover PATH       protects every item of a folder, backs them up, then measures the recovery
// engine_bench HOME shred PATH         shreds a file or folder that is not an item
// engine_bench HOME bulk COUNT         unlocks and locks COUNT items in two bulk runs; prints two lines
// engine_bench HOME idle COUNT         unlocks COUNT items, then measures from an idle period's end to the last lock;
// the
//                                      second line has the longest time for which the main thread did nothing else

#include "autolock/AutoLockManager.h"
#include "catalogue/CatalogueJson.h"
#include "credentials/KeychainManager.h"
#include "platform/linux/files/CloudFolders.h"
#include "settings/Settings.h"
#include "support/EngineHarness.h"
#include "support/printLogger.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

#include <algorithm>
#include <cstdio>

#include <sys/resource.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

rusage used()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage;
}

double processorSeconds()
{
    const rusage usage = used();
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

void print(const char *name, double seconds, double processor)
{
    std::printf("%s %.6f %ld %.6f\n", name, seconds, used().ru_maxrss, processor);
}

template <typename Work>
void measure(const char *name, Work work)
{
    QElapsedTimer timer;
    const double before = processorSeconds();
    timer.start();
    work();
    print(name, static_cast<double>(timer.nsecsElapsed()) / 1e9, processorSeconds() - before);
}

void fillCatalogue(FolderPlatform &services, int count)
{
    QList<ProtectedItem> items;
    for (int i = 0; i < count; ++i) {
        ProtectedItem item;
        item.id = services.random.uuidString();
        item.originalName = QStringLiteral("a document of some length %1.pdf").arg(i);
        item.originalPath = QStringLiteral("/home/somebody/Documents/project/%1").arg(item.originalName);
        item.containerPath = QStringLiteral("/home/somebody/Documents/%1.secured").arg(item.originalName);
        // An existing path, since the clean-up at start removes records without a private copy.
        item.originalBackupPath = services.directories.documents;
        items.append(item);
    }
    services.defaults.standard().setData(settings::protectedItems.key, encodeProtectedItems(items));
}

const auto quiet = [](const QString &, double) {};
const QString itemPassword = QStringLiteral("Abcdefg1");
const QString masterPassword = QStringLiteral("Masterkey9");

/// Creates `count` locked items with their private copies and credentials.
void fillWithItems(FolderPlatform &services, int count)
{
    KeychainManager keychain(services.credentials, services.random, keychainServiceName);
    const QString store = services.directories.applicationSupport + QStringLiteral("/quillhaven");
    const QString desktop = services.directories.home + QStringLiteral("/Desktop");
    QDir().mkpath(store);
    QDir().mkpath(desktop);
    QList<ProtectedItem> items;
    for (int i = 0; i < count; ++i) {
        ProtectedItem item;
        item.id = services.random.uuidString();
        item.originalName = QStringLiteral("a document of some length %1.pdf").arg(i);
        item.originalPath = desktop + QLatin1Char('/') + item.originalName;
        item.containerPath = services.directories.documents + QLatin1Char('/') + item.originalName;
        item.originalBackupPath = store + QLatin1Char('/') + item.id + QStringLiteral("_original");
        QFile copy(item.originalBackupPath);
        if (!copy.open(QIODevice::WriteOnly) || copy.write(QByteArray(4096, 'x')) < 0) {
            std::fprintf(stderr, "Could not write a private copy.\n");
        }
        keychain.storePassword(itemPassword, item.id);
        items.append(item);
    }
    services.defaults.standard().setData(settings::protectedItems.key, encodeProtectedItems(items));
}

void prepareBackups(FolderPlatform &services, EngineHarness &engine)
{
    engine.masterPasswordEntry = masterPassword;
    runTask(engine.masterPassword.setMasterPassword(masterPassword));
    QDir().mkpath(services.directories.applicationSupport + QStringLiteral("/cloud/iCloud~com~tarnwick~quillhaven"));
}

void measureRecovery(FolderPlatform &services, EngineHarness &engine, const QString &folder)
{
    for (const QString &name : QDir(folder).entryList(QDir::Files)) {
        engine.protect(folder + QLatin1Char('/') + name);
    }
    prepareBackups(services, engine);
    settings::enableiCloudBackup.write(services.defaults.standard(), true);
    runTask(engine.manager.backupAllToiCloud());
    const QString target = services.directories.home + QStringLiteral("/Recovered");
    QDir().mkpath(target);
    services.panels.answer = [target](const OpenPanelRequest &) { return target; };
    measure("recover", [&] { (void)runTask(engine.manager.recoverFromiCloud(masterPassword)); });
}

void measureBulk(EngineHarness &engine)
{
    constexpr qint64 limitMs = 3'600'000;
    measure("unlock",
            [&] { runTask(engine.manager.bulkUnlockItems(engine.manager.protectedItems(), quiet), limitMs); });
    measure("lock", [&] { runTask(engine.manager.bulkLockItems(engine.manager.protectedItems(), quiet), limitMs); });
}

/// The longest time between two turns of the event loop.
class LongestTurn
{
public:
    LongestTurn()
    {
        m_timer.callOnTimeout([this] { look(); });
        m_timer.start(0);
        m_sinceTurn.start();
    }
    [[nodiscard]] double seconds() const { return static_cast<double>(m_longest) / 1e9; }

private:
    void look()
    {
        m_longest = std::max(m_longest, m_sinceTurn.nsecsElapsed());
        m_sinceTurn.start();
    }

    QTimer m_timer;
    QElapsedTimer m_sinceTurn;
    qint64 m_longest = 0;
};

void measureIdle(FolderPlatform &services, EngineHarness &engine)
{
    constexpr qint64 limitMs = 3'600'000;
    runTask(engine.manager.bulkUnlockItems(engine.manager.protectedItems(), quiet), limitMs);
    qsizetype unlocked = engine.manager.protectedItems().size();
    QObject::connect(&engine.manager.catalogue(), &ItemCatalogue::itemChanged, [&](const QString &id) {
        const ProtectedItem *item = engine.manager.catalogue().item(id);
        unlocked -= item && !item->isMounted && !item->isProcessing ? 1 : 0;
    });
    settings::isAutoLockEnabled.write(services.defaults.standard(), true);
    settings::autoLockMinutes.write(services.defaults.standard(), 1);
    const AutoLockManager autoLock(engine.platform, engine.manager);
    const LongestTurn turns;
    measure("idle", [&] {
        services.clock.advance(std::chrono::minutes(1));
        spinUntil([&unlocked] { return unlocked == 0; }, limitMs);
    });
    print("turn", turns.seconds(), 0);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        std::fprintf(stderr,
                     "usage: engine_bench HOME protect|cycle|catalogue|backup|recover|shred|bulk|idle PATH|COUNT\n");
        return 2;
    }
    setLogSink([](const QString &) {});
    FolderPlatform services(directoriesBelow(arguments.at(1)));
    for (const QString &folder :
         {services.directories.applicationSupport, services.directories.documents, services.directories.temporary}) {
        QDir().mkpath(folder);
    }
    const QString mode = arguments.at(2);
    const QString subject = arguments.at(3);
    if (mode == QStringLiteral("catalogue")) {
        fillCatalogue(services, subject.toInt());
    } else if (mode == QStringLiteral("bulk") || mode == QStringLiteral("idle")) {
        fillWithItems(services, subject.toInt());
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
        print("save", static_cast<double>(timer.nsecsElapsed()) / 1e9 / repeats, 0);
    } else if (mode == QStringLiteral("backup")) {
        engine.protect(subject);
        prepareBackups(services, engine);
        settings::enableiCloudBackup.write(services.defaults.standard(), true);
        measure("backup", [&] { runTask(engine.manager.backupToiCloud(engine.item().id)); });
    } else if (mode == QStringLiteral("recover")) {
        measureRecovery(services, engine, subject);
    } else if (mode == QStringLiteral("shred")) {
        measure("shred", [&] { runTask(engine.manager.shredUnprotectedItems({subject}, quiet)); });
    } else if (mode == QStringLiteral("bulk")) {
        measureBulk(engine);
    } else if (mode == QStringLiteral("idle")) {
        measureIdle(services, engine);
    } else {
        return 2;
    }
    return 0;
}
