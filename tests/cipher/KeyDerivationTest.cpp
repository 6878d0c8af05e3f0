// SPDX-License-Identifier: GPL-3.0-or-later

#include "cipher/KeyDerivation.h"
#include "support/Bytes.h"

#include <gtest/gtest.h>

namespace quillhaven::test {
namespace {

/// The bytes 0 to 31.
const QByteArray countingSalt = fromHex("000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f");

QByteArray keyFor(const QString &password, const QByteArray &salt)
{
    return hexOf(deriveRecoveryKey(password, bytesOf(salt)));
}

TEST(KeyDerivation, GivesTheFirst32BytesOfTheThirdTestCaseOfRfc5869)
{
    // The only case with an empty info whose input is valid UTF-8: 22 bytes 0x0b, no salt.
    EXPECT_EQ(keyFor(QString(22, QChar(0x0b)), {}), "8da4e775a563c18f715f802a063c5a31b8a11f5c5ee1879ec3454e5f3c738d2d");
}

// Keys computed with Python's cryptography package.
TEST(KeyDerivation, GivesTheSameKeyAsAnotherImplementation)
{
    EXPECT_EQ(keyFor(QStringLiteral("Secret123"), countingSalt),
              "9c6704a406b09ff6a688873ca28ad2b36013f52c12562a1fc186067015bd7824");
}

TEST(KeyDerivation, UsesTheUtf8BytesOfANonAsciiPassword)
{
    EXPECT_EQ(keyFor(QStringLiteral("p\u00e4ssw\u00f6rd"), countingSalt),
              "a3acb35cda83af3d3b7c32ab6e51541cbb48ffe2aa8d11efdf17efa550668517");
}

TEST(KeyDerivation, TheEmptyPasswordIsValid)
{
    constexpr auto key = "1d7e0d6f1d9da2d68dabed53b5f88345f3fd01cb75411fbe5aa4293bd8f430d6";
    EXPECT_EQ(keyFor(QStringLiteral(""), countingSalt), key);
    EXPECT_EQ(keyFor(QString(), countingSalt), key);
}

TEST(KeyDerivation, TwoSpellingsThatLookAlikeGiveDifferentKeys)
{
    const QString composed = QStringLiteral("caf\u00e9");
    const QString decomposed = composed.normalized(QString::NormalizationForm_D);
    ASSERT_EQ(decomposed.normalized(QString::NormalizationForm_C), composed);
    EXPECT_NE(keyFor(composed, countingSalt), keyFor(decomposed, countingSalt));
}

TEST(KeyDerivation, ADifferentSaltGivesADifferentKey)
{
    QByteArray other = countingSalt;
    other[31] = 0x20;
    EXPECT_NE(keyFor(QStringLiteral("Secret123"), countingSalt), keyFor(QStringLiteral("Secret123"), other));
}

TEST(KeyDerivation, BothNamesGiveTheSameKey)
{
    EXPECT_EQ(deriveKey(QStringLiteral("Secret123"), bytesOf(countingSalt)),
              deriveRecoveryKey(QStringLiteral("Secret123"), bytesOf(countingSalt)));
}

} // namespace
} // namespace quillhaven::test
