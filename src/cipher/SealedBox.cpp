// SPDX-License-Identifier: GPL-3.0-or-later

#include "cipher/SealedBox.h"

#include "cipher/CipherError.h"
#include "support/Calls.h"

#include <openssl/evp.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace quillhaven::sealed_box {

namespace {

// OpenSSL takes an int for a length; also small enough to stay in the cache between the cipher and the hash.
constexpr size_t chunkSize = size_t(1) << 20;

using Context = std::unique_ptr<EVP_CIPHER_CTX, Calls<EVP_CIPHER_CTX_free>>;

unsigned char *raw(std::span<std::byte> bytes)
{
    return reinterpret_cast<unsigned char *>(bytes.data());
}

const unsigned char *raw(std::span<const std::byte> bytes)
{
    return reinterpret_cast<const unsigned char *>(bytes.data());
}

void require(bool succeeded)
{
    if (!succeeded) {
        throw CipherError(CipherError::libraryFailure);
    }
}

enum Direction { Open = 0, Seal = 1 }; // as OpenSSL has it

Context contextFor(Direction direction, const SymmetricKey &key, std::span<std::byte> box,
                   std::span<const std::byte> associatedData)
{
    Context context(EVP_CIPHER_CTX_new());
    int written = 0;
    require(associatedData.size() <= chunkSize);
    require(context && EVP_CipherInit_ex2(context.get(), EVP_aes_256_gcm(), raw(std::span(std::as_const(key))),
                                          raw(box), direction, nullptr) == 1);
    require(associatedData.empty() || EVP_CipherUpdate(context.get(), nullptr, &written, raw(associatedData),
                                                       static_cast<int>(associatedData.size())) == 1);
    return context;
}

} // namespace

void sealInPlace(const SymmetricKey &key, std::span<std::byte> box, std::span<const std::byte> associatedData)
{
    sealInPlace(key, box, [size = box.size()](size_t) { return size; }, [](size_t) {}, associatedData);
}

void sealInPlace(const SymmetricKey &key, std::span<std::byte> box, const std::function<size_t(size_t)> &arrived,
                 const std::function<void(size_t)> &progress, std::span<const std::byte> associatedData)
{
    require(box.size() >= overhead);
    const Context context = contextFor(Seal, key, box, associatedData);

    const std::span<std::byte> text = box.subspan(nonceSize, box.size() - overhead);
    for (size_t done = 0; done < text.size();) {
        const size_t there = std::min(arrived(done), text.size());
        const auto chunk = text.subspan(done, std::min(chunkSize, there - done));
        int written = 0;
        require(EVP_EncryptUpdate(context.get(), raw(chunk), &written, raw(chunk), static_cast<int>(chunk.size())) ==
                1);
        done += chunk.size();
        progress(nonceSize + done);
    }
    int written = 0;
    const auto tag = box.last(tagSize);
    require(EVP_EncryptFinal_ex(context.get(), raw(tag), &written) == 1);
    require(EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_GET_TAG, static_cast<int>(tagSize), raw(tag)) == 1);
    progress(box.size());
}

std::span<std::byte> openInPlace(const SymmetricKey &key, std::span<std::byte> box,
                                 std::span<const std::byte> associatedData)
{
    if (box.size() < overhead) {
        throw CipherError(CipherError::authenticationFailure);
    }
    const Context context = contextFor(Open, key, box, associatedData);

    const std::span<std::byte> text = box.subspan(nonceSize, box.size() - overhead);
    for (size_t done = 0; done < text.size(); done += chunkSize) {
        const auto chunk = text.subspan(done, std::min(chunkSize, text.size() - done));
        int written = 0;
        require(EVP_DecryptUpdate(context.get(), raw(chunk), &written, raw(chunk), static_cast<int>(chunk.size())) ==
                1);
    }
    int written = 0;
    unsigned char rest[EVP_MAX_BLOCK_LENGTH];
    const auto tag = box.last(tagSize);
    require(EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_SET_TAG, static_cast<int>(tagSize), raw(tag)) == 1);
    if (EVP_DecryptFinal_ex(context.get(), rest, &written) != 1) {
        throw CipherError(CipherError::authenticationFailure);
    }
    return text;
}

} // namespace quillhaven::sealed_box
