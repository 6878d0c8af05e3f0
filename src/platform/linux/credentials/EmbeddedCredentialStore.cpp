// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/credentials/EmbeddedCredentialStore.h"

#include "platform/linux/files/FolderEntries.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <openssl/evp.h>
#include <openssl/rand.h>

#include <algorithm>
#include <memory>

namespace quillhaven {

namespace {

constexpr int keySize = 32;
constexpr int nonceSize = 12;
constexpr int tagSize = 16;
const QString sealedType = QStringLiteral("sealed");

struct ContextDeleter
{
    void operator()(EVP_CIPHER_CTX *context) const { EVP_CIPHER_CTX_free(context); }
};
using Context = std::unique_ptr<EVP_CIPHER_CTX, ContextDeleter>;

unsigned char *raw(QByteArray &bytes, qsizetype offset = 0)
{
    return reinterpret_cast<unsigned char *>(bytes.data()) + offset;
}

const unsigned char *raw(const QByteArray &bytes, qsizetype offset = 0)
{
    return reinterpret_cast<const unsigned char *>(bytes.constData()) + offset;
}

QString entryName(const QString &service, const QString &account)
{
    return service + QChar(0x1f) + account;
}

/// Nonce, ciphertext, tag; the entry's name is authenticated with them, so that values cannot be swapped.
std::optional<QByteArray> sealed(const QByteArray &key, const QString &entry, const QByteArray &value)
{
    const QByteArray name = entry.toUtf8();
    QByteArray box(nonceSize + value.size() + tagSize, '\0');
    const Context context(EVP_CIPHER_CTX_new());
    int length = 0;
    const bool isSealed =
        context && RAND_bytes(raw(box), nonceSize) == 1 &&
        EVP_EncryptInit_ex2(context.get(), EVP_aes_256_gcm(), raw(key), raw(box), nullptr) == 1 &&
        EVP_EncryptUpdate(context.get(), nullptr, &length, raw(name), static_cast<int>(name.size())) == 1 &&
        EVP_EncryptUpdate(context.get(), raw(box, nonceSize), &length, raw(value), static_cast<int>(value.size())) ==
            1 &&
        EVP_EncryptFinal_ex(context.get(), raw(box, nonceSize + length), &length) == 1 &&
        EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_GET_TAG, tagSize, raw(box, box.size() - tagSize)) == 1;
    return isSealed ? std::optional(box) : std::nullopt;
}

std::optional<QByteArray> opened(const QByteArray &key, const QString &entry, QByteArray box)
{
    const qsizetype valueSize = box.size() - nonceSize - tagSize;
    if (valueSize < 0) {
        return std::nullopt;
    }
    const QByteArray name = entry.toUtf8();
    QByteArray value(valueSize, '\0');
    const Context context(EVP_CIPHER_CTX_new());
    int length = 0;
    unsigned char rest[EVP_MAX_BLOCK_LENGTH];
    const bool isOpened =
        context && EVP_DecryptInit_ex2(context.get(), EVP_aes_256_gcm(), raw(key), raw(box), nullptr) == 1 &&
        EVP_DecryptUpdate(context.get(), nullptr, &length, raw(name), static_cast<int>(name.size())) == 1 &&
        EVP_DecryptUpdate(context.get(), raw(value), &length, raw(box, nonceSize), static_cast<int>(valueSize)) == 1 &&
        EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_SET_TAG, tagSize, raw(box, box.size() - tagSize)) == 1 &&
        EVP_DecryptFinal_ex(context.get(), rest, &length) == 1;
    return isOpened ? std::optional(value) : std::nullopt;
}

} // namespace

EmbeddedCredentialStore::EmbeddedCredentialStore(const QString &directory) : m_directory(directory) {}

bool EmbeddedCredentialStore::open()
{
    if (!m_isOpen) {
        QDir().mkpath(m_directory);
        m_isOpen =
            m_database.open(m_directory + QStringLiteral("/credentials.db")) == SqliteDatabase::OpenResult::Opened;
    }
    return m_isOpen;
}

QString EmbeddedCredentialStore::keyPath() const
{
    return m_directory + QStringLiteral("/credentials.key");
}

std::optional<QByteArray> EmbeddedCredentialStore::storedKey() const
{
    QFile file(keyPath());
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray bytes = file.read(keySize + 1);
    return bytes.size() == keySize ? std::optional(bytes) : std::nullopt;
}

std::optional<QByteArray> EmbeddedCredentialStore::sealingKey()
{
    const auto stored = storedKey();
    const auto rows = m_database.rows();
    if (!rows) {
        return std::nullopt;
    }
    if (rows->isEmpty()) {
        return stored ? stored : makeKey();
    }
    // Writing under a key that opens nothing of what is there would hide that the right one is lost.
    const auto opensUnderStored = [&stored](const auto &row) {
        return opened(*stored, row.key, row.value).has_value();
    };
    return stored && std::ranges::any_of(*rows, opensUnderStored) ? stored : std::nullopt;
}

std::optional<QByteArray> EmbeddedCredentialStore::makeKey() const
{
    QByteArray fresh(keySize, '\0');
    QSaveFile saved(keyPath());
    if (RAND_bytes(raw(fresh), keySize) != 1 || !saved.open(QIODevice::WriteOnly) ||
        !saved.setPermissions(QFile::ReadOwner | QFile::WriteOwner) || saved.write(fresh) != fresh.size() ||
        !saved.commit() || !syncParentFolders(QFile::encodeName(keyPath()))) {
        return std::nullopt;
    }
    return fresh;
}

CredentialStatus EmbeddedCredentialStore::store(const QString &entry, const QByteArray &value)
{
    const auto key = sealingKey();
    if (!key) {
        return credentialDecodeFailed;
    }
    const auto box = sealed(*key, entry, value);
    return box && m_database.store({entry, sealedType, *box}) ? credentialSuccess : credentialNotAvailable;
}

CredentialStatus EmbeddedCredentialStore::add(const QString &service, const QString &account, const QByteArray &value)
{
    const QString entry = entryName(service, account);
    std::optional<SqliteDatabase::Row> row;
    if (!open() || !m_database.read(entry, row)) {
        return credentialNotAvailable;
    }
    return row ? credentialDuplicateItem : store(entry, value);
}

CredentialStatus EmbeddedCredentialStore::update(const QString &service, const QString &account,
                                                 const QByteArray &value)
{
    const QString entry = entryName(service, account);
    std::optional<SqliteDatabase::Row> row;
    if (!open() || !m_database.read(entry, row)) {
        return credentialNotAvailable;
    }
    return row ? store(entry, value) : credentialItemNotFound;
}

CredentialStore::Match EmbeddedCredentialStore::copyMatching(const QString &service, const QString &account)
{
    const QString entry = entryName(service, account);
    std::optional<SqliteDatabase::Row> row;
    if (!open() || !m_database.read(entry, row)) {
        return {credentialNotAvailable, std::nullopt};
    }
    if (!row) {
        return {credentialItemNotFound, std::nullopt};
    }
    const auto key = storedKey();
    const auto value = key ? opened(*key, entry, row->value) : std::nullopt;
    return value ? Match{credentialSuccess, value} : Match{credentialDecodeFailed, std::nullopt};
}

CredentialStatus EmbeddedCredentialStore::remove(const QString &service, const QString &account)
{
    const QString entry = entryName(service, account);
    std::optional<SqliteDatabase::Row> row;
    if (!open() || !m_database.read(entry, row)) {
        return credentialNotAvailable;
    }
    if (!row) {
        return credentialItemNotFound;
    }
    return m_database.remove(entry) ? credentialSuccess : credentialNotAvailable;
}

} // namespace quillhaven
