// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/credentials/EmbeddedCredentialStore.h"

#include "cipher/CipherError.h"
#include "cipher/SealedBox.h"
#include "platform/linux/files/FolderEntries.h"
#include "support/printLogger.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <algorithm>

namespace quillhaven {

namespace {

constexpr auto nonceSize = static_cast<qsizetype>(sealed_box::nonceSize);
constexpr auto tagSize = static_cast<qsizetype>(sealed_box::tagSize);
const QString sealedType = QStringLiteral("sealed");

QString entryName(const QString &service, const QString &account)
{
    return service + QChar(0x1f) + account;
}

std::span<std::byte> writableBytes(QByteArray &bytes)
{
    return std::as_writable_bytes(std::span(bytes.data(), static_cast<size_t>(bytes.size())));
}

/// Nonce, ciphertext, tag. The entry's name is authenticated with them, so that values cannot be swapped.
std::optional<QByteArray> sealed(RandomSource &random, const SymmetricKey &key, const QString &entry,
                                 const QByteArray &value)
{
    const QByteArray name = entry.toUtf8();
    QByteArray box = QByteArray(nonceSize, '\0') + value + QByteArray(tagSize, '\0');
    if (!random.fill(writableBytes(box).first(sealed_box::nonceSize))) {
        return std::nullopt;
    }
    try {
        sealed_box::sealInPlace(key, writableBytes(box), std::as_bytes(std::span(name)));
    } catch (const CipherError &) {
        return std::nullopt; // dropped: the status says it
    }
    return box;
}

std::optional<QByteArray> opened(const SymmetricKey &key, const QString &entry, QByteArray box)
{
    const QByteArray name = entry.toUtf8();
    try {
        sealed_box::openInPlace(key, writableBytes(box), std::as_bytes(std::span(name)));
    } catch (const CipherError &) {
        return std::nullopt; // dropped: the status says it
    }
    return box.mid(nonceSize, box.size() - nonceSize - tagSize);
}

} // namespace

EmbeddedCredentialStore::EmbeddedCredentialStore(const QString &directory, RandomSource &random)
    : m_directory(directory), m_random(random)
{
}

bool EmbeddedCredentialStore::open()
{
    if (!m_isOpen) {
        QDir().mkpath(m_directory);
        m_lastOpening = m_database.open(databasePath());
        m_isOpen = m_lastOpening == SqliteDatabase::OpenResult::Opened;
    }
    return m_isOpen;
}

EmbeddedCredentialStore::Content EmbeddedCredentialStore::content()
{
    if (!m_isOpen && !QFile::exists(databasePath()) && !QFile::exists(databasePath() + QStringLiteral("-wal"))) {
        return Content::None;
    }
    if (!open()) {
        return m_lastOpening == SqliteDatabase::OpenResult::Damaged ? Content::Damaged : Content::Unusable;
    }
    const auto rows = m_database.rows();
    if (!rows) {
        return Content::Unusable;
    }
    return rows->isEmpty() ? Content::Empty : Content::Entries;
}

void EmbeddedCredentialStore::setAsideIfUnusable()
{
    const Content found = content();
    if (found != Content::Damaged && found != Content::Unusable) {
        return;
    }
    m_database.close();
    m_isOpen = false;
    const QString stamp = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMddTHHmmsszzzZ"));
    const QString suffix = QStringLiteral(".unusable-") + stamp;
    printLogger(QStringLiteral("⚠️ The store of credentials ") + databasePath() +
                QStringLiteral(" cannot be used. It is set aside as ") + databasePath() + suffix);
    for (const QString &part : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")}) {
        QFile::rename(databasePath() + part, databasePath() + suffix + part);
    }
    QFile::rename(keyPath(), keyPath() + suffix);
}

CredentialStatus EmbeddedCredentialStore::prepareForWriting()
{
    if (!open()) {
        return credentialNotAvailable;
    }
    if (!sealingKey()) {
        return credentialDecodeFailed;
    }
    bool isStored = false;
    const auto storeAndUndo = [this, &isStored] {
        isStored = m_database.store({QStringLiteral("writable"), sealedType, QByteArray(1, '\0')});
        return false;
    };
    (void)m_database.inTransaction(storeAndUndo); // always false
    return isStored ? credentialSuccess : credentialNotAvailable;
}

QString EmbeddedCredentialStore::databasePath() const
{
    return m_directory + QStringLiteral("/credentials.db");
}

QString EmbeddedCredentialStore::keyPath() const
{
    return m_directory + QStringLiteral("/credentials.key");
}

std::optional<SymmetricKey> EmbeddedCredentialStore::storedKey() const
{
    QFile file(keyPath());
    SymmetricKey key{};
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray bytes = file.read(static_cast<qint64>(key.size()) + 1);
    if (static_cast<size_t>(bytes.size()) != key.size()) {
        return std::nullopt;
    }
    std::ranges::copy(std::as_bytes(std::span(bytes)), key.begin());
    return key;
}

std::optional<SymmetricKey> EmbeddedCredentialStore::sealingKey()
{
    const auto stored = storedKey();
    const auto rows = m_database.rows();
    if (!rows) {
        return std::nullopt;
    }
    if (rows->isEmpty()) {
        return stored ? stored : makeKey();
    }
    // To seal under a key that opens none of the values would hide that the right one is lost.
    const auto opensUnderStored = [&stored](const auto &row) {
        return opened(*stored, row.key, row.value).has_value();
    };
    return stored && std::ranges::any_of(*rows, opensUnderStored) ? stored : std::nullopt;
}

std::optional<SymmetricKey> EmbeddedCredentialStore::makeKey()
{
    SymmetricKey fresh{};
    QSaveFile saved(keyPath());
    const auto size = static_cast<qint64>(fresh.size());
    if (!m_random.fill(fresh) || !saved.open(QIODevice::WriteOnly) ||
        !saved.setPermissions(QFile::ReadOwner | QFile::WriteOwner) ||
        saved.write(reinterpret_cast<const char *>(fresh.data()), size) != size || !saved.commit() ||
        !syncParentFolders(QFile::encodeName(keyPath()))) {
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
    const auto box = sealed(m_random, *key, entry, value);
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
