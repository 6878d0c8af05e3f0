// SPDX-License-Identifier: GPL-3.0-or-later

#include "faults/Operations.h"

#include "engine/PlaceholderFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <sys/xattr.h>

#include <algorithm>

namespace quillhaven::test {

namespace {

using Scene = OperationScene;

const auto quiet = [](const QString &, double) {};

bool isGone(const Scene &scene)
{
    return scene.engine.count() == 0;
}

bool isLocked(const Scene &scene)
{
    return scene.engine.count() > 0 && !scene.engine.item().isMounted;
}

bool isUnlocked(const Scene &scene)
{
    return scene.engine.count() > 0 && scene.engine.item().isMounted;
}

/// A protection that was killed after its move has no record from which it could be continued.
bool isMovedAway(const Scene &scene)
{
    return scene.engine.count() > 0 || !TemporaryHome::exists(scene.place()) ||
           holdsPlaceholder(scene.engine.platform.fileManager, scene.place());
}

void makeNothing(const Scene & /*scene*/) {}

void makeLocked(const Scene &scene)
{
    scene.engine.protect(scene.place());
}

void makeUnlocked(const Scene &scene)
{
    makeLocked(scene);
    scene.engine.unlock();
}

void makeReadyForBackup(const Scene &scene)
{
    makeLocked(scene);
    scene.engine.masterPasswordEntry = operationMasterPassword;
    runTask(scene.engine.masterPassword.setMasterPassword(operationMasterPassword));
    scene.engine.platform.defaults.standard().setBool(QStringLiteral("enableiCloudBackup"), true);
    QDir().mkpath(scene.home + QStringLiteral("/.local/share/cloud/iCloud~com~tarnwick~quillhaven"));
}

void backUp(const Scene &scene)
{
    runTask(scene.engine.manager.backupToiCloud(scene.engine.item().id));
}

void makeBackedUp(const Scene &scene)
{
    makeReadyForBackup(scene);
    backUp(scene);
    QDir().mkpath(scene.recoveryFolder());
}

void makeBackedUpOnce(const Scene &scene)
{
    makeReadyForBackup(scene);
    backUp(scene); // The operation replaces it.
}

bool isNeverDone(const Scene & /*scene*/)
{
    return false;
}

std::vector<Operation> makeOperations()
{
    return {
        {QStringLiteral("protect"), makeNothing, makeLocked, isMovedAway},
        {QStringLiteral("lock"), makeUnlocked, [](const Scene &scene) { scene.engine.lock(); }, isLocked},
        {QStringLiteral("unlock"), makeLocked, [](const Scene &scene) { scene.engine.unlock(); }, isUnlocked},
        {QStringLiteral("remove"), makeLocked, [](const Scene &scene) { scene.engine.remove(); }, isGone},
        {QStringLiteral("bulkUnlock"), makeLocked,
         [](const Scene &scene) {
             auto &manager = scene.engine.manager;
             runTask(manager.bulkUnlockItems(manager.protectedItems(), quiet));
         },
         isUnlocked},
        {QStringLiteral("bulkLock"), makeUnlocked,
         [](const Scene &scene) {
             auto &manager = scene.engine.manager;
             runTask(manager.bulkLockItems(manager.protectedItems(), quiet));
         },
         isLocked},
        {.name = QStringLiteral("duplicate"),
         .prepare = makeLocked,
         .perform =
             [](const Scene &scene) {
                 runTask(scene.engine.manager.duplicateAsEncryptedCopy(scene.engine.item(), quiet));
             },
         .isDone = [](const Scene &scene) { return scene.engine.count() != 1; },
         .worksOnFolders = false},
        {.name = QStringLiteral("shredItem"),
         .prepare = makeLocked,
         .perform =
             [](const Scene &scene) { runTask(scene.engine.manager.shredProtectedItem(scene.engine.item(), quiet)); },
         .isDone = isGone,
         .destroysData = true},
        {.name = QStringLiteral("shredPlain"),
         .prepare = makeNothing,
         .perform =
             [](const Scene &scene) { runTask(scene.engine.manager.shredUnprotectedItems({scene.place()}, quiet)); },
         .isDone = [](const Scene &scene) { return !TemporaryHome::exists(scene.place()); },
         .destroysData = true},
        {QStringLiteral("backup"), makeBackedUpOnce, backUp, isNeverDone},
        {QStringLiteral("recover"), makeBackedUp,
         [](const Scene &scene) { (void)runTask(scene.engine.manager.recoverFromiCloud(operationMasterPassword)); },
         isNeverDone},
    };
}

} // namespace

std::optional<QString> OperationScene::answer(const QString &home, const OpenPanelRequest &request)
{
    return request.preselected.isEmpty() ? home + QStringLiteral("/Recovered")
                                         : request.directory + QLatin1Char('/') + request.preselected;
}

const QByteArray &itemBytes()
{
    static const QByteArray bytes = QByteArray("these are the bytes that must not be lost").leftJustified(8192, '.');
    return bytes;
}

void makeItem(const QString &home, bool isFolder)
{
    const QString place = home + QStringLiteral("/Desktop/item");
    const auto write = [](const QString &path, const QByteArray &bytes) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()) << path.toStdString();
    };
    if (isFolder) {
        QDir().mkpath(place);
        EXPECT_TRUE(QFile::link(QStringLiteral("inner.txt"), place + QStringLiteral("/link")));
    }
    write(isFolder ? place + QStringLiteral("/inner.txt") : place, itemBytes());
    // An access list: the owner, user 0, the group, the mask and others. See <linux/posix_acl_xattr.h>.
    const QByteArray list = QByteArray::fromHex("02000000"
                                                "01000600ffffffff"
                                                "0200040000000000"
                                                "04000400ffffffff"
                                                "10000400ffffffff"
                                                "20000000ffffffff");
    EXPECT_EQ(setxattr(QFile::encodeName(place).constData(), "system.posix_acl_access", list.constData(),
                       static_cast<size_t>(list.size()), 0),
              0);
}

int wholeCopiesBelow(const QString &folder)
{
    int count = 0;
    QDirIterator each(folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (each.hasNext()) {
        count += static_cast<int>(TemporaryHome::read(each.next()) == itemBytes());
    }
    return count;
}

const std::vector<Operation> &allOperations()
{
    static const std::vector<Operation> operations = makeOperations();
    return operations;
}

const Operation &operationNamed(const QString &name)
{
    const auto found = std::ranges::find(allOperations(), name, &Operation::name);
    if (found == allOperations().end()) {
        throw std::runtime_error("no operation is called " + name.toStdString());
    }
    return *found;
}

std::string OperationCase::name() const
{
    return operation.toStdString() + (isFolder ? "Folder" : "File") + (isAcross ? "AcrossFileSystems" : "");
}

std::vector<OperationCase> everyOperationCase()
{
    std::vector<OperationCase> cases;
    for (const Operation &operation : allOperations()) {
        for (const bool isFolder : {false, true}) {
            for (const bool isAcross : {false, true}) {
                if (!isFolder || operation.worksOnFolders) {
                    cases.push_back({operation.name, isFolder, isAcross});
                }
            }
        }
    }
    return cases;
}

} // namespace quillhaven::test
