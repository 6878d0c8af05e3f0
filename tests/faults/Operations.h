// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/EngineHarness.h"

#include <QDir>
#include <QFileInfo>

namespace quillhaven::testing {

/// The operations of the engine on one item below a home, by name, each with what has to stand before it.
class Operations
{
public:
    Operations(EngineHarness &engine, const QString &home) : m_engine(engine), m_home(home) {}

    [[nodiscard]] static QStringList all()
    {
        return {QStringLiteral("protect"),   QStringLiteral("lock"),       QStringLiteral("unlock"),
                QStringLiteral("remove"),    QStringLiteral("bulkUnlock"), QStringLiteral("bulkLock"),
                QStringLiteral("duplicate"), QStringLiteral("shredItem"),  QStringLiteral("shredPlain"),
                QStringLiteral("backup"),    QStringLiteral("recover")};
    }

    [[nodiscard]] QString place() const { return m_home + QStringLiteral("/Desktop/item"); }
    [[nodiscard]] QString recoveryFolder() const { return m_home + QStringLiteral("/Recovered"); }

    /// Brings about what the operation needs.
    void prepare(const QString &operation)
    {
        if (operation == QStringLiteral("protect") || operation == QStringLiteral("shredPlain")) {
            return;
        }
        m_engine.protect(place());
        if (operation == QStringLiteral("lock") || operation == QStringLiteral("bulkLock")) {
            m_engine.unlock();
        } else if (operation == QStringLiteral("backup") || operation == QStringLiteral("recover")) {
            prepareBackup();
        }
        if (operation == QStringLiteral("recover")) {
            perform(QStringLiteral("backup"));
            QDir().mkpath(recoveryFolder());
        }
    }

    /// What it threw goes to the caller.
    void perform(const QString &operation)
    {
        const auto quiet = [](const QString &, double) {};
        if (operation == QStringLiteral("protect")) {
            m_engine.protect(place());
        } else if (operation == QStringLiteral("lock")) {
            m_engine.lock();
        } else if (operation == QStringLiteral("unlock")) {
            m_engine.unlock();
        } else if (operation == QStringLiteral("remove")) {
            m_engine.remove();
        } else if (operation == QStringLiteral("bulkUnlock")) {
            runTask(m_engine.manager.bulkUnlockItems(m_engine.manager.protectedItems(), quiet));
        } else if (operation == QStringLiteral("bulkLock")) {
            runTask(m_engine.manager.bulkLockItems(m_engine.manager.protectedItems(), quiet));
        } else if (operation == QStringLiteral("duplicate")) {
            runTask(m_engine.manager.duplicateAsEncryptedCopy(m_engine.item(), quiet));
        } else if (operation == QStringLiteral("shredItem")) {
            runTask(m_engine.manager.shredProtectedItem(m_engine.item(), quiet));
        } else if (operation == QStringLiteral("shredPlain")) {
            runTask(m_engine.manager.shredUnprotectedItems({place()}, quiet));
        } else if (operation == QStringLiteral("backup")) {
            runTask(m_engine.manager.backupToiCloud(m_engine.item().id));
        } else if (operation == QStringLiteral("recover")) {
            (void)runTask(m_engine.manager.recoverFromiCloud(masterPassword));
        } else {
            ADD_FAILURE() << "unknown operation " << operation.toStdString();
        }
    }

    static inline const QString masterPassword = QStringLiteral("Masterkey9");

private:
    void prepareBackup()
    {
        m_engine.masterPasswordEntry = masterPassword;
        runTask(m_engine.masterPassword.setMasterPassword(masterPassword));
        m_engine.platform.defaults.standard().setBool(QStringLiteral("enableiCloudBackup"), true);
        QDir().mkpath(m_home + QStringLiteral("/.local/share/cloud/iCloud~com~tarnwick~quillhaven"));
    }

    EngineHarness &m_engine;
    QString m_home;
};

} // namespace quillhaven::testing
