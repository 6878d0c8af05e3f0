// SPDX-License-Identifier: GPL-3.0-or-later

// A sync tool may leave a copy of a backup under a name that is not UTF-8.

#include "backup/CloudFolder.h"
#include "support/EngineHarness.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class UnnamableBackup : public ::testing::Test
{
protected:
    UnnamableBackup()
    {
        services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
        services.panels.answer = [this](const OpenPanelRequest &) { return folder; };
        QDir().mkpath(folder);
        EngineHarness engine(services);
        engine.masterPasswordEntry = QStringLiteral("Master12");
        cloud.make();
        cloud.setEnabled(true);
        for (const QString &name : {QStringLiteral("a.txt"), QStringLiteral("b.txt"), QStringLiteral("c.txt")}) {
            engine.protect(services.home.write(QStringLiteral("Desktop/") + name, name.toUtf8()));
        }
    }
    /// QTemporaryDir does not remove such names.
    ~UnnamableBackup() override
    {
        services.fileManager.removeItem(cloud.backups());
        services.fileManager.removeItem(folder);
    }
    UnnamableBackup(const UnnamableBackup &) = delete;
    UnnamableBackup &operator=(const UnnamableBackup &) = delete;

    /// Gives a file the name in the folder of the backups.
    void moveToName(const QString &path) const
    {
        const QByteArray target = QFile::encodeName(cloud.backups()) + "/caf\xe9 (conflict).backup";
        ASSERT_EQ(std::rename(QFile::encodeName(path).constData(), target.constData()), 0);
    }
    QStringList recover()
    {
        EngineHarness engine(services);
        QStringList paths = runTask(engine.manager.recoverFromiCloud(QStringLiteral("Master12")));
        paths.sort();
        return paths;
    }
    QString inFolder(const QString &name) const { return folder + QLatin1Char('/') + name; }

    TestPlatform services;
    const CloudFolder cloud{services};
    const QString folder = services.home.path(QStringLiteral("Recovered"));
    LogCapture log;
};

} // namespace

TEST_F(UnnamableBackup, ThatCannotBeDecryptedIsCopiedAndAllOthersAreRecovered)
{
    moveToName(services.home.write(QStringLiteral("tmp/bytes"), "no backup"));
    const QString name = QStringLiteral("caf") + QChar(0xdce9) + QStringLiteral(" (conflict)");
    const QStringList expected{inFolder(QStringLiteral("a.txt")), inFolder(QStringLiteral("b.txt")),
                               inFolder(QStringLiteral("c.txt")), inFolder(name)};
    EXPECT_EQ(recover(), expected);
    for (const QString &good : expected.first(3)) {
        EXPECT_EQ(TemporaryHome::read(good), QFileInfo(good).fileName().toUtf8());
    }
    EXPECT_EQ(services.fileManager.sizeOfItem(inFolder(name)), 9);
}

TEST_F(UnnamableBackup, OfAnItemIsRecoveredUnderTheNameOfTheItem)
{
    moveToName(cloud.backups() + QLatin1Char('/') + cloud.backupNames().first());
    const QStringList expected{inFolder(QStringLiteral("a.txt")), inFolder(QStringLiteral("b.txt")),
                               inFolder(QStringLiteral("c.txt"))};
    EXPECT_EQ(recover(), expected);
    for (const QString &good : expected) {
        EXPECT_EQ(TemporaryHome::read(good), QFileInfo(good).fileName().toUtf8());
    }
}
