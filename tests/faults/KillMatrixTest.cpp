// SPDX-License-Identifier: GPL-3.0-or-later

// A process that runs an operation is killed after each of its changes. The disk, the keyring and the catalogue are
// then compared with the documented state for that point, and a second start continues from there.

#include "engine/PlaceholderFile.h"
#include "faults/HomePlatform.h"

#include <QDir>
#include <QProcess>

#include <csignal>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

enum class Kind { file, folder };

/// A temporary home with one file or folder, and the process that works on it.
class Scene
{
public:
    explicit Scene(Kind kind)
    {
        if (kind == Kind::folder) {
            home.write(QStringLiteral("Desktop/item/inner.txt"), "mine");
        } else {
            home.write(QStringLiteral("Desktop/item"), "mine");
        }
    }

    [[nodiscard]] QString place() const { return home.path(QStringLiteral("Desktop/item")); }

    /// Returns the changes of a complete run, in order.
    QStringList runToEnd(const char *operation) const
    {
        QProcess process;
        EXPECT_TRUE(run(process, operation, 0));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        return QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    void killAfter(const char *operation, int change) const
    {
        QProcess process;
        ASSERT_TRUE(run(process, operation, change));
        ASSERT_EQ(process.exitStatus(), QProcess::CrashExit) << process.readAllStandardError().toStdString();
        ASSERT_EQ(process.exitCode(), SIGKILL);
    }

    bool run(QProcess &process, const char *operation, int change) const
    {
        process.start(QStringLiteral(INTERRUPTED_OPERATION),
                      {home.path(), QString::fromLatin1(operation), QStringLiteral("change"), QString::number(change)});
        return process.waitForFinished(60'000);
    }

    /// What is at a path: "nothing", "placeholder", "data" or other bytes.
    [[nodiscard]] QString contentsOf(const QString &path) const
    {
        if (!TemporaryHome::exists(path)) {
            return QStringLiteral("nothing");
        }
        if (QFileInfo(path).isDir()) {
            return TemporaryHome::read(path + QStringLiteral("/inner.txt")) == "mine" ? QStringLiteral("data")
                                                                                      : QStringLiteral("changed");
        }
        const QByteArray bytes = TemporaryHome::read(path);
        if (bytes == placeholderText.toUtf8()) {
            return QStringLiteral("placeholder");
        }
        return bytes == "mine" ? QStringLiteral("data") : QStringLiteral("other");
    }

    [[nodiscard]] QString contentsOfStorage() const
    {
        const QDir storage(home.path(QStringLiteral(".local/share/quillhaven")));
        const QStringList names = storage.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        if (names.isEmpty()) {
            return QStringLiteral("nothing");
        }
        return names.size() == 1 ? contentsOf(storage.filePath(names.first())) : names.join(QLatin1Char('+'));
    }

    /// The id of the item in private storage; empty if there is none.
    [[nodiscard]] QString idInStorage() const
    {
        const QDir storage(home.path(QStringLiteral(".local/share/quillhaven")));
        const QStringList names = storage.entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        return names.isEmpty() ? QString() : names.first().section(QLatin1Char('_'), 0, 0);
    }

    [[nodiscard]] QString container() const
    {
        return TemporaryHome::exists(home.path(QStringLiteral("Documents/item.secured"))) ? QStringLiteral("container")
                                                                                          : QStringLiteral("nothing");
    }

    /// A second start with the same home: what the record says, and whether a credential is stored.
    struct SecondStart
    {
        explicit SecondStart(const Scene &scene)
            : services(scene.home.path(), HomePlatform::Credentials::OfTheSession), engine(services.platform())
        {
        }
        [[nodiscard]] QString record() const
        {
            if (engine.count() == 0) {
                return QStringLiteral("none");
            }
            return engine.item().isMounted ? QStringLiteral("unlocked") : QStringLiteral("locked");
        }

        /// Whether the credential of the item with this id is in the keyring.
        [[nodiscard]] bool hasCredential(const QString &id)
        {
            return services.realCredentials().copyMatching(keychainServiceName, id).status == credentialSuccess;
        }

        LogCapture log;
        HomePlatform services;
        EngineHarness engine;
    };

    [[nodiscard]] QString state(const SecondStart &second) const
    {
        return QStringLiteral("%1, %2, %3, %4")
            .arg(contentsOf(place()), contentsOfStorage(), container(), second.record());
    }

private:
    TemporaryHome home;
};

/// The states below name, in this order: the original place, private storage, the documents folder, the record.
class KillMatrix : public ::testing::TestWithParam<Kind>
{
protected:
    [[nodiscard]] static bool isFolder() { return GetParam() == Kind::folder; }
};

} // namespace

TEST_P(KillMatrix, ProtectKilledAfterEachChangeLeavesTheDocumentedState)
{
    const QStringList fileStates{
        QStringLiteral("nothing, data, nothing, none"),         QStringLiteral("nothing, data, container, none"),
        QStringLiteral("placeholder, data, container, none"),   QStringLiteral("placeholder, data, container, none"),
        QStringLiteral("placeholder, data, container, locked"), QStringLiteral("placeholder, data, container, locked")};
    QStringList states = fileStates;
    QStringList calls{QStringLiteral("moveItem"), QStringLiteral("writeFile"), QStringLiteral("writeFile"),
                      QStringLiteral("add"),      QStringLiteral("setArray"),  QStringLiteral("setArray")};
    if (isFolder()) {
        states.removeAt(3);
        calls.removeAt(3);
    }
    for (int change = 1; change <= states.size(); ++change) {
        const Scene scene(GetParam());
        scene.killAfter("protect", change);
        Scene::SecondStart second(scene);
        EXPECT_EQ(scene.state(second), states.at(change - 1)) << "killed after change " << change;
        EXPECT_EQ(second.hasCredential(scene.idInStorage()), !isFolder() && change >= 4)
            << "killed after change " << change;
        if (second.engine.count() == 1) {
            second.engine.unlock();
            EXPECT_EQ(scene.contentsOf(scene.place()), QStringLiteral("data"));
            second.engine.remove();
        }
    }
    const Scene scene(GetParam());
    EXPECT_EQ(scene.runToEnd("protect"), calls);
}

TEST_P(KillMatrix, LockKilledAfterEachChangeLeavesTheDocumentedState)
{
    const QStringList states{
        QStringLiteral("nothing, data, container, unlocked"), QStringLiteral("placeholder, data, container, unlocked"),
        QStringLiteral("placeholder, data, container, locked"), QStringLiteral("placeholder, data, container, locked")};
    for (int change = 1; change <= states.size(); ++change) {
        const Scene scene(GetParam());
        scene.runToEnd("protect");
        scene.runToEnd("unlock");
        scene.killAfter("lock", change);
        Scene::SecondStart second(scene);
        EXPECT_EQ(scene.state(second), states.at(change - 1)) << "killed after change " << change;
        if (change == 1) {
            second.engine.lock(); // finds no original, skips the move and writes the placeholder
        }
        if (change == 2) {
            // The record says unlocked although there is a private copy: unlocking finds the copy and moves it to its
            // place.
            second.engine.unlock();
            second.engine.lock();
        }
        EXPECT_EQ(scene.state(second), QStringLiteral("placeholder, data, container, locked"));
        second.engine.remove();
        EXPECT_EQ(scene.state(second), QStringLiteral("data, nothing, nothing, none"));
    }
    const Scene scene(GetParam());
    scene.runToEnd("protect");
    scene.runToEnd("unlock");
    EXPECT_EQ(scene.runToEnd("lock").join(QLatin1Char(' ')),
              QStringLiteral("moveItem writeFile changeArray changeArray"));
}

TEST_P(KillMatrix, UnlockKilledAfterEachChangeLeavesTheDocumentedState)
{
    const QStringList states{
        QStringLiteral("nothing, data, container, locked"), QStringLiteral("data, nothing, container, locked"),
        QStringLiteral("data, nothing, container, unlocked"), QStringLiteral("data, nothing, container, unlocked")};
    for (int change = 1; change <= states.size(); ++change) {
        const Scene scene(GetParam());
        scene.runToEnd("protect");
        scene.killAfter("unlock", change);
        Scene::SecondStart second(scene);
        EXPECT_EQ(scene.state(second), states.at(change - 1)) << "killed after change " << change;
        if (change == 2) {
            EXPECT_EQ(engineErrorOf([&] { second.engine.unlock(); }), QuillhavenError::itemNotFound);
            second.engine.lock(); // the data is treated as the original
            EXPECT_EQ(scene.state(second), QStringLiteral("placeholder, data, container, locked"));
        }
    }
    const Scene scene(GetParam());
    scene.runToEnd("protect");
    EXPECT_EQ(scene.runToEnd("unlock").join(QLatin1Char(' ')),
              QStringLiteral("removeItem moveItem changeArray changeArray"));
}

TEST_P(KillMatrix, RemovalKilledAfterEachChangeLeavesTheDocumentedState)
{
    QStringList states{
        QStringLiteral("data, nothing, container, locked"), QStringLiteral("data, nothing, nothing, locked"),
        QStringLiteral("data, nothing, nothing, locked"),   QStringLiteral("data, nothing, nothing, locked"),
        QStringLiteral("data, nothing, nothing, none"),     QStringLiteral("data, nothing, nothing, none")};
    if (isFolder()) {
        states.remove(2, 2);
    }
    for (int change = 1; change <= states.size(); ++change) {
        const Scene scene(GetParam());
        scene.runToEnd("protect");
        const QString id = scene.idInStorage();
        scene.killAfter("remove", change);
        Scene::SecondStart second(scene);
        EXPECT_EQ(second.hasCredential(id), !isFolder() && change < 3) << "killed after change " << change;
        EXPECT_EQ(scene.state(second), states.at(change - 1)) << "killed after change " << change;
        if (second.engine.count() == 1) {
            EXPECT_EQ(engineErrorOf([&] { second.engine.remove(); }), QuillhavenError::itemNotFound);
            EXPECT_EQ(scene.contentsOf(scene.place()), QStringLiteral("data"));
        }
    }
    const Scene scene(GetParam());
    scene.runToEnd("protect");
    EXPECT_EQ(scene.runToEnd("remove").join(QLatin1Char(' ')),
              isFolder() ? QStringLiteral("replaceItemAt removeItem changeArray changeArray")
                         : QStringLiteral("replaceItemAt removeItem remove remove changeArray changeArray"));
}

INSTANTIATE_TEST_SUITE_P(Items, KillMatrix, ::testing::Values(Kind::file, Kind::folder),
                         [](const auto &info) { return info.param == Kind::file ? "File" : "Folder"; });
