// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/RandomSource.h"

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <array>

namespace quillhaven::test {

/// The tests that every source of random bytes must pass. Instantiate it with a type that has a `RandomSource
/// &source()` that works, and a `RandomSource &failingSource()` whose generator fails at the next fill.
template <typename Fixture>
class RandomSourceContract : public ::testing::Test
{
protected:
    using Bytes = std::array<std::byte, 64>;

    [[nodiscard]] RandomSource &source() { return m_fixture.source(); }
    [[nodiscard]] RandomSource &failingSource() { return m_fixture.failingSource(); }
    [[nodiscard]] Bytes filled()
    {
        Bytes bytes{};
        EXPECT_TRUE(source().fill(bytes));
        return bytes;
    }

private:
    Fixture m_fixture;
};

TYPED_TEST_SUITE_P(RandomSourceContract);

TYPED_TEST_P(RandomSourceContract, EveryByteOfTheBufferIsFilled)
{
    constexpr int fills = 16; // in all of which a byte is zero once in 2^128 times
    typename TestFixture::Bytes seen{};
    for (int i = 0; i < fills; ++i) {
        const auto bytes = this->filled();
        std::ranges::transform(bytes, seen, seen.begin(), [](std::byte a, std::byte b) { return a | b; });
    }
    EXPECT_EQ(std::ranges::count(seen, std::byte{}), 0);
}

TYPED_TEST_P(RandomSourceContract, NothingBesideTheBufferIsTouched)
{
    std::array<std::byte, 96> bytes{};
    EXPECT_TRUE(this->source().fill(std::span(bytes).subspan(32, 32)));
    EXPECT_EQ(std::ranges::count(std::span(bytes).first(32), std::byte{}), 32);
    EXPECT_EQ(std::ranges::count(std::span(bytes).last(32), std::byte{}), 32);
    EXPECT_TRUE(this->source().fill({}));
}

TYPED_TEST_P(RandomSourceContract, TwoBuffersDiffer)
{
    EXPECT_NE(this->filled(), this->filled());
}

TYPED_TEST_P(RandomSourceContract, AFailureIsFalseAndLeavesTheBufferAsItWas)
{
    typename TestFixture::Bytes bytes;
    bytes.fill(std::byte{0x5A});
    EXPECT_FALSE(this->failingSource().fill(bytes));
    EXPECT_EQ(std::ranges::count(bytes, std::byte{0x5A}), std::ssize(bytes));
}

TYPED_TEST_P(RandomSourceContract, IdentifiersAreFreshUpperCaseUuidsOfVersionFour)
{
    static const QRegularExpression form(
        QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"));
    constexpr int count = 100;
    QSet<QString> texts;
    for (int i = 0; i < count; ++i) {
        const QString text = this->source().uuidString();
        EXPECT_TRUE(form.match(text).hasMatch()) << qUtf8Printable(text);
        texts.insert(text);
    }
    EXPECT_EQ(texts.size(), count);
}

REGISTER_TYPED_TEST_SUITE_P(RandomSourceContract, EveryByteOfTheBufferIsFilled, NothingBesideTheBufferIsTouched,
                            TwoBuffersDiffer, AFailureIsFalseAndLeavesTheBufferAsItWas,
                            IdentifiersAreFreshUpperCaseUuidsOfVersionFour);

} // namespace quillhaven::test
