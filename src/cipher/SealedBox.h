// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cipher/KeyDerivation.h"

#include <functional>

namespace quillhaven {

/// AES-256-GCM (NIST SP 800-38D) in the combined form: nonce, ciphertext, tag in one run, no additional data.
namespace sealed_box {

inline constexpr size_t nonceSize = 12;
inline constexpr size_t tagSize = 16;
inline constexpr size_t overhead = nonceSize + tagSize;

/// Seals in place: `box` holds the nonce, then the plaintext, then room for the tag. Afterwards it is the combined
/// form. Throws CipherError.
///
/// The plaintext may still be arriving: `arrived` blocks until more than `done` bytes of it are there and says how
/// many are. `progress` is called with the number of bytes from the start of the box that will not change any more,
/// after each stretch of a mebibyte at most and at the end.
void sealInPlace(const SymmetricKey &key, std::span<std::byte> box, const std::function<size_t(size_t done)> &arrived,
                 const std::function<void(size_t)> &progress);
/// The same for a plaintext that is there.
void sealInPlace(const SymmetricKey &key, std::span<std::byte> box);

/// Opens in place: afterwards the plaintext stands between nonce and tag, and that part is returned. Throws
/// CipherError::authenticationFailure when the key or a byte is wrong, or the box is shorter than its overhead.
std::span<std::byte> openInPlace(const SymmetricKey &key, std::span<std::byte> box);

} // namespace sealed_box
} // namespace quillhaven
