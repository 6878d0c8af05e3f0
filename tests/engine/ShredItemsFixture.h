// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/PlaceholderFile.h"
#include "support/CallHooks.h"
#include "support/EngineHarness.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace quillhaven::test {

/// An engine with real files, whose operations can be made to fail, and a record of what a shred reports.
class ShredItemsTest : public ::testing::Test
{
protected:
    /// Sets a master password, which the user types at every prompt.
    void setMasterPassword()
    {
        services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
        masterPasswordEntry = QStringLiteral("Master12");
    }
    /// The engine is created at its first use, so that a test can prepare its files before.
    EngineHarness &engine()
    {
        if (!m_engine) {
            m_engine.emplace(services, files);
            m_engine->masterPasswordEntry = masterPasswordEntry;
        }
        return *m_engine;
    }

    /// Protects a new file or folder, and returns its record.
    ProtectedItem lockedFile(const QString &name = QStringLiteral("a.txt"), const QByteArray &bytes = "secret")
    {
        engine().protect(services.home.write(QStringLiteral("Desktop/") + name, bytes));
        return last();
    }
    ProtectedItem unlockedFile(const QString &name = QStringLiteral("a.txt"), const QByteArray &bytes = "secret")
    {
        lockedFile(name, bytes);
        engine().unlock(engine().count() - 1);
        resetCounts();
        return last();
    }
    ProtectedItem lockedFolder()
    {
        services.home.write(QStringLiteral("Desktop/folder/inner"), "secret");
        engine().protect(services.home.path(QStringLiteral("Desktop/folder")));
        return last();
    }
    ProtectedItem unlockedFolder()
    {
        lockedFolder();
        engine().unlock(engine().count() - 1);
        resetCounts();
        return last();
    }
    [[nodiscard]] ProtectedItem last() { return engine().item(engine().count() - 1); }
    void resetCounts()
    {
        engine().masterPrompts = 0;
        engine().passwordPrompts = 0;
        services.panels.placeRequests.clear();
    }

    /// Ends the busy state in which protecting an item leaves the engine.
    void becomeIdle()
    {
        shredPaths({});
        report.clear();
        flags.clear();
        spinOnce();
        ASSERT_FALSE(engine().manager.isProcessing());
    }
    void shred(const ProtectedItem &item)
    {
        resetCounts();
        runTask(engine().manager.shredProtectedItem(item, recorder()));
    }
    void bulkShred(const QList<ProtectedItem> &items)
    {
        resetCounts();
        runTask(engine().manager.bulkShredProtectedItems(items, recorder()));
    }
    void shredPaths(const QStringList &paths)
    {
        resetCounts();
        runTask(engine().manager.shredUnprotectedItems(paths, recorder()));
    }
    ProgressCallback recorder()
    {
        return [this](const QString &status, double progress) {
            report.append(QStringLiteral("%1 @ %2").arg(status, QString::number(progress, 'f', 4)));
            flags.append(engine().manager.isProcessing());
            if (onReport) {
                onReport(status);
            }
        };
    }
    /// The reported lines without those of the shredder's own steps.
    [[nodiscard]] QString stages() const
    {
        static const QRegularExpression own(QStringLiteral("^(Analyzing|Pass|Removing|File|Directory|Found)"));
        QStringList lines;
        for (const QString &line : report) {
            if (!own.match(line).hasMatch()) {
                lines.append(line);
            }
        }
        return lines.join(QLatin1Char('\n'));
    }
    [[nodiscard]] QString lines() const { return report.join(QLatin1Char('\n')); }

    template <typename Call>
    static QString failureOf(Call call)
    {
        try {
            call();
        } catch (...) {
            return localizedDescription(std::current_exception());
        }
        return QStringLiteral("no error");
    }
    static bool exists(const QString &path) { return TemporaryHome::exists(path); }
    static QByteArray read(const QString &path) { return TemporaryHome::read(path); }
    /// Expects that nothing of the item is left on the disk, in the store and in the list, also after a restart.
    void expectGone(const ProtectedItem &item)
    {
        EXPECT_FALSE(exists(item.originalPath));
        EXPECT_FALSE(exists(item.originalBackupPath));
        EXPECT_FALSE(exists(item.containerPath));
        EXPECT_FALSE(services.credentials.entries.contains(item.id));
        expectUnlisted(item);
    }
    void expectUnlisted(const ProtectedItem &item)
    {
        const EngineHarness restarted(services);
        for (const EngineHarness *run : {&std::as_const(engine()), &restarted}) {
            for (const ProtectedItem &listed : run->manager.protectedItems()) {
                EXPECT_NE(listed.id, item.id);
            }
        }
    }

    TestPlatform services;
    SeamHooks hooks;
    HookedFileManager files{services.fileManager, hooks};
    LogCapture log;
    std::optional<QString> masterPasswordEntry;

    QStringList report; ///< "status @ progress" with four digits
    QList<bool> flags;  ///< whether the engine was busy at each report
    std::function<void(const QString &status)> onReport;

private:
    std::optional<EngineHarness> m_engine;
};

} // namespace quillhaven::test
