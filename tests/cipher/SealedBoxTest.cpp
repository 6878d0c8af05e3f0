// SPDX-License-Identifier: GPL-3.0-or-later

#include "cipher/SealedBox.h"
#include "cipher/CipherError.h"
#include "support/Bytes.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quillhaven::test {
namespace {

SymmetricKey keyOf(const char *hex)
{
    const QByteArray bytes = fromHex(hex);
    SymmetricKey key{};
    std::ranges::copy(bytesOf(bytes), key.begin());
    return key;
}

QByteArray sealed(const SymmetricKey &key, const QByteArray &nonce, const QByteArray &plaintext,
                  const QByteArray &associatedData = {})
{
    QByteArray box = nonce + plaintext + QByteArray(sealed_box::tagSize, '\0');
    sealed_box::sealInPlace(key, writable(box), bytesOf(associatedData));
    return box;
}

CipherError::Case failureOfOpening(const SymmetricKey &key, QByteArray box, const QByteArray &associatedData = {})
{
    try {
        sealed_box::openInPlace(key, writable(box), bytesOf(associatedData));
    } catch (const CipherError &error) {
        return error.errorCase();
    }
    throw std::runtime_error("the box opened");
}

const SymmetricKey someKey = keyOf("feffe9928665731c6d6a8f9467308308feffe9928665731c6d6a8f9467308308");
const QByteArray someNonce = fromHex("cafebabefacedbaddecaf888");

// The published AES-256 test cases of Galois/Counter Mode, numbers 13 to 16.
TEST(SealedBox, SealsNothingToATagOnly)
{
    EXPECT_EQ(sealed({}, QByteArray(12, '\0'), {}), QByteArray(12, '\0') + fromHex("530f8afbc74536b9a963b4f1c4cb738b"));
}

TEST(SealedBox, SealsOneBlock)
{
    EXPECT_EQ(sealed({}, QByteArray(12, '\0'), QByteArray(16, '\0')).toHex(),
              "000000000000000000000000cea7403d4d606b6e074ec5d3baf39d18d0d1c8a799996bf0265b98b5d48ab919");
}

TEST(SealedBox, SealsFourBlocks)
{
    const QByteArray plaintext = fromHex("d9313225f88406e5a55909c5aff5269a86a7a9531534f7da2e4c303d8a318a72"
                                         "1c3c0c95956809532fcf0e2449a6b525b16aedf5aa0de657ba637b391aafd255");
    EXPECT_EQ(sealed(someKey, someNonce, plaintext).mid(12).toHex(),
              "522dc1f099567d07f47f37a32a84427d643a8cdcbfe5c0c97598a2bd2555d1aa"
              "8cb08e48590dbb3da7b08b1056828838c5f61e6393ba7a0abcc9f662898015ad"
              "b094dac5d93471bdec1a502270e3cc6c");
}

class SealedBoxOfSize : public ::testing::TestWithParam<int>
{
};

TEST_P(SealedBoxOfSize, OpensToTheSealedBytes)
{
    QByteArray plaintext(GetParam(), '\0');
    for (qsizetype i = 0; i < plaintext.size(); ++i) {
        plaintext[i] = static_cast<char>((i * 7 + i / 251) % 256);
    }
    QByteArray box = sealed(someKey, someNonce, plaintext);
    if (!plaintext.isEmpty()) {
        EXPECT_NE(box.mid(12, plaintext.size()), plaintext);
    }
    const auto opened = sealed_box::openInPlace(someKey, writable(box));
    EXPECT_EQ(QByteArray(reinterpret_cast<const char *>(opened.data()), static_cast<qsizetype>(opened.size())),
              plaintext);
}

constexpr int mebibyte = 1024 * 1024;
INSTANTIATE_TEST_SUITE_P(Sizes, SealedBoxOfSize,
                         ::testing::Values(0, 1, 15, 16, 17, mebibyte - 1, mebibyte, mebibyte + 1, 3 * mebibyte + 5));

TEST(SealedBox, AuthenticatesAssociatedDataThatIsNotPartOfTheBox)
{
    const QByteArray plaintext = fromHex("d9313225f88406e5a55909c5aff5269a86a7a9531534f7da2e4c303d8a318a72"
                                         "1c3c0c95956809532fcf0e2449a6b525b16aedf5aa0de657ba637b39");
    const QByteArray associatedData = fromHex("feedfacedeadbeeffeedfacedeadbeefabaddad2");
    QByteArray box = sealed(someKey, someNonce, plaintext, associatedData);
    EXPECT_EQ(box.mid(12).toHex(), "522dc1f099567d07f47f37a32a84427d643a8cdcbfe5c0c97598a2bd2555d1aa"
                                   "8cb08e48590dbb3da7b08b1056828838c5f61e6393ba7a0abcc9f662"
                                   "76fc6ece0f4e1768cddf8853bb2d551b");
    EXPECT_EQ(failureOfOpening(someKey, box), CipherError::authenticationFailure);
    EXPECT_EQ(failureOfOpening(someKey, box, associatedData + 'x'), CipherError::authenticationFailure);
    EXPECT_EQ(hexOf(sealed_box::openInPlace(someKey, writable(box), bytesOf(associatedData))), plaintext.toHex());
}

TEST(SealedBox, ABoxWithAChangedBitDoesNotOpen)
{
    const QByteArray box = sealed(someKey, someNonce, "The plaintext");
    for (qsizetype i = 0; i < box.size(); ++i) {
        QByteArray changed = box;
        changed[i] = static_cast<char>(changed[i] ^ 1);
        EXPECT_EQ(failureOfOpening(someKey, changed), CipherError::authenticationFailure) << "byte " << i;
    }
}

TEST(SealedBox, ADifferentKeyDoesNotOpen)
{
    EXPECT_EQ(failureOfOpening({}, sealed(someKey, someNonce, "The plaintext")), CipherError::authenticationFailure);
}

TEST(SealedBox, AShortenedBoxDoesNotOpen)
{
    const QByteArray box = sealed(someKey, someNonce, "The plaintext");
    for (qsizetype size = 0; size < box.size(); ++size) {
        EXPECT_EQ(failureOfOpening(someKey, box.left(size)), CipherError::authenticationFailure) << size << " bytes";
    }
}

TEST(SealedBox, RoomForLessThanNonceAndTagIsRejected)
{
    QByteArray box(sealed_box::overhead - 1, '\0');
    EXPECT_THROW(sealed_box::sealInPlace(someKey, writable(box)), CipherError);
}

} // namespace
} // namespace quillhaven::test
