// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/CustomActionsFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillhaven {

namespace {

using ::testing::ElementsAre;

const QString prefix = QStringLiteral("ours.");
const CustomAction lock{QStringLiteral("ours.lock"), QStringLiteral("Lock"), QStringLiteral("Quillhaven"),
                        QStringLiteral("\"/a & b/tool\" lock %F")};
const CustomAction shred{QStringLiteral("ours.shred"), QStringLiteral("Shred <all>"), QStringLiteral("Quillhaven"),
                         QStringLiteral("tool shred %F")};

const QByteArray foreign = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE actions [ <!ELEMENT actions (action)+> ]>
<!-- mine -->
<actions>

  <action>
    <icon>terminal</icon>
    <name>Open &amp; "see"</name>
    <name xml:lang="de">Öffnen &lt;hier&gt;</name>
    <unique-id>1-2</unique-id>
    <command>sh -c 'a &amp;&amp; b' %f</command>
    <unknown-element with="attribute"><![CDATA[a < b]]></unknown-element>
    <directories/>
  </action>
  <!-- between -->
</actions>
)";

TEST(CustomActionsFile, ReadsTheUntranslatedTexts)
{
    const CustomAction expected{
        QStringLiteral("1-2"), QStringLiteral("Open & \"see\""), {}, QStringLiteral("sh -c 'a && b' %f")};
    EXPECT_EQ(customActions(foreign), QList<CustomAction>{expected});
}

TEST(CustomActionsFile, ReadsBackWhatItAdds)
{
    const QByteArray document = withCustomActions(foreign, prefix, {lock, shred});
    const auto actions = customActions(document).value();
    ASSERT_EQ(actions.size(), 3);
    EXPECT_THAT(actions.mid(1), ElementsAre(lock, shred));
}

TEST(CustomActionsFile, KeepsEverythingElse)
{
    const QByteArray document = withCustomActions(foreign, prefix, {lock});
    for (const QByteArray part :
         {"<!DOCTYPE actions [ <!ELEMENT actions (action)+> ]>", "<!-- mine -->", "<!-- between -->",
          "<name xml:lang=\"de\">Öffnen &lt;hier&gt;</name>", "sh -c 'a &amp;&amp; b' %f",
          "<unknown-element with=\"attribute\"><![CDATA[a < b]]></unknown-element>", "<icon>terminal</icon>"}) {
        EXPECT_TRUE(document.contains(part)) << part.constData() << "\n" << document.constData();
    }
}

TEST(CustomActionsFile, RemovingWhatWasAddedGivesTheDocumentWithoutIt)
{
    const QByteArray without = withCustomActions(foreign, prefix, {});
    QByteArray document = without;
    for (int round = 0; round < 3; ++round) {
        document = withCustomActions(document, prefix, {lock, shred});
        EXPECT_EQ(customActions(document)->size(), 3);
    }
    EXPECT_EQ(withCustomActions(document, prefix, {}).toStdString(), without.toStdString());
    EXPECT_EQ(withCustomActions(without, prefix, {}).toStdString(), without.toStdString());
}

TEST(CustomActionsFile, OldOnesAreReplacedWhereverTheyAre)
{
    const QByteArray ours = "<action><unique-id>ours.old</unique-id><name>Old</name></action>";
    QByteArray document = foreign;
    document.replace("<!-- between -->", ours + "<!-- between -->" + ours);
    const auto actions = customActions(withCustomActions(document, prefix, {lock})).value();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions[0].uniqueId, QStringLiteral("1-2"));
    EXPECT_EQ(actions[1], lock);
}

TEST(CustomActionsFile, AddsToAnEmptyDocument)
{
    for (const QByteArray &document :
         {emptyCustomActions(), QByteArray("<actions/>"), QByteArray("<actions></actions>")}) {
        EXPECT_EQ(customActions(withCustomActions(document, prefix, {lock})), QList<CustomAction>{lock});
    }
}

TEST(CustomActionsFile, ADamagedDocumentIsNotRead)
{
    for (const QByteArray document :
         {"", "no xml", "<other/>", "<actions><action></actions>", "<actions><action>", "<actions/>rest",
          "<actions><action><name>&undeclared;</name></action></actions>"}) {
        EXPECT_EQ(customActions(document), std::nullopt) << document.constData();
    }
    EXPECT_EQ(customActions(foreign.left(foreign.size() / 2)), std::nullopt);
}

} // namespace

} // namespace quillhaven
