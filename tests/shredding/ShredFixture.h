// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/WorkInFlight.h"
#include "catalogue/QuillhavenError.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordManager.h"
#include "platform/linux/files/FileFixture.h"
#include "shredding/QuillhavenShredder.h"
#include "support/FileManagerDecorator.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"

#include <QFileInfo>
#include <QMutex>
#include <QRegularExpression>
#include <QThread>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string_view>

namespace quillhaven::test {

/// Real files, with a record of all calls of a shred, and hooks to check or fail before and after each call.
class WatchedFiles : public FileManagerDecorator
{
public:
    using FileManagerDecorator::FileManagerDecorator;

    /// The calls in order: "open a.txt", "seek 0", "write 65536", "flush", "close", "move a.txt to (UUID)". Checks
    /// ("size", "list") are omitted.
    mutable QStringList calls;
    /// Receive the call's first word and its path, on the worker's thread. An exception becomes the call's error.
    std::function<void(const QString &call, const QString &path)> before;
    std::function<void(const QString &call, const QString &path)> after;

protected:
    void around(const FileCall &call, const std::function<void()> &next) const override
    {
        static const std::map<std::string_view, QString> words{
            {"sizeOfItem", QStringLiteral("size")},         {"regularFilesBelow", QStringLiteral("list")},
            {"openForOverwriting", QStringLiteral("open")}, {"seek", QStringLiteral("seek")},
            {"writeThrough", QStringLiteral("write")},      {"synchronizeFile", QStringLiteral("flush")},
            {"closeFile", QStringLiteral("close")},         {"renameItem", QStringLiteral("move")},
            {"removeItem", QStringLiteral("remove")},       {"sync", QStringLiteral("sync")}};
        const auto word = words.find(call.name);
        if (word == words.end()) {
            next();
            return;
        }
        note(word->second, call);
        if (before) {
            before(word->second, call.path);
        }
        next();
        if (after) {
            after(word->second, call.path);
        }
    }

private:
    static QString shownName(const QString &path)
    {
        static const QRegularExpression uuid(
            QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"));
        const QString name = QFileInfo(path).fileName();
        return uuid.match(name).hasMatch() ? QStringLiteral("(UUID)") : name;
    }

    void note(const QString &word, const FileCall &call) const
    {
        QString line = word;
        if (word == QStringLiteral("size") || word == QStringLiteral("list")) {
            return;
        }
        if (word == QStringLiteral("move")) {
            line += QLatin1Char(' ') + shownName(call.path) + QStringLiteral(" to ") + shownName(call.detail);
        } else if (!call.detail.isEmpty()) {
            line += QLatin1Char(' ') + call.detail;
        } else if (word == QStringLiteral("open") || word == QStringLiteral("remove")) {
            line += QLatin1Char(' ') + shownName(call.path);
        }
        const QMutexLocker lock(&m_mutex); // two runs may work concurrently
        calls.append(line);
    }

    mutable QMutex m_mutex;
};

/// A shredder with real files in a temporary home, and a user who answers the master password dialog.
class ShredTest : public ::testing::Test
{
protected:
    ShredTest() : shredder(platform, masterPassword)
    {
        spinUntil([] { return WorkInFlight::count() == 0; });
        QObject::connect(
            &dialog, &MasterPasswordDialogManager::asked, &shredder,
            [this] {
                if (dialog.isPresented() && !dialog.isAuthenticating()) {
                    ++prompts;
                    masterPasswordEntry ? dialog.authenticate(*masterPasswordEntry) : dialog.cancel();
                }
            },
            Qt::QueuedConnection);
    }

    void setMasterPassword(const QString &password)
    {
        runTask(masterPassword.setMasterPassword(password));
        masterPassword.endSession();
        masterPasswordEntry = password;
    }
    void shred(const QString &path) { runTask(shredder.shredItem(path, recorder())); }
    void bulkShred(const QStringList &paths) { runTask(shredder.bulkShredItems(paths, recorder())); }
    /// The callback of every run: it records its arguments and checks the thread.
    ProgressCallback recorder()
    {
        return [this](const QString &status, double progress) {
            EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
            EXPECT_EQ(shredder.shredProgress(), 0);
            report.append(QStringLiteral("%1 @ %2").arg(status, QString::number(progress, 'f', 4)));
            operations.append(shredder.currentOperation());
            flags.append(shredder.isShredding());
            if (onReport) {
                onReport(status);
            }
        };
    }
    [[nodiscard]] QString lines() const { return report.join(QLatin1Char('\n')); }

    /// The text of the error with which the call fails.
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

    QString write(const QString &name, const QByteArray &bytes)
    {
        return services.home.write(QStringLiteral("Desktop/") + name, bytes);
    }
    [[nodiscard]] QString desktop(const QString &name = {}) const
    {
        const QString folder = services.home.path(QStringLiteral("Desktop"));
        return name.isEmpty() ? folder : folder + QLatin1Char('/') + name;
    }
    /// The names in the folder, sorted.
    [[nodiscard]] QStringList remaining(const QString &folder) const
    {
        QStringList names = services.fileManager.contentsOfDirectory(folder);
        names.sort();
        return names;
    }
    [[nodiscard]] QStringList remaining() const { return remaining(desktop()); }
    static QByteArray read(const QString &path) { return TemporaryHome::read(path); }
    static QByteArray bytesOf(const QString &path) { return QFile::encodeName(path); }
    /// Allows a normal user to enter the home and to change the files on the desktop.
    void openToAll() const
    {
        EXPECT_EQ(chmod(bytesOf(services.home.path()).constData(), 0755), 0);
        EXPECT_EQ(chmod(bytesOf(desktop()).constData(), 0777), 0);
    }

    TestPlatform services;
    WatchedFiles files{services.fileManager};
    Platform platform = services.platform(files);
    MasterPasswordDialogManager dialog;
    MasterPasswordManager masterPassword{platform, dialog};
    QuillhavenShredder shredder;
    /// What the user types into the dialog; absent means Cancel.
    std::optional<QString> masterPasswordEntry;
    int prompts = 0;

    QStringList report;     ///< "status @ progress" with four digits
    QStringList operations; ///< the current operation at each report
    QList<bool> flags;      ///< whether the shredder was busy then
    std::function<void(const QString &status)> onReport;
};

/// The same, with a folder to shred.
class ShredDirectoryTest : public ShredTest
{
protected:
    ShredDirectoryTest() { QDir().mkpath(folder); }

    QString inFolder(const QString &name, const QByteArray &bytes = "secret")
    {
        return write(QStringLiteral("folder/") + name, bytes);
    }
    /// Creates a second hard link to the file, outside the folder, which shows what happens to its bytes.
    QString witness(const QByteArray &path)
    {
        const QString name = desktop(QStringLiteral("witness%1").arg(++m_witnesses));
        EXPECT_EQ(link(path.constData(), bytesOf(name).constData()), 0);
        return name;
    }
    QString witness(const QString &path) { return witness(bytesOf(path)); }
    static void expectOverwritten(const QString &path, qsizetype size)
    {
        const QByteArray bytes = read(path);
        EXPECT_TRUE(bytes == QByteArray(size, bytes.isEmpty() ? '\0' : bytes.front())) << qUtf8Printable(path);
    }
    const QString folder = desktop(QStringLiteral("folder"));

private:
    int m_witnesses = 0;
};

} // namespace quillhaven::test
