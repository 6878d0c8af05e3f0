// SPDX-License-Identifier: GPL-3.0-or-later

#include "cipher/KeyDerivation.h"

#include "cipher/CipherError.h"
#include "support/Calls.h"

#include <QByteArray>

#include <openssl/core_names.h>
#include <openssl/kdf.h>
#include <openssl/params.h>

#include <memory>

namespace quillhaven {

namespace {

OSSL_PARAM octets(const char *name, const void *data, size_t size)
{
    return OSSL_PARAM_construct_octet_string(name, const_cast<void *>(data), size);
}

} // namespace

SymmetricKey deriveKey(const QString &password, std::span<const std::byte> salt)
{
    const QByteArray inputKeyMaterial = password.toUtf8();
    const std::unique_ptr<EVP_KDF, Calls<EVP_KDF_free>> kdf(EVP_KDF_fetch(nullptr, OSSL_KDF_NAME_HKDF, nullptr));
    const std::unique_ptr<EVP_KDF_CTX, Calls<EVP_KDF_CTX_free>> context(kdf ? EVP_KDF_CTX_new(kdf.get()) : nullptr);
    char digest[] = "SHA256";
    // An empty QByteArray still has an address, so that an empty password reaches the library as an empty key.
    const OSSL_PARAM parameters[] = {
        OSSL_PARAM_construct_utf8_string(OSSL_KDF_PARAM_DIGEST, digest, 0),
        octets(OSSL_KDF_PARAM_KEY, inputKeyMaterial.constData(), static_cast<size_t>(inputKeyMaterial.size())),
        octets(OSSL_KDF_PARAM_SALT, salt.data(), salt.size()),
        OSSL_PARAM_construct_end(),
    };
    SymmetricKey key{};
    if (!context ||
        EVP_KDF_derive(context.get(), reinterpret_cast<unsigned char *>(key.data()), key.size(), parameters) != 1) {
        throw CipherError(CipherError::libraryFailure);
    }
    return key;
}

SymmetricKey deriveRecoveryKey(const QString &password, std::span<const std::byte> salt)
{
    return deriveKey(password, salt);
}

} // namespace quillhaven
