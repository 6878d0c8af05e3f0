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

namespace quillhaven::testing {

/// Real files, with a list of all that a shred does to them, and a way to look or to fail before and after each call.
class WatchedFiles : public FileManagerDecorator
{
public:
    using FileManagerDecorator::FileManagerDecorator;

    [[nodiscard]] int64_t sizeOfItem(const QString &path) const override
    {
        if (before) {
            before(QStringLiteral("size"), path);
        }
        return FileManagerDecorator::sizeOfItem(path);
    }
    [[nodiscard]] QList<FileEntry> regularFilesBelow(const QString &folder) const override
    {
        auto entries = FileManagerDecorator::regularFilesBelow(folder);
        if (after) {
            after(QStringLiteral("list"), folder);
        }
        return entries;
    }
    [[nodiscard]] std::unique_ptr<FileHandle> openForOverwriting(const QString &path) override
    {
        std::unique_ptr<FileHandle> handle;
        around(QStringLiteral("open"), path, shownName(path),
               [&] { handle = FileManagerDecorator::openForOverwriting(path); });
        return std::make_unique<Handle>(std::move(handle), path, *this);
    }
    void renameItem(const QString &source, const QString &target) override
    {
        around(QStringLiteral("move"), source, shownName(source) + QStringLiteral(" to ") + shownName(target),
               [&] { FileManagerDecorator::renameItem(source, target); });
    }
    void removeItem(const QString &path) override
    {
        around(QStringLiteral("remove"), path, shownName(path), [&] { FileManagerDecorator::removeItem(path); });
    }
    void sync() override
    {
        around(QStringLiteral("sync"), {}, {}, [&] { FileManagerDecorator::sync(); });
    }

    /// What was called, in order: "open a.txt", "seek 0", "write 65536", "flush", "close", "move a.txt to (UUID)".
    QStringList calls;
    /// Called with the first word of the call and its path, on the worker's thread. What it throws replaces the call.
    std::function<void(const QString &call, const QString &path)> before;
    std::function<void(const QString &call, const QString &path)> after;

private:
    class Handle : public FileHandle
    {
    public:
        Handle(std::unique_ptr<FileHandle> next, const QString &path, WatchedFiles &files)
            : m_next(std::move(next)), m_path(path), m_files(files)
        {
        }
        void seek(uint64_t offset) override
        {
            m_files.around(QStringLiteral("seek"), m_path, QString::number(offset), [&] { m_next->seek(offset); });
        }
        void writeThrough(std::span<const std::byte> bytes) override
        {
            m_files.around(QStringLiteral("write"), m_path, QString::number(bytes.size()),
                           [&] { m_next->writeThrough(bytes); });
        }
        void synchronizeFile() override
        {
            m_files.around(QStringLiteral("flush"), m_path, {}, [&] { m_next->synchronizeFile(); });
        }
        void closeFile() override
        {
            m_files.around(QStringLiteral("close"), m_path, {}, [&] { m_next->closeFile(); });
        }

    private:
        std::unique_ptr<FileHandle> m_next;
        QString m_path;
        WatchedFiles &m_files;
    };

    static QString shownName(const QString &path)
    {
        static const QRegularExpression uuid(
            QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"));
        const QString name = QFileInfo(path).fileName();
        return uuid.match(name).hasMatch() ? QStringLiteral("(UUID)") : name;
    }

    void around(const QString &call, const QString &path, const QString &detail, const std::function<void()> &action)
    {
        {
            const QMutexLocker lock(&m_mutex); // two runs may work at once
            calls.append(detail.isEmpty() ? call : call + QLatin1Char(' ') + detail);
        }
        if (before) {
            before(call, path);
        }
        action();
        if (after) {
            after(call, path);
        }
    }

    QMutex m_mutex;
};

/// A shredder over real files in a temporary home, and a user who answers the master password dialog.
class ShredTest : public ::testing::Test
{
protected:
    ShredTest() : shredder(platform, masterPassword)
    {
        spinUntil([] { return WorkInFlight::count() == 0; });
        QObject::connect(
            &dialog, &MasterPasswordDialogManager::changed, &shredder,
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
    /// The callback of every run: it records what it is called with and checks the thread.
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

    /// The text of the error that the call fails with.
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
    /// Lets a plain user into the home and change what lies on the desktop.
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
    QStringList operations; ///< the current operation at each of them
    QList<bool> flags;      ///< whether a shred was said to run then
    std::function<void(const QString &status)> onReport;
};

/// The same with a folder to shred.
class ShredDirectoryTest : public ShredTest
{
protected:
    ShredDirectoryTest() { QDir().mkpath(folder); }

    QString inFolder(const QString &name, const QByteArray &bytes = "secret")
    {
        return write(QStringLiteral("folder/") + name, bytes);
    }
    /// A second hard link to the file, outside the folder, which shows what happens to its bytes.
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

} // namespace quillhaven::testing
