// SPDX-License-Identifier: GPL-3.0-or-later

#include "updates/VersionComparison.h"

#include <QList>
#include <QStringList>
#include <gtest/gtest.h>

using namespace quillhaven;

namespace {

/// Expects `above` to be above `below`, both ways.
void expectAbove(const QString &above, const QString &below)
{
    EXPECT_TRUE(compareNumerically(above, below) > 0) << qPrintable(above + QStringLiteral(" > ") + below);
    EXPECT_TRUE(compareNumerically(below, above) < 0) << qPrintable(below + QStringLiteral(" < ") + above);
}

void expectEquivalent(const QString &left, const QString &right)
{
    EXPECT_TRUE(compareNumerically(left, right) == 0) << qPrintable(left + QStringLiteral(" = ") + right);
    EXPECT_TRUE(compareNumerically(right, left) == 0) << qPrintable(right + QStringLiteral(" = ") + left);
}

} // namespace

TEST(VersionComparison, RunsOfDigitsCompareAsNumbers)
{
    expectAbove(QStringLiteral("1.10"), QStringLiteral("1.9"));
    expectAbove(QStringLiteral("10.0"), QStringLiteral("9.9"));
    expectAbove(QStringLiteral("1.2.10"), QStringLiteral("1.2.9"));
    expectEquivalent(QStringLiteral("1.2.3"), QStringLiteral("1.2.3"));
}

TEST(VersionComparison, TheFirstDifferenceDecides)
{
    expectAbove(QStringLiteral("2.0.0"), QStringLiteral("1.99.99"));
    expectAbove(QStringLiteral("1.3"), QStringLiteral("1.2.9.9"));
}

TEST(VersionComparison, NumbersOfAnyLengthCompare)
{
    expectAbove(QStringLiteral("1.18446744073709551616"), QStringLiteral("1.18446744073709551615"));
    expectAbove(QStringLiteral("1.100000000000000000000"), QStringLiteral("1.99999999999999999999"));
    const QString nines(100'000, QLatin1Char('9'));
    expectAbove(QLatin1Char('1') + nines, nines);
    expectEquivalent(nines, QStringLiteral("000") + nines);
}

TEST(VersionComparison, LeadingZerosDoNotCount)
{
    expectEquivalent(QStringLiteral("1.01"), QStringLiteral("1.1"));
    expectEquivalent(QStringLiteral("1.00"), QStringLiteral("1.0"));
    expectEquivalent(QStringLiteral("1.01.2"), QStringLiteral("1.1.002"));
    expectAbove(QStringLiteral("1.010"), QStringLiteral("1.9"));
    expectAbove(QStringLiteral("1.01.3"), QStringLiteral("1.1.2"));
}

TEST(VersionComparison, ALongerTextIsAboveItsBeginning)
{
    expectAbove(QStringLiteral("1.0.0"), QStringLiteral("1.0"));
    expectAbove(QStringLiteral("1.2.0"), QStringLiteral("1.2"));
    expectAbove(QStringLiteral("1."), QStringLiteral("1"));
    expectAbove(QStringLiteral("0"), QString());
    expectEquivalent(QString(), QStringLiteral(""));
}

TEST(VersionComparison, APrereleaseSuffixIsALongerText)
{
    expectAbove(QStringLiteral("1.2.0-beta"), QStringLiteral("1.2.0"));
    expectAbove(QStringLiteral("1.2.0-beta"), QStringLiteral("1.2.0-alpha"));
    expectAbove(QStringLiteral("1.2.0-beta10"), QStringLiteral("1.2.0-beta9"));
    expectAbove(QStringLiteral("1.2.1"), QStringLiteral("1.2.0-beta"));
}

TEST(VersionComparison, ADigitAndAnotherCharacterCompareByTheirCodePoints)
{
    expectAbove(QStringLiteral("1.a"), QStringLiteral("1.9"));
    expectAbove(QStringLiteral("1.a"), QStringLiteral("1.999"));
    expectAbove(QStringLiteral("1.9"), QStringLiteral("1.-"));
    expectAbove(QStringLiteral("1.0"), QStringLiteral("1..0"));
    expectAbove(QStringLiteral("v1.0"), QStringLiteral("2.0"));
    expectAbove(QStringLiteral("1.0a"), QStringLiteral("1.0.9"));
    expectAbove(QStringLiteral("1.10"), QStringLiteral("1.1a")); // the numbers 10 and 1 differ first
}

TEST(VersionComparison, OtherCharactersCompareByTheirCodePoints)
{
    expectAbove(QStringLiteral("b"), QStringLiteral("a"));
    expectAbove(QStringLiteral("a"), QStringLiteral("B"));
    expectAbove(QStringLiteral("é"), QStringLiteral("z"));
    // In UTF-16 the order of these two is the other one.
    expectAbove(QStringLiteral("😀"), QStringLiteral("\uFF5E"));
}

TEST(VersionComparison, OtherScriptsDigitsAreCharacters)
{
    expectAbove(QStringLiteral("٩"), QStringLiteral("١٠"));
    expectAbove(QStringLiteral("١"), QStringLiteral("9"));
}

TEST(VersionComparison, WhatIsNoUtf16ComparesAsTheReplacementCharacter)
{
    expectEquivalent(QString(QChar(0xD800)), QString(QChar(0xFFFD)));
}

TEST(VersionComparison, TheOrderIsTransitive)
{
    const QStringList texts{
        QStringLiteral(""),    QStringLiteral("-"),      QStringLiteral("."),      QStringLiteral("0"),
        QStringLiteral("00"),  QStringLiteral("1"),      QStringLiteral("01"),     QStringLiteral("1."),
        QStringLiteral("1.0"), QStringLiteral("1.00"),   QStringLiteral("1.0.0"),  QStringLiteral("1.0-b"),
        QStringLiteral("1.a"), QStringLiteral("1a"),     QStringLiteral("01a"),    QStringLiteral("9"),
        QStringLiteral("10"),  QStringLiteral("a"),      QStringLiteral("a1"),     QStringLiteral("a01"),
        QStringLiteral("a10"), QStringLiteral("\u0661"), QStringLiteral("\uFF5E"), QStringLiteral("😀")};
    for (const QString &a : texts) {
        for (const QString &b : texts) {
            for (const QString &c : texts) {
                if (compareNumerically(a, b) <= 0 && compareNumerically(b, c) <= 0) {
                    EXPECT_TRUE(compareNumerically(a, c) <= 0) << qPrintable(a + u' ' + b + u' ' + c);
                }
            }
        }
    }
}
