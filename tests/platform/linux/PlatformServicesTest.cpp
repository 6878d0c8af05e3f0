// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/OpenSslRandomSource.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <array>

namespace quillhaven::test {

namespace {

TEST(OpenSslRandomSource, FillsTheWholeBufferWithNewBytesEachTime)
{
    OpenSslRandomSource random;
    std::array<std::byte, 64> first{};
    std::array<std::byte, 64> second{};
    ASSERT_TRUE(random.fill(first));
    ASSERT_TRUE(random.fill(second));
    EXPECT_NE(first, second);
    EXPECT_NE(std::count(first.begin(), first.end(), std::byte{0}), 64);
    EXPECT_TRUE(random.fill({}));
}

TEST(OpenSslRandomSource, AnIdentifierIsARandomUuidInUpperCase)
{
    OpenSslRandomSource random;
    const QString id = random.uuidString();
    static const QRegularExpression form(
        QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"));
    EXPECT_TRUE(form.match(id).hasMatch()) << qUtf8Printable(id);
    EXPECT_NE(id, random.uuidString());
}

} // namespace

} // namespace quillhaven::test
