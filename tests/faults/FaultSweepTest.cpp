// SPDX-License-Identifier: GPL-3.0-or-later

// Every system call that an operation makes for files, settings and credentials fails in turn, with each error. After
// any failure the item's bytes exist somewhere unless they were to be destroyed, no temporary file remains, the error
// names the file, and the operation can be repeated. A run tries only some of the cases: see support/Sample.h.

#include "faults/HomePlatform.h"
#include "faults/SmallDisk.h"
#include "support/Sample.h"

#include <QDirIterator>
#include <QProcess>

#include <cerrno>
#include <cstdio>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

constexpr std::array reasons{EIO, ENOSPC, EACCES, EXDEV, EINTR};

/// A home with one item, on which an operation runs once with a fault.
class Scene
{
public:
    explicit Scene(const OperationCase &subject) : operation(operationNamed(subject.operation))
    {
        if (subject.isAcross) {
            m_storage = std::make_unique<SmallDisk>(m_home.path(QStringLiteral(".local/share/quillhaven")), "4m");
            EXPECT_TRUE(m_storage->isMounted()) << "this test needs the right to mount a tmpfs: run it as root";
        }
        makeItem(m_home.path(), subject.isFolder);
        m_services = std::make_unique<HomePlatform>(m_home.path());
        m_engine = std::make_unique<EngineHarness>(m_services->platform());
        m_engine->masterPasswordEntry = operationMasterPassword;
        operation.prepare(scene());
    }

    [[nodiscard]] OperationScene scene() const { return {*m_engine, m_home.path()}; }

    /// Performs the operation. Returns the error message, or nothing.
    [[nodiscard]] QString attempt() const
    {
        try {
            operation.perform(scene());
        } catch (const std::exception &error) {
            return localizedDescription(error);
        }
        return {};
    }

    [[nodiscard]] int wholeCopies() const { return wholeCopiesBelow(m_home.path()); }

    [[nodiscard]] QStringList leftovers() const
    {
        QStringList found;
        QDirIterator each(m_home.path(), {QStringLiteral(".quillhaven-*")},
                          QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (each.hasNext()) {
            found.append(each.next());
        }
        const QDir temporary(m_home.directories().temporary);
        return found + temporary.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    const Operation &operation;

private:
    TemporaryHome m_home;
    LogCapture m_log;
    std::unique_ptr<SmallDisk> m_storage;
    std::unique_ptr<HomePlatform> m_services;
    std::unique_ptr<EngineHarness> m_engine;
};

/// Some messages name no file: those of a failed check of a file or of Documents, and those of the credential store.
bool namesTheProblem(const QString &sentence)
{
    return sentence.contains(QLatin1Char('"')) || sentence.contains(QStringLiteral("item")) ||
           sentence.startsWith(QStringLiteral("The selected file or folder could not be found.")) ||
           sentence.startsWith(QStringLiteral("Could not restore file to original location.")) ||
           sentence.startsWith(QStringLiteral("Cannot write to Documents folder.")) ||
           sentence.startsWith(QStringLiteral("Failed to save to keychain: ")) ||
           sentence.startsWith(QStringLiteral("Failed to delete from keychain: "));
}

class FaultSweep : public ::testing::TestWithParam<OperationCase>
{
protected:
    ~FaultSweep() override { system_call_faults::disarm(); }

    [[nodiscard]] static int callsOfACleanRun()
    {
        const Scene scene(GetParam());
        system_call_faults::countOnly();
        EXPECT_EQ(scene.attempt().toStdString(), "");
        system_call_faults::disarm();
        return system_call_faults::callCount();
    }

    static void runWithFault(int n, int reason)
    {
        const Scene scene(GetParam());
        system_call_faults::failCall(n, reason);
        const QString sentence = scene.attempt();
        system_call_faults::disarm();

        const std::string where = system_call_faults::failedCall() + std::string(", call ") + std::to_string(n) + ", " +
                                  strerrorname_np(reason) + ": " + sentence.toStdString();
        if (!scene.operation.destroysData) {
            EXPECT_GE(scene.wholeCopies(), 1) << "the data was lost after " << where;
        }
        EXPECT_EQ(scene.leftovers().join(QLatin1Char(' ')).toStdString(), "") << "files remain after " << where;
        if (!sentence.isEmpty()) {
            EXPECT_TRUE(namesTheProblem(sentence)) << where;
        }
        repeat(scene, where);
    }

    static void repeat(const Scene &scene, const std::string &where)
    {
        if (scene.operation.isDone(scene.scene())) {
            return;
        }
        const QString again = scene.attempt();
        const bool isTakenCopy = scene.operation.name == QStringLiteral("recover") && !again.isEmpty();
        EXPECT_TRUE(again.isEmpty() || isTakenCopy) << "second attempt after " << where << ": " << again.toStdString();
        if (scene.operation.destroysData) {
            EXPECT_EQ(scene.wholeCopies(), 0) << where;
        } else {
            EXPECT_GE(scene.wholeCopies(), 1) << where;
        }
    }
};

} // namespace

TEST_P(FaultSweep, EveryCallFailsWithEveryError)
{
    const int calls = callsOfACleanRun();
    ASSERT_GT(calls, 0);
    Sample sample;
    int tried = 0;
    for (const int reason : reasons) {
        for (int n = 1; n <= calls && !HasFailure(); ++n) {
            if (sample.isDrawn()) {
                runWithFault(n, reason);
                ++tried;
            }
        }
    }
    std::printf("%d calls, %d of %zu cases\n", calls, tried, static_cast<size_t>(calls) * reasons.size());
}

INSTANTIATE_TEST_SUITE_P(Operations, FaultSweep, ::testing::ValuesIn(everyOperationCase()),
                         [](const auto &info) { return info.param.name(); });

/// The symbols that the file code imports from the C library, according to the linker.
static QStringList importsOfTheFileCode()
{
    QProcess nm;
    nm.start(QStringLiteral(NM),
             {QStringLiteral("--undefined-only"), QStringLiteral("--format=just-symbols"), QStringLiteral(FILE_CODE)});
    EXPECT_TRUE(nm.waitForFinished());
    QStringList names = QString::fromLatin1(nm.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    names.removeIf([](const QString &name) {
        return name.startsWith(QLatin1Char('_')) || name.startsWith(QStringLiteral("qt_")) ||
               name.contains(QLatin1Char(':'));
    });
    names.removeDuplicates();
    return names;
}

TEST(FaultSweepCoverage, EveryCallOfTheFileCodeCanFailInTheSweepOrIsHarmless)
{
    const QStringList harmless{
        // They cannot fail, or a failure has no effect.
        QStringLiteral("closedir"), QStringLiteral("fts_close"), QStringLiteral("geteuid"), QStringLiteral("getpid"),
        QStringLiteral("kill"), QStringLiteral("madvise"), QStringLiteral("munmap"), QStringLiteral("posix_fadvise"),
        QStringLiteral("posix_spawn_file_actions_adddup2"), QStringLiteral("posix_spawn_file_actions_addfchdir_np"),
        QStringLiteral("posix_spawn_file_actions_addopen"), QStringLiteral("posix_spawn_file_actions_destroy"),
        QStringLiteral("posix_spawn_file_actions_init"), QStringLiteral("sync"),
        // The start of the engine corrects the mode of a folder, and a removal opens a folder that is read-only.
        QStringLiteral("fchmod"),
        // The trash, which is used only if a foreign file has the name of a container.
        QStringLiteral("g_error_free"), QStringLiteral("g_error_matches"), QStringLiteral("g_file_new_for_path"),
        QStringLiteral("g_file_trash"), QStringLiteral("g_io_error_quark"), QStringLiteral("g_object_unref"),
        // Not part of an operation: the start of the program looks up the user.
        QStringLiteral("getpwuid"),
        // Nor is this: the user chooses the folder for the backups, which is a link.
        QStringLiteral("symlink"),
        // The memory of a buffer, which the engine allocates before it reads.
        QStringLiteral("mmap"),
        // These are not system calls.
        QStringLiteral("free"), QStringLiteral("memchr"), QStringLiteral("memcmp"), QStringLiteral("memcpy"),
        QStringLiteral("memmove"), QStringLiteral("memset"), QStringLiteral("strcmp"),
        QStringLiteral("strerrordesc_np"), QStringLiteral("strlen")};
    const QStringList imports = importsOfTheFileCode();
    ASSERT_TRUE(imports.contains(QStringLiteral("renameat2"))) << imports.join(QLatin1Char(' ')).toStdString();
    const QStringList covered = system_call_faults::coveredCalls();
    for (const QString &name : imports) {
        EXPECT_TRUE(covered.contains(name) || harmless.contains(name))
            << name.toStdString() << " is called by the file code and never made to fail";
    }
}

TEST(FaultSweepCoverage, EveryCallThatCanFailIsMadeByAnOperation)
{
    for (const OperationCase &each : everyOperationCase()) {
        const Scene scene(each);
        system_call_faults::countOnly();
        EXPECT_EQ(scene.attempt().toStdString(), "") << each.name();
        system_call_faults::disarm();
    }
    // Called only by fallbacks for file systems and kernels without the usual call, and by SQLite when it opens a
    // domain, which happens at the start of the engine.
    const QStringList fallbacks{QStringLiteral("fdatasync"), QStringLiteral("link"), QStringLiteral("pwrite"),
                                QStringLiteral("rename")};
    QStringList expected = system_call_faults::coveredCalls();
    expected.removeIf([&fallbacks](const QString &name) { return fallbacks.contains(name); });
    QStringList seen = system_call_faults::seenCalls();
    seen.removeIf([&fallbacks](const QString &name) { return fallbacks.contains(name); });
    EXPECT_EQ(seen.join(QLatin1Char(' ')).toStdString(), expected.join(QLatin1Char(' ')).toStdString());
}
