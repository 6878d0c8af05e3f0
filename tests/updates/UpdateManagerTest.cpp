// SPDX-License-Identifier: GPL-3.0-or-later

#include "updates/UpdateManager.h"

#include "Manifest.h"
#include "async/Answer.h"
#include "platform/UserDefaults.h"
#include "support/LogCapture.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"

#include <QMetaMethod>
#include <QMetaProperty>
#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

const QString address = QStringLiteral("https://updates.example/manifest.json");
const QString lastUpdateCheckKey = QStringLiteral("LastUpdateCheck");

class NoNetwork : public LocalizedError
{
public:
    NoNetwork() : LocalizedError(QStringLiteral("The Internet connection appears to be offline.")) {}
};

class UpdateManagerTest : public ::testing::Test
{
protected:
    /// The manager, created at its first use.
    UpdateManager &updates(const QString &manifestAddress = address)
    {
        if (!m_updates) {
            m_updates = std::make_unique<UpdateManager>(services.platform(), manifestAddress);
        }
        return *m_updates;
    }
    void restart() { m_updates.reset(); }

    void check(bool isBackground = false) { runTask(updates().performUpdateCheck(isBackground)); }
    void checkInBackground() { check(true); }

    void answer(const QByteArray &data, std::optional<int> statusCode = 200)
    {
        const UrlResponse response{.data = data, .statusCode = statusCode};
        services.urlSession.answer = [response](UrlRequest) -> QCoro::Task<UrlResponse> { co_return response; };
    }
    void offer(const QString &version) { answer(manifest(appRecord(version))); }
    void failWithoutNetwork()
    {
        services.urlSession.answer = [](UrlRequest) -> QCoro::Task<UrlResponse> {
            throw NoNetwork();
            co_return UrlResponse{};
        };
    }
    /// The session waits for this from now on.
    Answer<UrlResponse> holdAnswer()
    {
        Answer<UrlResponse> held;
        services.urlSession.answer = [held](UrlRequest) -> QCoro::Task<UrlResponse> {
            const Answer<UrlResponse> awaited = held;
            co_return co_await awaited;
        };
        return held;
    }
    static UrlResponse offered(const QString &version)
    {
        return {.data = manifest(appRecord(version)), .statusCode = 200};
    }
    [[nodiscard]] qsizetype requests() const { return services.urlSession.requests.size(); }
    QVariant storedDate() { return services.defaults.standard().objectForKey(lastUpdateCheckKey); }
    void storeDate(const QVariant &value) { services.defaults.standard().setObject(lastUpdateCheckKey, value); }

    LogCapture log;
    TestPlatform services; // of version 1.2.0

private:
    std::unique_ptr<UpdateManager> m_updates;
};

} // namespace

// The state at the start

TEST_F(UpdateManagerTest, NothingIsKnownAtFirst)
{
    EXPECT_FALSE(updates().isCheckingForUpdates());
    EXPECT_FALSE(updates().availableUpdate());
    EXPECT_FALSE(updates().hasUpdateAvailable());
    EXPECT_FALSE(updates().lastCheckDate());
    EXPECT_FALSE(updates().checkError());
    EXPECT_EQ(updates().unavailableReason(), QString());
    EXPECT_EQ(requests(), 0);
}

TEST_F(UpdateManagerTest, TheLastCheckIsReadFromTheStore)
{
    const QDateTime date(QDate(2025, 12, 31), QTime(8, 0), Qt::UTC);
    storeDate(date);

    EXPECT_EQ(updates().lastCheckDate(), date);
}

TEST_F(UpdateManagerTest, AStoredValueOfAnotherTypeIsNoDate)
{
    storeDate(QStringLiteral("2025-12-31T08:00:00Z"));

    EXPECT_FALSE(updates().lastCheckDate());
}

TEST_F(UpdateManagerTest, TheCurrentVersionIsTheBundles)
{
    EXPECT_EQ(updates().currentVersion(), QStringLiteral("1.2.0"));
}

TEST_F(UpdateManagerTest, AMissingVersionReadsAsOne)
{
    services.bundle.values.clear();

    EXPECT_EQ(updates().currentVersion(), QStringLiteral("1.0.0"));
}

TEST_F(UpdateManagerTest, AVersionThatIsNoStringReadsAsOne)
{
    services.bundle.values[BundleInformation::shortVersionKey] = 2.5;

    EXPECT_EQ(updates().currentVersion(), QStringLiteral("1.0.0"));
}

TEST_F(UpdateManagerTest, EveryPropertyThatChangesHasASignal)
{
    for (const char *name :
         {"isCheckingForUpdates", "availableUpdate", "hasUpdateAvailable", "lastCheckDate", "checkError"}) {
        const QMetaObject &type = UpdateManager::staticMetaObject;
        const int index = type.indexOfProperty(name);
        ASSERT_GE(index, 0) << name;
        EXPECT_TRUE(type.property(index).hasNotifySignal()) << name;
    }
}

// The request

TEST_F(UpdateManagerTest, TheRequestNamesTheProgramAndItsVersion)
{
    check();

    ASSERT_EQ(requests(), 1);
    const UrlRequest request = services.urlSession.requests.constFirst();
    EXPECT_EQ(request.url, QUrl(address));
    EXPECT_EQ(request.timeout, 60s);
    ASSERT_EQ(request.headers.size(), 1);
    EXPECT_EQ(request.headers.constFirst(), std::pair(QByteArray("User-Agent"), QByteArray("Quillhaven/1.2.0")));
}

TEST_F(UpdateManagerTest, OnlyHttpsAddressesWithAHostAreValid)
{
    for (const char *invalid :
         {"updates.example/manifest.json", "/manifest.json", "http://updates.example/m", "file:///etc/passwd",
          "ftp://updates.example/m", "https://", "https:///manifest.json", "https:manifest.json", " ",
          "https://updates.example:port/", "https://a b/", "https://[1"}) {
        restart();
        updates(QString::fromUtf8(invalid));
        check();

        EXPECT_EQ(updates().checkError(), QStringLiteral("Invalid update URL")) << invalid;
        EXPECT_FALSE(updates().isCheckingForUpdates());
    }
    EXPECT_EQ(requests(), 0);
}

TEST_F(UpdateManagerTest, TheSchemeIsReadWithoutCase)
{
    updates(QStringLiteral("HTTPS://Updates.example:8443/m?x=1"));
    offer(QStringLiteral("2.0.0"));
    check();

    EXPECT_FALSE(updates().checkError());
    EXPECT_EQ(requests(), 1);
}

// The outcomes

TEST_F(UpdateManagerTest, ANewerVersionIsAvailable)
{
    offer(QStringLiteral("1.10.0"));
    check();

    ASSERT_TRUE(updates().availableUpdate());
    const UpdateInfo update = *updates().availableUpdate();
    EXPECT_EQ(update.version, QStringLiteral("1.10.0"));
    EXPECT_EQ(update.downloadURL, QStringLiteral("https://downloads.example/quillhaven"));
    EXPECT_EQ(update.releaseNotes, QStringLiteral("Better locks."));
    EXPECT_EQ(update.publishedAt, QStringLiteral("2026-11-01"));
    EXPECT_TRUE(update.isPrerelease);
    EXPECT_TRUE(updates().hasUpdateAvailable());
    EXPECT_FALSE(updates().checkError());
    EXPECT_FALSE(updates().isCheckingForUpdates());
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("🔍 Performing update check (background: false)"),
                                        QStringLiteral("🆕 Update available: 1.10.0")}));
}

TEST_F(UpdateManagerTest, TheSameVersionClearsWhatWasAvailable)
{
    offer(QStringLiteral("1.3"));
    check();
    log.clear();

    offer(QStringLiteral("1.2.0"));
    check();

    EXPECT_FALSE(updates().availableUpdate());
    EXPECT_FALSE(updates().hasUpdateAvailable());
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("🔍 Performing update check (background: false)"),
                                        QStringLiteral("✅ No update available (current: 1.2.0, latest: 1.2.0)")}));
}

TEST_F(UpdateManagerTest, AnOlderVersionIsNotAvailable)
{
    offer(QStringLiteral("1.1.99"));
    check();

    EXPECT_FALSE(updates().availableUpdate());
    EXPECT_FALSE(updates().hasUpdateAvailable());
}

TEST_F(UpdateManagerTest, NothingButNumbersIsParsedInVersions)
{
    const QList<std::pair<QString, bool>> versions{
        {QStringLiteral("1.2.0-beta"), true}, {QStringLiteral("1.2.0.0"), true}, {QStringLiteral("1.2"), false},
        {QStringLiteral("v1.0"), true},       {QStringLiteral("1.02.0"), false}, {QString(), false}};
    for (const auto &[version, isNewer] : versions) {
        offer(version);
        check();

        EXPECT_EQ(updates().hasUpdateAvailable(), isNewer) << qPrintable(version);
    }
}

TEST_F(UpdateManagerTest, SuccessStoresTheTime)
{
    for (const char *version : {"9.0", "1.0"}) {
        services.clock.advance(90min);
        offer(QString::fromUtf8(version));
        check();

        EXPECT_EQ(updates().lastCheckDate(), services.clock.now());
        EXPECT_EQ(storedDate(), QVariant(services.clock.now()));
    }
}

TEST_F(UpdateManagerTest, EveryFailureHasItsDescription)
{
    const QString networkError = QStringLiteral("Network error while checking for updates");
    const QByteArray whole = manifest(appRecord(QStringLiteral("9.0")));
    const QList<std::tuple<std::optional<int>, QByteArray, QString>> cases{
        {404, whole, QStringLiteral("Update information not found. Please check the gist URL.")},
        {500, whole, networkError},
        {503, whole, networkError},
        {403, whole, networkError},
        {201, whole, networkError},
        {204, QByteArray(), networkError},
        {304, QByteArray(), networkError},
        {std::nullopt, whole, networkError},
        {200, "{}", QStringLiteral("The data couldn't be read because \"app\" is missing.")},
        {200, R"({"app": {}})", QStringLiteral("The data couldn't be read because \"app.version\" is missing.")},
        {200, "[]", QStringLiteral("The data couldn't be read because it is a list instead of an object.")}};
    for (const auto &[status, data, description] : cases) {
        log.clear();
        answer(data, status);
        check();

        EXPECT_EQ(updates().checkError(), description);
        EXPECT_FALSE(updates().isCheckingForUpdates());
        EXPECT_EQ(log.lines(), QStringList({QStringLiteral("🔍 Performing update check (background: false)"),
                                            QStringLiteral("❌ Update check failed: ") + description}));
    }
}

TEST_F(UpdateManagerTest, EveryMissingKeyOfTheRecordIsTheErrorsDescription)
{
    for (const QString &key : appRecord().keys()) {
        QJsonObject app = appRecord();
        app.remove(key);
        answer(manifest(app));
        check();

        EXPECT_EQ(updates().checkError(),
                  QStringLiteral("The data couldn't be read because \"app.%1\" is missing.").arg(key));
    }
}

TEST_F(UpdateManagerTest, AFailureOfTheTransportKeepsItsOwnDescription)
{
    failWithoutNetwork();
    checkInBackground();

    EXPECT_EQ(updates().checkError(), QStringLiteral("The Internet connection appears to be offline."));
    EXPECT_TRUE(log.contains(QStringLiteral("❌ Update check failed: The Internet connection appears to be offline.")));
}

TEST_F(UpdateManagerTest, AFailureKeepsWhatIsKnown)
{
    offer(QStringLiteral("2.0.0"));
    check();
    const std::optional<QDateTime> date = updates().lastCheckDate();
    services.clock.advance(1h);

    failWithoutNetwork();
    check();

    EXPECT_TRUE(updates().hasUpdateAvailable());
    EXPECT_EQ(updates().lastCheckDate(), date);
    EXPECT_EQ(storedDate(), QVariant(*date));
}

TEST_F(UpdateManagerTest, TheNextCheckClearsTheError)
{
    failWithoutNetwork();
    check();
    const Answer<UrlResponse> held = holdAnswer();
    const RunningTask<void> running(updates().performUpdateCheck(false));

    EXPECT_FALSE(updates().checkError());

    held.give(offered(QStringLiteral("1.0")));
    running.wait();
    EXPECT_FALSE(updates().checkError());
}

TEST_F(UpdateManagerTest, ACheckIsUnderWayFromItsStartToItsEnd)
{
    const Answer<UrlResponse> held = holdAnswer();
    const RunningTask<void> running(updates().performUpdateCheck(true));
    EXPECT_TRUE(updates().isCheckingForUpdates());
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("🔍 Performing update check (background: true)")));

    held.give(offered(QStringLiteral("2.0.0")));
    running.wait();

    EXPECT_FALSE(updates().isCheckingForUpdates());
}

TEST_F(UpdateManagerTest, ObserversSeeEachStepOfACheck)
{
    QStringList seen;
    UpdateManager &observed = updates();
    QObject::connect(&observed, &UpdateManager::isCheckingForUpdatesChanged, &observed, [&] {
        seen.append(observed.isCheckingForUpdates() ? QStringLiteral("checking") : QStringLiteral("checked"));
    });
    QObject::connect(&observed, &UpdateManager::checkErrorChanged, &observed, [&] {
        seen.append(observed.checkError() ? QStringLiteral("error") : QStringLiteral("no error"));
    });
    QObject::connect(&observed, &UpdateManager::availableUpdateChanged, &observed, [&] {
        seen.append(observed.hasUpdateAvailable() ? QStringLiteral("available") : QStringLiteral("none"));
    });
    QObject::connect(&observed, &UpdateManager::lastCheckDateChanged, &observed,
                     [&] { seen.append(QStringLiteral("date")); });

    failWithoutNetwork();
    check();
    EXPECT_EQ(seen.join(u' '), QStringLiteral("checking error checked"));
    seen.clear();
    offer(QStringLiteral("2.0.0"));
    check();
    EXPECT_EQ(seen.join(u' '), QStringLiteral("checking no error available date checked"));
    seen.clear();
    services.clock.advance(1h);
    offer(QStringLiteral("1.0.0"));
    check();
    EXPECT_EQ(seen.join(u' '), QStringLiteral("checking none date checked"));
}

// When a background check is skipped

TEST_F(UpdateManagerTest, AFirstLaunchChecksAtOnce)
{
    checkInBackground();

    EXPECT_EQ(requests(), 1);
}

TEST_F(UpdateManagerTest, ALaunchWithin24HoursSkips)
{
    storeDate(services.clock.now());
    services.clock.advance(23h + 54min); // 23.9 hours
    const QDateTime date = services.clock.now().addSecs(-(23 * 60 + 54) * 60);

    checkInBackground();

    EXPECT_EQ(requests(), 0);
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("⏭️ Skipping background update check - checked recently")));
    EXPECT_EQ(updates().lastCheckDate(), date);
    EXPECT_FALSE(updates().checkError());
    EXPECT_FALSE(updates().isCheckingForUpdates());
}

TEST_F(UpdateManagerTest, ALaunchAMillisecondBefore24HoursSkips)
{
    storeDate(services.clock.now());
    services.clock.advance(24h - 1ms);
    checkInBackground();

    EXPECT_EQ(requests(), 0);
}

TEST_F(UpdateManagerTest, ALaunchAfter24HoursChecks)
{
    storeDate(services.clock.now());
    services.clock.advance(24h);
    checkInBackground();

    EXPECT_EQ(requests(), 1);
}

TEST_F(UpdateManagerTest, AClockThatWasSetBackSkips)
{
    storeDate(services.clock.now().addDays(300));
    checkInBackground();

    EXPECT_EQ(requests(), 0);
}

TEST_F(UpdateManagerTest, ASkippedCheckKeepsTheLastError)
{
    offer(QStringLiteral("1.0"));
    check();
    failWithoutNetwork();
    check();
    checkInBackground();

    EXPECT_EQ(updates().checkError(), QStringLiteral("The Internet connection appears to be offline."));
}

TEST_F(UpdateManagerTest, AManualCheckIsNeverSkipped)
{
    storeDate(services.clock.now());
    check();
    storeDate(services.clock.now().addDays(300));
    restart();
    check();

    EXPECT_EQ(requests(), 2);
}

TEST_F(UpdateManagerTest, TheNextLaunchSkipsAfterASuccess)
{
    offer(QStringLiteral("2.0.0"));
    checkInBackground();
    restart();
    checkInBackground();

    EXPECT_EQ(requests(), 1);
}

TEST_F(UpdateManagerTest, TheNextLaunchChecksAgainAfterAFailure)
{
    failWithoutNetwork();
    checkInBackground();
    restart();
    checkInBackground();

    EXPECT_EQ(requests(), 2);
}

// Two checks at once, and a manager that ends

TEST_F(UpdateManagerTest, TheLastOfTwoChecksToFinishWrites)
{
    const Answer<UrlResponse> first = holdAnswer();
    const RunningTask<void> background(updates().performUpdateCheck(true));
    const Answer<UrlResponse> second = holdAnswer();
    const RunningTask<void> manual(updates().performUpdateCheck(false));
    EXPECT_EQ(requests(), 2);

    second.give(offered(QStringLiteral("3.0.0")));
    manual.wait();
    EXPECT_EQ(updates().availableUpdate()->version, QStringLiteral("3.0.0"));
    EXPECT_FALSE(background.isFinished());

    first.give(offered(QStringLiteral("2.0.0")));
    background.wait();
    EXPECT_EQ(updates().availableUpdate()->version, QStringLiteral("2.0.0"));
    EXPECT_FALSE(updates().isCheckingForUpdates());
}

TEST_F(UpdateManagerTest, ACheckOutlivesItsManagerAndDoesNothing)
{
    const Answer<UrlResponse> held = holdAnswer();
    const RunningTask<void> running(updates().performUpdateCheck(false));
    restart();
    log.clear();

    held.give(offered(QStringLiteral("2.0.0")));
    running.wait();

    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_FALSE(storedDate().isValid());
}

// Without an address

TEST_F(UpdateManagerTest, WithoutAnAddressChecksAreUnavailable)
{
    EXPECT_EQ(updates(QString()).unavailableReason(),
              QStringLiteral("This build of Quillhaven has no address for update information."));
}

TEST_F(UpdateManagerTest, WithoutAnAddressABackgroundCheckChangesNothing)
{
    updates(QString());
    QObject::connect(&updates(), &UpdateManager::isCheckingForUpdatesChanged, &updates(), [] { ADD_FAILURE(); });
    checkInBackground();

    EXPECT_EQ(requests(), 0);
    EXPECT_FALSE(updates().checkError());
    EXPECT_FALSE(updates().lastCheckDate());
    EXPECT_FALSE(storedDate().isValid());
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral(
                               "ℹ️ No update check: This build of Quillhaven has no address for update information.")));
}

TEST_F(UpdateManagerTest, WithoutAnAddressAManualCheckSaysSo)
{
    updates(QString());
    QObject::connect(&updates(), &UpdateManager::isCheckingForUpdatesChanged, &updates(), [] { ADD_FAILURE(); });
    check();

    EXPECT_EQ(updates().checkError(),
              QStringLiteral("This build of Quillhaven has no address for update information."));
    EXPECT_FALSE(updates().lastCheckDate());
    EXPECT_EQ(log.lines().size(), 1);
}
