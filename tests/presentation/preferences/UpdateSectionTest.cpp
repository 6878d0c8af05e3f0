// SPDX-License-Identifier: GPL-3.0-or-later

#include "OfferedUpdate.h"
#include "PreferencesHarness.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

const QString downloads = QStringLiteral("https://downloads.quillhaven.example/latest");

class UpdateSection : public DashboardTest
{
protected:
    PreferencesModel &preferences()
    {
        if (!m_preferences) {
            m_preferences.emplace(started());
        }
        return m_preferences->model;
    }
    UpdateSectionModel &updates() { return *preferences().updates(); }
    void check()
    {
        updates().check();
        DashboardHarness::settle();
    }

private:
    std::optional<PreferencesHarness> m_preferences;
};

} // namespace

TEST_F(UpdateSection, TheVersionIsThatOfTheProgram)
{
    EXPECT_EQ(updates().versionText(), QStringLiteral("Current version: 1.2.0"));
    EXPECT_EQ(updates().unavailableReason(), QString());
}

TEST_F(UpdateSection, TheButtonSaysThatACheckIsRunning)
{
    const Answer<bool> gate;
    services.urlSession.answer = [gate](UrlRequest) -> QCoro::Task<UrlResponse> {
        static_cast<void>(co_await gate);
        co_return UrlResponse{.data = {}, .statusCode = 500};
    };
    EXPECT_EQ(updates().checkTitle(), QStringLiteral("Check for Updates"));
    updates().check();
    spinOnce();
    EXPECT_TRUE(updates().isChecking());
    EXPECT_EQ(updates().checkTitle(), QStringLiteral("Checking..."));
    gate.give(true);
    DashboardHarness::settle();
    EXPECT_FALSE(updates().isChecking());
    EXPECT_EQ(updates().checkTitle(), QStringLiteral("Check for Updates"));
    EXPECT_EQ(updates().errorText(), QStringLiteral("Update check failed: Network error while checking for updates"));
    EXPECT_EQ(updates().updateText(), QString());
}

TEST_F(UpdateSection, ANewerVersionIsOfferedAndItsPageOpened)
{
    offerUpdate(services, QStringLiteral("1.10.0"), downloads);
    check();
    EXPECT_EQ(updates().updateText(), QStringLiteral("• Update available"));
    EXPECT_EQ(updates().errorText(), QString());
    updates().download();
    EXPECT_EQ(services.opener.opened, QList<QUrl>{QUrl(downloads)});
}

TEST_F(UpdateSection, APressChecksAlsoWithin24Hours)
{
    offerUpdate(services, QStringLiteral("1.2.0"), downloads);
    check();
    check();
    EXPECT_EQ(services.urlSession.requests.size(), 2);
    EXPECT_EQ(updates().updateText(), QString());
}

TEST_F(UpdateSection, AnAddressThatIsNotOnTheWebIsNotOpened)
{
    offerUpdate(services, QStringLiteral("9"), QStringLiteral("file:///bin/true"));
    check();
    updates().download();
    EXPECT_TRUE(services.opener.opened.isEmpty());
    EXPECT_TRUE(preferences().errors().showingError());
}

TEST_F(UpdateSection, WithoutABrowserTheAddressIsShown)
{
    offerUpdate(services, QStringLiteral("9"), downloads);
    services.opener.canOpen = false;
    check();
    updates().download();
    EXPECT_TRUE(preferences().errors().errorMessage().contains(downloads));
}
