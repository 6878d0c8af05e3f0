#pragma once

#include "formats/KeyDerivation.h"

namespace quillhaven {

/// AES-256-GCM (NIST SP 800-38D) in the combined form: nonce, ciphertext, tag in one run, no additional data.
namespace sealed_box {

inline constexpr size_t nonceSize = 12;
inline constexpr size_t tagSize = 16;
inline constexpr size_t overhead = nonceSize + tagSize;

/// Seals in place: `box` holds the nonce, then the plaintext, then room for the tag. Afterwards it is the combined
/// form. Throws CipherError.
void sealInPlace(const SymmetricKey &key, std::span<std::byte> box);

/// Opens in place: afterwards the plaintext stands between nonce and tag, and that part is returned. Throws
/// CipherError::authenticationFailure when the key or a byte is wrong, or the box is shorter than its overhead.
std::span<std::byte> openInPlace(const SymmetricKey &key, std::span<std::byte> box);

} // namespace sealed_box
} // namespace quillhaven
