// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/network/HttpsSession.h"
#include "support/HttpsServer.h"
#include "support/LogCapture.h"
#include "support/TestPlatform.h"
#include "updates/UpdateManager.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class UpdateCheckOverHttps : public ::testing::Test
{
protected:
    static void SetUpTestSuite() { server = std::make_unique<HttpsServer>(); }
    static void TearDownTestSuite() { server.reset(); }

    /// Checks with a real session; returns after the end of the check.
    UpdateManager &checked(const QUrl &manifest)
    {
        const Platform folders = services.platform();
        const Platform platform{.fileManager = folders.fileManager,
                                .directories = folders.directories,
                                .defaults = folders.defaults,
                                .credentials = folders.credentials,
                                .credentialQueue = folders.credentialQueue,
                                .credentialStoreState = folders.credentialStoreState,
                                .biometrics = folders.biometrics,
                                .panels = folders.panels,
                                .cloud = folders.cloud,
                                .clock = folders.clock,
                                .random = folders.random,
                                .notifications = folders.notifications,
                                .input = folders.input,
                                .opener = folders.opener,
                                .loginItem = folders.loginItem,
                                .watched = folders.watched,
                                .bundle = folders.bundle,
                                .urlSession = session,
                                .machine = folders.machine,
                                .display = folders.display,
                                .fileViewer = folders.fileViewer,
                                .desktopNotifications = folders.desktopNotifications,
                                .volumes = folders.volumes};
        updates.emplace(platform, manifest.toString());
        runTask(updates->performUpdateCheck(true));
        return *updates;
    }

    static inline std::unique_ptr<HttpsServer> server;
    LogCapture log;
    TestPlatform services;
    HttpsSession session{services.clock, server->authorities()};
    std::optional<UpdateManager> updates;
};

} // namespace

TEST_F(UpdateCheckOverHttps, AManifestOnAServerOffersItsVersion)
{
    const UpdateManager &result = checked(server->url(QStringLiteral("/manifest")));

    ASSERT_TRUE(result.hasUpdateAvailable()) << qPrintable(result.checkError().value_or(QString()));
    EXPECT_EQ(result.availableUpdate()->version, QStringLiteral("9.10.0"));
    EXPECT_EQ(result.availableUpdate()->downloadURL, QStringLiteral("https://downloads.example/quillhaven"));
    EXPECT_EQ(result.lastCheckDate(), services.clock.now());
    EXPECT_EQ(log.lines().last(), QStringLiteral("🆕 Update available: 9.10.0"));
}

TEST_F(UpdateCheckOverHttps, AMissingManifestIsReported)
{
    EXPECT_EQ(checked(server->url(QStringLiteral("/status/404"))).checkError(),
              QStringLiteral("Update information not found. Please check the gist URL."));
}

TEST_F(UpdateCheckOverHttps, AnErrorOfTheServerIsReported)
{
    EXPECT_EQ(checked(server->url(QStringLiteral("/status/500"))).checkError(),
              QStringLiteral("Network error while checking for updates"));
}

TEST_F(UpdateCheckOverHttps, AServerThatIsNotTrustedIsReported)
{
    const UpdateManager &result = checked(server->url(QStringLiteral("/manifest"), QStringLiteral("foreign")));

    ASSERT_TRUE(result.checkError());
    EXPECT_TRUE(
        result.checkError()->startsWith(QStringLiteral("The document could not be read from the server localhost: ")));
    EXPECT_FALSE(result.lastCheckDate());
}
