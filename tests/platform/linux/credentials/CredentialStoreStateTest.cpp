// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/OffMainThread.h"
#include "credentials/KeychainManager.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/credentials/MockKeyring.h"
#include "platform/linux/credentials/RememberedStore.h"
#include "platform/linux/credentials/SystemCredentialStore.h"
#include "platform/linux/credentials/SystemCredentialStoreState.h"
#include "support/LogCapture.h"
#include "support/ManualClock.h"
#include "support/TemporaryHome.h"

#include <QThreadPool>

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

using Phase = CredentialStoreState::Phase;

const QString service = keychainServiceName;
const QString account = QStringLiteral("master_password");

/// One run of the program, whose store is watched.
struct ProgramRun
{
    explicit ProgramRun(const QString &directory) : store(directory, random)
    {
        queue.setMaxThreadCount(1);
        QObject::connect(&state, &CredentialStoreState::becameReadable, &state, [this] { ++readable; });
    }
    ~ProgramRun()
    {
        store.close();
        queue.waitForDone();
        spinOnce();
    }
    ProgramRun(const ProgramRun &) = delete;
    ProgramRun &operator=(const ProgramRun &) = delete;

    QCoro::Task<CredentialStatus> look()
    {
        auto work = [this] { return store.copyMatching(service, account).status; };
        return offMainThread(queue, std::move(work));
    }

    OpenSslRandomSource random;
    SystemCredentialStore store;
    QThreadPool queue;
    ManualClock clock;
    SystemCredentialStoreState state{store, queue, clock};
    int readable = 0;
};

class StoreState : public ::testing::Test
{
protected:
    QString directory() const { return m_home.directories().configuration; }
    /// A home whose passwords are in a keyring.
    void storeInAKeyring()
    {
        OpenSslRandomSource random;
        SystemCredentialStore store(directory(), random);
        ASSERT_EQ(store.add(service, account, "secret"), credentialSuccess);
    }
    /// Gives a keyring what the one of this home had.
    void fill(MockKeyring &keyring)
    {
        keyring.addEntry(QStringLiteral("com.tarnwick.quillhaven.keyring"),
                         RememberedStore::readFrom(directory()).marker, false);
        keyring.addEntry(service, account, false);
    }

    TemporaryHome m_home;
    LogCapture m_log;
};

} // namespace

TEST_F(StoreState, ASlowAnswerIsWaitedForAfterAMoment)
{
    MockKeyring keyring;
    keyring.addEntry(service, account, true);
    keyring.change(QStringLiteral("answer"), QStringLiteral("nothing"));
    ProgramRun run(directory());
    const RunningTask<CredentialStatus> reading(run.look());
    ASSERT_TRUE(spinUntil([&] { return keyring.prompts() == 1; }));
    spinOnce();
    run.clock.advance(1999ms);
    EXPECT_EQ(run.state.phase(), Phase::Usable);
    run.clock.advance(1ms);
    EXPECT_EQ(run.state.phase(), Phase::Waiting);
}

TEST_F(StoreState, AnAnswerEndsTheWaiting)
{
    MockKeyring keyring;
    keyring.change(QStringLiteral("silent"), QStringLiteral("yes"));
    ProgramRun run(directory());
    const RunningTask<CredentialStatus> reading(run.look());
    ASSERT_TRUE(spinUntil([&] { return keyring.unanswered() > 0; }));
    spinOnce();
    run.clock.advance(2s);
    EXPECT_EQ(run.state.phase(), Phase::Waiting);
    keyring.change(QStringLiteral("silent"), QStringLiteral("no"));
    EXPECT_EQ(reading.wait(), credentialItemNotFound);
    EXPECT_TRUE(spinUntil([&] { return run.state.phase() == Phase::Usable; }));
}

TEST_F(StoreState, AMissingKeyringIsReportedAndFoundWhenItAppears)
{
    {
        const MockKeyring keyring;
        storeInAKeyring();
    }
    ProgramRun run(directory());
    EXPECT_EQ(runTask(run.look()), credentialNotAvailable);
    ASSERT_TRUE(spinUntil([&] { return run.state.phase() == Phase::Missing; }));
    EXPECT_EQ(run.state.sentence(),
              QStringLiteral("The passwords are in the desktop's keyring, and this session has none."));
    EXPECT_EQ(run.readable, 0);

    // Another keyring appears first, then the right one.
    {
        const MockKeyring other;
        EXPECT_TRUE(spinUntil([&] { return run.state.sentence().contains(QStringLiteral("another keyring")); }));
    }
    MockKeyring keyring;
    fill(keyring);
    run.state.tryAgain();
    EXPECT_TRUE(spinUntil([&] { return run.state.phase() == Phase::Usable; }));
    EXPECT_TRUE(spinUntil([&] { return run.readable == 1; }));
    EXPECT_EQ(runTask(run.look()), credentialSuccess);
}

TEST_F(StoreState, TheStoreAtHandIsUsedOnRequest)
{
    {
        const MockKeyring keyring;
        storeInAKeyring();
    }
    ProgramRun run(directory());
    EXPECT_EQ(runTask(run.look()), credentialNotAvailable);
    run.state.useStoreAtHand();
    EXPECT_TRUE(spinUntil([&] { return run.readable == 1; }));
    EXPECT_TRUE(spinUntil([&] { return run.state.phase() == Phase::Usable; }));
    EXPECT_EQ(runTask(run.look()), credentialItemNotFound);
}

TEST_F(StoreState, AKeyringThatIsUnlockedAfterARefusalIsReadableAgain)
{
    MockKeyring keyring;
    keyring.addEntry(service, account, false);
    keyring.change(QStringLiteral("collection"), QStringLiteral("locked"));
    keyring.change(QStringLiteral("answer"), QStringLiteral("dismiss"));
    ProgramRun run(directory());
    EXPECT_EQ(runTask(run.look()), credentialInteractionNotAllowed);
    keyring.change(QStringLiteral("answer"), QStringLiteral("allow"));
    auto prepare = [&run] { return run.store.prepareForWriting(); };
    EXPECT_EQ(runTask(offMainThread(run.queue, prepare)), credentialSuccess);
    EXPECT_TRUE(spinUntil([&] { return run.readable == 1; }));
    EXPECT_EQ(runTask(run.look()), credentialSuccess);
}

TEST_F(StoreState, TheEndDoesNotWaitForAPromptThatIsNeverAnswered)
{
    MockKeyring keyring;
    keyring.addEntry(service, account, true);
    keyring.change(QStringLiteral("answer"), QStringLiteral("nothing"));
    {
        ProgramRun run(directory());
        const RunningTask<CredentialStatus> reading(run.look());
        ASSERT_TRUE(spinUntil([&] { return keyring.prompts() == 1; }));
        spinOnce();
        EXPECT_FALSE(reading.isFinished());
        run.store.close();
        EXPECT_EQ(reading.wait(), credentialNotAvailable);
        EXPECT_EQ(run.store.add(service, account, "late"), credentialNotAvailable);
    }
    EXPECT_EQ(keyring.prompts(), 1);
}

// The last one, since the end of the process cannot be taken back.
TEST_F(StoreState, ZzOnceTheEndIsAskedForAllCallsTogetherGetTwoSeconds)
{
    MockKeyring keyring;
    ProgramRun run(directory());
    EXPECT_EQ(runTask(run.look()), credentialItemNotFound);
    keyring.addEntry(service, account, true);
    keyring.change(QStringLiteral("answer"), QStringLiteral("nothing"));
    const int unanswered = keyring.unanswered();
    keyring.change(QStringLiteral("silent"), QStringLiteral("yes"));
    auto prepare = [&run] { return run.store.prepareForWriting(); };
    const RunningTask<CredentialStatus> answeredLate(offMainThread(run.queue, prepare));
    const RunningTask<CredentialStatus> prompted(run.look());
    const RunningTask<CredentialStatus> queued(run.look());
    ASSERT_TRUE(spinUntil([&] { return keyring.unanswered() > unanswered; }));
    spinOnce();
    bool hasEnded = false;
    WorkInFlight::close([&] { hasEnded = true; });
    spinOnce();
    run.clock.advance(1500ms);
    keyring.change(QStringLiteral("silent"), QStringLiteral("no"));
    EXPECT_EQ(answeredLate.wait(), credentialSuccess) << "a store that answers is still used";
    ASSERT_TRUE(spinUntil([&] { return keyring.prompts() == 1; }));
    spinOnce();
    run.clock.advance(499ms);
    spinOnce();
    EXPECT_FALSE(hasEnded);
    EXPECT_FALSE(prompted.isFinished());
    run.clock.advance(1ms);
    EXPECT_TRUE(spinUntil([&] { return hasEnded; }));
    EXPECT_EQ(prompted.wait(), credentialNotAvailable);
    EXPECT_EQ(queued.wait(), credentialNotAvailable);
    EXPECT_EQ(keyring.prompts(), 1);
}
