// SPDX-License-Identifier: GPL-3.0-or-later

#include "contact/SupportManager.h"
#include "support/PrintText.h"
#include "support/TestPlatform.h"

#include <gtest/gtest.h>

namespace quillhaven::test {

namespace {

const QByteArray address = "mailto:help@example.org?subject=Quillhaven%20Support%20Request&body=";

class SupportManagerTest : public ::testing::Test
{
protected:
    [[nodiscard]] SupportManager manager()
    {
        return SupportManager(services.platform(), QStringLiteral("help@example.org"),
                              QStringLiteral("https://example.org"));
    }
    /// The address that a mail with the details of the system opens.
    [[nodiscard]] QByteArray openedWithDetails()
    {
        services.opener.opened.clear();
        manager().composeEmail(true);
        return services.opener.opened.size() == 1 ? services.opener.opened.constFirst().toEncoded() : QByteArray();
    }
    /// The body that a mail program reads in such an address: up to the next field, with its escapes resolved.
    [[nodiscard]] static QString bodyIn(const QByteArray &url)
    {
        const qsizetype start = url.indexOf("&body=") + 6;
        qsizetype end = start;
        while (end < url.size() && url.at(end) != '&' && url.at(end) != '#') {
            ++end;
        }
        return QString::fromUtf8(QByteArray::fromPercentEncoding(url.mid(start, end - start)));
    }

    TestPlatform services;
};

TEST_F(SupportManagerTest, AMailWithoutDetailsHoldsOnlyTheLineThatAsksForADescription)
{
    manager().composeEmail(false);
    ASSERT_EQ(services.opener.opened.size(), 1);
    EXPECT_EQ(services.opener.opened.constFirst().toEncoded(),
              address + "%0A%0A---%20Please%20describe%20your%20issue%20below%20---%0A%0A");
}

TEST_F(SupportManagerTest, TheDetailsNameTheVersionTheProgramTheSystemAndTheModel)
{
    EXPECT_EQ(manager().collectSystemInformation(), QStringLiteral("\n--- System Information ---\n"
                                                                   "App Version: 1.2.0 (Build 34)\n"
                                                                   "Bundle ID: com.example.program\n"
                                                                   "macOS Version: Example OS 4.2\n"
                                                                   "Mac Model: Example 9000\n"
                                                                   "\n--- Please describe your issue below ---\n"));
    EXPECT_EQ(manager().getMacModel(), QStringLiteral("Example 9000"));
}

TEST_F(SupportManagerTest, WhatTheBuildDoesNotSayIsUnknown)
{
    services.bundle = BundleInformation();
    const QString details = manager().collectSystemInformation();
    EXPECT_TRUE(details.contains(QStringLiteral("\nApp Version: Unknown (Build Unknown)\nBundle ID: Unknown\n")));
}

TEST_F(SupportManagerTest, AVersionThatIsNoTextIsUnknown)
{
    services.bundle.values[BundleInformation::buildKey] = 34;
    EXPECT_TRUE(
        manager().collectSystemInformation().contains(QStringLiteral("\nApp Version: 1.2.0 (Build Unknown)\n")));
}

TEST_F(SupportManagerTest, AMailWithDetailsHasThemAsItsBody)
{
    EXPECT_EQ(bodyIn(openedWithDetails()), manager().collectSystemInformation());
}

TEST_F(SupportManagerTest, BlanksAndLineBreaksInAPathComeThroughPercentEncoded)
{
    services.machine.model = QStringLiteral("/home/me/a b\nc");
    EXPECT_TRUE(openedWithDetails().contains("Mac%20Model:%20/home/me/a%20b%0Ac%0A"));
}

TEST_F(SupportManagerTest, TheBodyArrivesWholeWhateverTheMachineIsCalled)
{
    const QStringList models{
        QStringLiteral("A & B"),          QStringLiteral("#1 of 10"), QStringLiteral("100% \"best\""),
        QStringLiteral("it's <new>"),     QStringLiteral("%41%0A%"),  QStringLiteral("a=b+c?d;e"),
        QStringLiteral(u"Größe 你好 🖥"), QStringLiteral("a\r\n\tb"), QStringLiteral("[x]{y}|z\\^`")};
    for (const QString &model : models) {
        services.machine.model = model;
        EXPECT_EQ(bodyIn(openedWithDetails()), manager().collectSystemInformation()) << model.toStdString();
    }
}

TEST_F(SupportManagerTest, OnlyTheCharactersOfAQueryAreLeftAsTheyAre)
{
    QString all;
    for (char16_t character = 0x20; character < 0x7F; ++character) {
        all += QChar(character);
    }
    services.machine.model = all;
    // The ampersand would be allowed too, but ends a field.
    EXPECT_TRUE(openedWithDetails().contains(
        "Mac%20Model:%20%20!%22%23$%25%26'()*+,-./0123456789:;%3C=%3E?@ABCDEFGHIJKLMNOPQRSTUVWXYZ%5B%5C%5D%5E_%60"
        "abcdefghijklmnopqrstuvwxyz%7B%7C%7D~%0A"))
        << openedWithDetails().toStdString();
}

TEST_F(SupportManagerTest, ATextThatCannotBeEncodedLeavesTheBodyEmpty)
{
    services.machine.model = QString(QChar(0xD800));
    EXPECT_EQ(openedWithDetails(), address);
}

TEST_F(SupportManagerTest, WithoutAMailProgramNothingHappens)
{
    services.opener.canOpen = false;
    manager().composeEmail(true);
    EXPECT_EQ(services.opener.opened.size(), 1);
}

TEST_F(SupportManagerTest, AnAddressThatIsNoneOpensNothing)
{
    SupportManager broken(services.platform(), QStringLiteral("not % an address"));
    broken.composeEmail(false);
    EXPECT_TRUE(services.opener.opened.isEmpty());
}

TEST_F(SupportManagerTest, FeedbackOpensItsPageOnTheSite)
{
    EXPECT_EQ(manager().feedbackUrl(), QUrl(QStringLiteral("https://example.org/feedback")));
    manager().feedback();
    EXPECT_EQ(services.opener.opened, QList<QUrl>{QUrl(QStringLiteral("https://example.org/feedback"))});
}

TEST_F(SupportManagerTest, TheBuildSaysWhereMailsGoAndWhereTheSiteIs)
{
    const SupportManager built(services.platform());
    EXPECT_TRUE(built.supportEmail().contains(QLatin1Char('@')));
    EXPECT_TRUE(built.feedbackUrl().isValid());
    EXPECT_EQ(built.feedbackUrl().scheme(), QStringLiteral("https"));
    EXPECT_EQ(built.feedbackUrl().path(), QStringLiteral("/feedback"));
}

} // namespace

} // namespace quillhaven::test
