// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/PasswordStrength.h"

#include <gtest/gtest.h>

using namespace quillhaven;

namespace {

bool isStrong(const QString &password)
{
    return PasswordStrength::of(password).isStrong();
}

bool isLongEnough(const QString &password)
{
    return PasswordStrength::of(password).hasMinimumLength;
}

} // namespace

TEST(PasswordStrength, EightCharactersOfAllThreeClassesAreStrong)
{
    EXPECT_TRUE(isStrong(QStringLiteral("Abcdefg1")));
}

TEST(PasswordStrength, AMissingClassOrOnlySevenCharactersAreNotStrong)
{
    for (const QString &weak : {QStringLiteral("abcdefg1"), QStringLiteral("ABCDEFG1"), QStringLiteral("Abcdefgh"),
                                QStringLiteral("Abc1"), QStringLiteral("Abcdef1"), QString()}) {
        EXPECT_FALSE(isStrong(weak)) << weak.toStdString();
    }
}

TEST(PasswordStrength, CharacterClassesAreThoseOfUnicode)
{
    EXPECT_TRUE(isStrong(QStringLiteral("Ábcdefg1")));
    EXPECT_TRUE(isStrong(QStringLiteral("ΑΒΓδεζη٣"))); // Greek letters, an Arabic-Indic digit
    EXPECT_TRUE(isStrong(QStringLiteral("Привет५५"))); // Cyrillic letters, Devanagari digits
    EXPECT_FALSE(isStrong(QStringLiteral("abcdefg½")))
        << "a fraction is not a decimal digit, and there is no upper-case letter";
    EXPECT_FALSE(PasswordStrength::of(QStringLiteral("½²Ⅳ")).hasDigit);
}

TEST(PasswordStrength, ATitleCaseLetterCountsAsUpperCaseAndNotAsLower)
{
    const PasswordStrength strength = PasswordStrength::of(QStringLiteral("ǅ"));
    EXPECT_TRUE(strength.hasUppercase);
    EXPECT_FALSE(strength.hasLowercase);
}

TEST(PasswordStrength, LettersOutsideTheBasicPlaneAreRecognized)
{
    const PasswordStrength strength = PasswordStrength::of(QStringLiteral("𐐀𐐨𝟙")); // Deseret, a double-struck digit
    EXPECT_TRUE(strength.hasUppercase);
    EXPECT_TRUE(strength.hasLowercase);
    EXPECT_TRUE(strength.hasDigit);
}

TEST(PasswordStrength, LettersWithoutCaseAreNeitherUpperNorLowerCase)
{
    const PasswordStrength strength = PasswordStrength::of(QStringLiteral("漢字ªʰא"));
    EXPECT_FALSE(strength.hasUppercase);
    EXPECT_FALSE(strength.hasLowercase);
}

TEST(PasswordStrength, UserPerceivedCharactersAreCounted)
{
    EXPECT_TRUE(isLongEnough(QStringLiteral("12345678")));
    EXPECT_FALSE(isLongEnough(QStringLiteral("1234567")));
    EXPECT_FALSE(isLongEnough(QStringLiteral("e\u0301e\u0301e\u0301e\u0301"))) << "four letters with an accent each";
    EXPECT_FALSE(isLongEnough(QStringLiteral("😀😀😀😀😀😀😀"))) << "seven characters of two code units";
    EXPECT_TRUE(isLongEnough(QStringLiteral("😀😀😀😀😀😀😀😀")));
    EXPECT_FALSE(isLongEnough(QStringLiteral("🇨🇭🇩🇪🇫🇷🇮🇹"))) << "four flags";
    EXPECT_FALSE(isLongEnough(QStringLiteral("각각각각각각각"))) << "seven syllables";
    EXPECT_FALSE(isLongEnough(QStringLiteral("👩‍👩‍👧👩‍👩‍👧👩‍👩‍👧")))
        << "three families";
}

TEST(PasswordStrength, ThereIsNoMaximumLength)
{
    EXPECT_TRUE(isStrong(QString(100'000, QChar(u'a')) + QStringLiteral("B2")));
}
