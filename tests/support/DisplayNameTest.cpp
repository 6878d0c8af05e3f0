// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/DisplayName.h"
#include "support/PrintText.h"

#include <gtest/gtest.h>

namespace quillhaven {
namespace {

QString utf16(std::u16string_view text)
{
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

TEST(DisplayName, PlainNamesStayAsTheyAre)
{
    for (const std::u16string_view name :
         {u"", u"a.txt", u" two  spaces ", u"Übung é.txt", u"日本語.pdf", u"🔒 secret", u"👩‍👩‍👧.png", u"/",
          u"/home/a b/c", u"quo\"te's <b>", u"\u2400"}) {
        EXPECT_EQ(displayName(utf16(name)), utf16(name));
    }
}

TEST(DisplayName, LineBreaksAndControlCharactersAreVisibleAndOnOneLine)
{
    EXPECT_EQ(displayName(utf16(u"two\nlines\r.txt")), utf16(u"two↵lines↵.txt"));
    EXPECT_EQ(displayName(utf16(u"a\tb\u001b[1m\u007f")), utf16(u"a\ufffdb\ufffd[1m\ufffd"));
    EXPECT_EQ(displayName(utf16(u"a\u0085b\u2028c\u2029d")), utf16(u"a↵b↵c↵d"));
    EXPECT_EQ(displayName(utf16(u"a\u009bb")), utf16(u"a\ufffdb"));
}

TEST(DisplayName, DirectionMarksCannotReverseAName)
{
    EXPECT_EQ(displayName(utf16(u"\u202egnp.exe")), utf16(u"\ufffdgnp.exe"));
    for (const char16_t mark :
         u"\u061c\u200e\u200f\u202a\u202b\u202c\u202d\u202e\u2066\u2067\u2068\u2069\u200b\ufeff") {
        if (mark != 0) {
            EXPECT_EQ(displayName(QLatin1Char('a') + QString(QChar(mark)) + QLatin1Char('b')), utf16(u"a\ufffdb"))
                << static_cast<int>(mark);
        }
    }
}

TEST(DisplayName, NamesFromRightToLeftAreIsolatedAndKeepTheirCharacters)
{
    EXPECT_EQ(displayName(utf16(u"שלום.pdf")), utf16(u"\u2068שלום.pdf\u2069"));
    EXPECT_EQ(displayName(utf16(u"/home/תיק/a.txt")), utf16(u"\u2066/home/\u2068תיק\u2069/a.txt\u2069"));
    EXPECT_EQ(displayName(utf16(u"ملف\u2069.txt")), utf16(u"\u2068ملف\ufffd.txt\u2069"))
        << "a name cannot end its own isolation";
}

TEST(DisplayName, TheResultForANameOrPathStaysAsItIs)
{
    for (const std::u16string_view name :
         {u"שלום.pdf", u"/home/תיק/a.txt", u"\u202egnp.\nexe", u"a/b", u"ملف\u2069.txt"}) {
        const QString once = displayName(utf16(name));
        EXPECT_EQ(displayName(once), once);
    }
}

TEST(DisplayName, AnIsolateOfTheNameItselfIsNotShown)
{
    EXPECT_EQ(displayName(utf16(u"\u2068plain.txt\u2069")), utf16(u"plain.txt"));
    EXPECT_EQ(displayName(utf16(u"\u2069")), utf16(u"\ufffd"));
}

} // namespace
} // namespace quillhaven
