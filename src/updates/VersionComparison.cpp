// SPDX-License-Identifier: GPL-3.0-or-later

#include "updates/VersionComparison.h"

#include <QList>

#include <algorithm>
#include <span>

namespace quillhaven {

namespace {

using Characters = std::span<const uint>;

bool isDigit(uint character)
{
    return character >= U'0' && character <= U'9';
}

/// Removes the digits at the beginning of a text and returns them, without the leading zeros.
Characters takeNumber(Characters &text)
{
    const auto end = std::ranges::find_if_not(text, isDigit);
    const auto begin = std::find_if(text.begin(), end, [](uint digit) { return digit != U'0'; });
    const Characters number(begin, end);
    text = Characters(end, text.end());
    return number;
}

/// Compares two numbers without leading zeros: the one with more digits is the greater one.
std::weak_ordering compareNumbers(Characters left, Characters right)
{
    if (left.size() != right.size()) {
        return left.size() <=> right.size();
    }
    return std::lexicographical_compare_three_way(left.begin(), left.end(), right.begin(), right.end());
}

} // namespace

std::weak_ordering compareNumerically(const QString &left, const QString &right)
{
    const QList<uint> leftCharacters = left.toUcs4();
    const QList<uint> rightCharacters = right.toUcs4();
    Characters leftRest(leftCharacters);
    Characters rightRest(rightCharacters);
    while (!leftRest.empty() && !rightRest.empty()) {
        std::weak_ordering order = std::weak_ordering::equivalent;
        if (isDigit(leftRest.front()) && isDigit(rightRest.front())) {
            const Characters leftNumber = takeNumber(leftRest);
            const Characters rightNumber = takeNumber(rightRest);
            order = compareNumbers(leftNumber, rightNumber);
        } else {
            order = leftRest.front() <=> rightRest.front();
            leftRest = leftRest.subspan(1);
            rightRest = rightRest.subspan(1);
        }
        if (order != 0) {
            return order;
        }
    }
    return leftRest.size() <=> rightRest.size();
}

} // namespace quillhaven
