// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <span>

namespace quillhaven {

/// A 256-bit key for AES.
using SymmetricKey = std::array<std::byte, 32>;

/// HKDF over SHA-256 (RFC 5869) of the password's UTF-8 bytes with the salt and an empty info, 32 bytes. There is no
/// stretching: trying a password costs one such pass. The empty password is no error. Throws CipherError.
[[nodiscard]] SymmetricKey deriveKey(const QString &password, std::span<const std::byte> salt);

/// A second name of the same derivation, used for every file that the program writes.
[[nodiscard]] SymmetricKey deriveRecoveryKey(const QString &password, std::span<const std::byte> salt);

} // namespace quillhaven
