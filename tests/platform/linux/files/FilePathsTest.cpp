// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/FilePaths.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace quillhaven::test {

namespace {

constexpr auto action = FileError::Action::Read;

QByteArray roundTrip(const QByteArray &path)
{
    return encodedPath(decodedPath(path), action);
}

QString units(std::initializer_list<char16_t> values)
{
    QString text;
    for (const char16_t value : values) {
        text += QChar(value);
    }
    return text;
}

bool isRejected(const QString &path)
{
    try {
        (void)encodedPath(path, action);
    } catch (const FileError &error) {
        EXPECT_EQ(error.kind(), FileError::Kind::InvalidName);
        return true;
    }
    return false;
}

TEST(FilePaths, ValidTextIsUnchanged)
{
    for (const QString &text :
         {QStringLiteral("/home/a b/c"), QStringLiteral("/🪶🔐/שלום/é"), QStringLiteral("/\uFEFFstart"),
          QStringLiteral("\uFEFF/mark"), QStringLiteral("/real\uFFFDname"), units({u'/', 0xFFFF, 0xFDD0}),
          units({u'/', 0xDBFF, 0xDFFF}), units({u'/', 0xD800, 0xDC80}), QString()}) {
        EXPECT_EQ(decodedPath(text.toUtf8()), text);
        EXPECT_EQ(encodedPath(text, action), text.toUtf8());
    }
}

TEST(FilePaths, AnInvalidByteBecomesALowSurrogate)
{
    EXPECT_EQ(decodedPath("/a\xFFz"), units({u'/', u'a', 0xDCFF, u'z'}));
    EXPECT_EQ(decodedPath("\x80"), units({0xDC80}));
    EXPECT_EQ(decodedPath("\xC3"), units({0xDCC3})) << "a truncated sequence";
    EXPECT_EQ(decodedPath("\xC3/\xA9"), units({0xDCC3, u'/', 0xDCA9}));
    EXPECT_EQ(decodedPath("\xFF\xC3\xA9"), units({0xDCFF, 0xE9})) << "the following bytes are decoded as text";
}

TEST(FilePaths, EverySingleByteIsPreserved)
{
    for (int byte = 1; byte < 256; ++byte) {
        const QByteArray alone(1, static_cast<char>(byte));
        EXPECT_EQ(roundTrip(alone), alone) << byte;
        EXPECT_EQ(roundTrip("/a" + alone + "b"), "/a" + alone + "b") << byte;
        EXPECT_EQ(roundTrip(alone + "\xF0\x9F\x94\x90" + alone), alone + "\xF0\x9F\x94\x90" + alone) << byte;
    }
}

TEST(FilePaths, InvalidSequencesArePreserved)
{
    for (const char *bytes :
         {"\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xF0\x80\x80\x80",      // overlong
          "\xED\xA0\x80", "\xED\xB2\x80", "\xED\xBF\xBF",                  // surrogates
          "\xED\xA0\x80\xED\xB2\x80",                                      // a surrogate pair
          "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xF8\x88\x80\x80\x80",  // beyond the last code point
          "\xE2\x82", "\xF0\x9F\x94", "\xF0\x9F\x94/", "\xE2\x82\xC3\xA9", // truncated
          "\xEF\xBB\xBF\xFF", "\xFF\xFE", "\xFE\xFF"}) {                   // byte order marks
        EXPECT_EQ(roundTrip(bytes), QByteArray(bytes)) << QByteArray(bytes).toHex().constData();
    }
}

TEST(FilePaths, AnyBytesArePreservedAndDecodedUniquely)
{
    std::mt19937 random(1);
    // Mostly bytes that are significant for a decoder.
    const QByteArray pieces("\x01/a\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC2\xC3\xDF\xE0\xE2\xED\xEF\xF0\xF4\xF5\xFF");
    std::uniform_int_distribution<qsizetype> piece(0, pieces.size() - 1);
    std::uniform_int_distribution<qsizetype> length(0, 12);
    std::map<QString, QByteArray> seen;
    for (int i = 0; i < 50'000; ++i) {
        QByteArray path;
        for (qsizetype rest = length(random); rest > 0; --rest) {
            path += pieces.at(piece(random));
        }
        const QString text = decodedPath(path);
        ASSERT_EQ(encodedPath(text, action), path) << path.toHex().constData();
        ASSERT_EQ(seen.emplace(text, path).first->second, path) << path.toHex().constData();
    }
}

TEST(FilePaths, SurrogatesThatRepresentNoByteAreRejected)
{
    EXPECT_TRUE(isRejected(units({u'/', 0xD800})));
    EXPECT_TRUE(isRejected(units({u'/', 0xD800, u'a'})));
    EXPECT_TRUE(isRejected(units({u'/', 0xD800, 0xD800, 0xDC80})));
    EXPECT_TRUE(isRejected(units({u'/', 0xDC00})));
    EXPECT_TRUE(isRejected(units({u'/', 0xDC41}))) << "a byte that is valid text";
    EXPECT_TRUE(isRejected(units({u'/', 0xDC2F}))) << "it would be a slash";
    EXPECT_TRUE(isRejected(units({u'/', 0xDC7F})));
    EXPECT_TRUE(isRejected(units({u'/', 0xDD00})));
    EXPECT_TRUE(isRejected(units({u'/', 0xDFFF})));
}

TEST(FilePaths, SurrogatesThatTogetherRepresentValidTextAreRejected)
{
    // Otherwise one file would have two names.
    EXPECT_TRUE(isRejected(units({0xDCC3, 0xDCA9})));
    EXPECT_TRUE(isRejected(units({0xDCF0, 0xDC9F, 0xDC94, 0xDC90})));
    EXPECT_TRUE(isRejected(units({u'a', 0xDCC3, 0xDCA9, 0xDCFF})));
    EXPECT_FALSE(isRejected(units({0xDCA9, 0xDCC3})));
}

TEST(FilePaths, ANullCharacterIsRejected)
{
    EXPECT_TRUE(isRejected(QStringLiteral("/a") + QChar(u'\0') + QStringLiteral("b")));
}

} // namespace

} // namespace quillhaven::test
