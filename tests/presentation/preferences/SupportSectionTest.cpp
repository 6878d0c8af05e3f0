// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreferencesHarness.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class SupportSection : public DashboardTest
{
protected:
    SupportSectionModel &support()
    {
        if (!m_preferences) {
            m_preferences.emplace(started());
        }
        return *m_preferences->model.support();
    }
    [[nodiscard]] QString opened() const
    {
        return services.opener.opened.isEmpty() ? QString()
                                                : services.opener.opened.last().toString(QUrl::FullyEncoded);
    }

private:
    std::optional<PreferencesHarness> m_preferences;
};

} // namespace

TEST_F(SupportSection, ContactingSupportSendsNoDetailsOfTheSystem)
{
    support().contactSupport();
    EXPECT_TRUE(opened().startsWith(QStringLiteral("mailto:support@quillhaven.example?subject=Quillhaven%20Support")));
    EXPECT_FALSE(opened().contains(QStringLiteral("System%20Information")));
    EXPECT_FALSE(support().reportIssueButtonPressed());
}

TEST_F(SupportSection, AReportHasTheDetailsOfTheSystem)
{
    support().reportIssue();
    EXPECT_TRUE(support().reportIssueButtonPressed());
    EXPECT_TRUE(opened().contains(QStringLiteral("System%20Information")));
    EXPECT_TRUE(opened().contains(QStringLiteral("Example%209000")));
}

TEST_F(SupportSection, FeedbackOpensThePageOfTheSite)
{
    support().openFeedback();
    EXPECT_EQ(opened(), QStringLiteral("https://quillhaven.example/feedback"));
}
