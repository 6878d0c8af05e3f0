// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <compare>

namespace quillhaven {

/// Compares two texts with the runs of digits in them as numbers. Nothing else is parsed.
///
/// Both texts are read from the left, and the first difference decides. Where both have a run of the digits 0 to 9, the
/// runs are compared as numbers of any length. Everything else is compared character by character in the order of
/// Unicode's code points, with case; a text that ends first is the smaller one. So:
///
/// - "1.9" is below "1.10", and "1.99999999999999999999" below "1.100000000000000000000".
/// - Leading zeros do not count: "1.01" and "1.1" are equivalent, and so are "1.0" and "1.00".
/// - A longer text is above its beginning: "1.0.0" is above "1.0", and "1.2.0-beta" above "1.2.0".
/// - A digit and another character compare by their code points: "1.a" is above "1.9", and "1.-" below it.
/// - Other scripts' digits are characters like any others.
///
/// Texts that are not valid UTF-16 are compared with U+FFFD in the place of what is wrong.
[[nodiscard]] std::weak_ordering compareNumerically(const QString &left, const QString &right);

} // namespace quillhaven
