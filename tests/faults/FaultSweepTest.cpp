// SPDX-License-Identifier: GPL-3.0-or-later

// Every file system call of every operation fails in turn, for every reason. Whatever fails, the item's bytes stand
// somewhere unless they were to be destroyed, nothing temporary stays, the error names what it was about, and the
// operation can be done again.

#include "faults/Operations.h"
#include "faults/SmallDisk.h"
#include "faults/SystemCallFaults.h"

#include <QDirIterator>

#include <cerrno>
#include <cstdio>

using namespace quillhaven;
using namespace quillhaven::testing;

namespace {

const QByteArray mine("these are the bytes that nobody may lose");
constexpr std::array reasons{EIO, ENOSPC, EACCES, EXDEV, EINTR};

enum class Kind { File, Folder };

/// One home with one item, on which an operation runs once with a fault.
class Scene
{
public:
    Scene(Kind kind, bool isAcross) : m_files(services.fileManager)
    {
        if (isAcross) {
            storage = std::make_unique<SmallDisk>(services.home.path(QStringLiteral(".local/share/quillhaven")), "4m");
            EXPECT_TRUE(storage->isMounted()) << "this test needs the right to mount a tmpfs: run it as root";
        }
        services.home.write(
            QStringLiteral("Desktop/item") + (kind == Kind::Folder ? QStringLiteral("/inner.txt") : QString()), mine);
        engine = std::make_unique<EngineHarness>(services, m_files);
        operations = std::make_unique<Operations>(*engine, services.home.path());
        services.panels.answer = [this](const OpenPanelRequest &request) -> std::optional<QString> {
            return request.preselected.isEmpty() ? operations->recoveryFolder()
                                                 : request.directory + QLatin1Char('/') + request.preselected;
        };
    }

    /// The sentence of the error, or nothing.
    QString attempt(const QString &operation)
    {
        try {
            operations->perform(operation);
        } catch (const std::exception &error) {
            return localizedDescription(error);
        }
        return {};
    }

    /// How many files below the home hold the item's bytes.
    [[nodiscard]] int wholeCopies() const
    {
        int count = 0;
        QDirIterator each(services.home.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (each.hasNext()) {
            count += static_cast<int>(TemporaryHome::read(each.next()) == mine);
        }
        return count;
    }

    [[nodiscard]] QStringList leftovers() const
    {
        QStringList found;
        QDirIterator each(services.home.path(), {QStringLiteral(".quillhaven-*")},
                          QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (each.hasNext()) {
            found.append(each.next());
        }
        const QDir temporary(services.home.directories().temporary);
        return found + temporary.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    TestPlatform services;
    LogCapture log;
    std::unique_ptr<SmallDisk> storage;
    std::unique_ptr<EngineHarness> engine;
    std::unique_ptr<Operations> operations;

private:
    FaultyFileManager m_files;
};

bool destroys(const QString &operation)
{
    return operation.startsWith(QStringLiteral("shred"));
}

/// Told texts that stand for a failed look at a file and carry no name.
bool saysWhatItIsAbout(const QString &sentence)
{
    return sentence.contains(QLatin1Char('"')) || sentence.contains(QStringLiteral("item")) ||
           sentence.startsWith(QStringLiteral("The selected file or folder could not be found.")) ||
           sentence.startsWith(QStringLiteral("Could not restore file to original location."));
}

class FaultSweep : public ::testing::TestWithParam<std::tuple<QString, Kind, bool>>
{
protected:
    ~FaultSweep() override { system_call_faults::disarm(); }

    [[nodiscard]] static int callsOfACleanRun(const QString &operation, Kind kind, bool isAcross)
    {
        Scene scene(kind, isAcross);
        scene.operations->prepare(operation);
        system_call_faults::countOnly();
        EXPECT_EQ(scene.attempt(operation).toStdString(), "");
        system_call_faults::disarm();
        return system_call_faults::callCount();
    }

    static void runWithFault(const QString &operation, Kind kind, bool isAcross, int n, int reason)
    {
        Scene scene(kind, isAcross);
        scene.operations->prepare(operation);
        system_call_faults::failCall(n, reason);
        const QString sentence = scene.attempt(operation);
        system_call_faults::disarm();

        const std::string where = system_call_faults::failedCall() + std::string(", call ") + std::to_string(n) + ", " +
                                  strerrorname_np(reason) + ": " + sentence.toStdString();
        if (!destroys(operation)) {
            EXPECT_GE(scene.wholeCopies(), 1) << "the data is gone after " << where;
        }
        EXPECT_EQ(scene.leftovers().join(QLatin1Char(' ')).toStdString(), "") << "left behind after " << where;
        if (!sentence.isEmpty()) {
            EXPECT_TRUE(saysWhatItIsAbout(sentence)) << where;
        }
        if (operation != QStringLiteral("protect") && operation != QStringLiteral("duplicate")) {
            doAgain(scene, operation, where);
        }
    }

    static void doAgain(Scene &scene, const QString &operation, const std::string &where)
    {
        const bool isDone =
            operation == QStringLiteral("remove") || operation == QStringLiteral("shredItem")
                ? scene.engine->count() == 0
                : operation == QStringLiteral("shredPlain") && !TemporaryHome::exists(scene.operations->place());
        const bool isMounted = scene.engine->count() > 0 && scene.engine->item().isMounted;
        const bool isLocked = operation.endsWith(QStringLiteral("ock")) && !operation.contains(QStringLiteral("nlock"));
        const bool isUnlocked = operation.endsWith(QStringLiteral("nlock"));
        if (isDone || (isLocked && !isMounted) || (isUnlocked && isMounted)) {
            return;
        }
        const QString again = scene.attempt(operation);
        const bool isTakenCopy = operation == QStringLiteral("recover") && !again.isEmpty();
        EXPECT_TRUE(again.isEmpty() || isTakenCopy) << "once more after " << where << ": " << again.toStdString();
        if (destroys(operation)) {
            EXPECT_EQ(scene.wholeCopies(), 0) << where;
        } else {
            EXPECT_GE(scene.wholeCopies(), 1) << where;
        }
    }
};

} // namespace

TEST_P(FaultSweep, EveryCallFailsForEveryReason)
{
    const auto &[operation, kind, isAcross] = GetParam();
    const int calls = callsOfACleanRun(operation, kind, isAcross);
    ASSERT_GT(calls, 0);
    for (const int reason : reasons) {
        for (int n = 1; n <= calls && !HasFailure(); ++n) {
            runWithFault(operation, kind, isAcross, n, reason);
        }
    }
    std::printf("%d calls, %zu cases\n", calls, static_cast<size_t>(calls) * reasons.size());
}

namespace {

std::vector<std::tuple<QString, Kind, bool>> everyCase()
{
    std::vector<std::tuple<QString, Kind, bool>> cases;
    for (const QString &operation : Operations::all()) {
        for (const Kind kind : {Kind::File, Kind::Folder}) {
            // A folder has no password that its duplicate could take over.
            if (kind == Kind::File || operation != QStringLiteral("duplicate")) {
                cases.emplace_back(operation, kind, false);
                cases.emplace_back(operation, kind, true);
            }
        }
    }
    return cases;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Operations, FaultSweep, ::testing::ValuesIn(everyCase()), [](const auto &info) {
    return std::get<0>(info.param).toStdString() + (std::get<1>(info.param) == Kind::Folder ? "Folder" : "File") +
           (std::get<2>(info.param) ? "AcrossFileSystems" : "");
});
