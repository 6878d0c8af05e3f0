// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cipher/KeyDerivation.h"

#include <functional>

namespace quillhaven {

/// AES-256-GCM (NIST SP 800-38D) in the combined form: nonce, ciphertext and tag in one run of bytes.
namespace sealed_box {

inline constexpr size_t nonceSize = 12;
inline constexpr size_t tagSize = 16;
inline constexpr size_t overhead = nonceSize + tagSize;

/// Seals in place: `box` holds the nonce, then the plaintext, then room for the tag. Afterwards it is the combined
/// form. The nonce must be random and must never be used twice with one key. `associatedData` is authenticated and is
/// no part of the box. Throws CipherError.
void sealInPlace(const SymmetricKey &key, std::span<std::byte> box, std::span<const std::byte> associatedData = {});

/// The same for a plaintext that is still arriving. `arrived` blocks until more than `done` bytes of it are there, and
/// returns how many are. `progress` is called with the number of bytes from the start of the box that will not change
/// any more, after each mebibyte at most and at the end.
void sealInPlace(const SymmetricKey &key, std::span<std::byte> box, const std::function<size_t(size_t done)> &arrived,
                 const std::function<void(size_t)> &progress, std::span<const std::byte> associatedData = {});

/// Opens in place: afterwards the plaintext is between nonce and tag, and that part is returned. Throws
/// CipherError::authenticationFailure when the key, the associated data or a byte is wrong, or the box is shorter than
/// its overhead. What the box then holds between nonce and tag must not be used.
std::span<std::byte> openInPlace(const SymmetricKey &key, std::span<std::byte> box,
                                 std::span<const std::byte> associatedData = {});

} // namespace sealed_box
} // namespace quillhaven
