// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/credentials/SystemCredentialStore.h"

#include "platform/linux/credentials/EmbeddedCredentialStore.h"
#include "platform/linux/credentials/SecretServiceCredentialStore.h"
#include "support/printLogger.h"

namespace quillhaven {

SystemCredentialStore::SystemCredentialStore(const QString &directory, RandomSource &random)
    : m_directory(directory), m_random(random)
{
}

SystemCredentialStore::~SystemCredentialStore() = default;

CredentialStore &SystemCredentialStore::chosen()
{
    if (m_owned) {
        return *m_owned;
    }
    if (SecretServiceCredentialStore::isAvailable()) {
        m_owned = std::make_unique<SecretServiceCredentialStore>();
        printLogger(QStringLiteral("🔑 Credentials are kept in the desktop's keyring (Secret Service)"));
    } else {
        m_owned = std::make_unique<EmbeddedCredentialStore>(m_directory, m_random);
        printLogger(QStringLiteral("⚠️ No keyring answers in this session: credentials are kept in the program's own "
                                   "store, in ") +
                    m_directory);
    }
    m_chosen = m_owned.get();
    return *m_owned;
}

CredentialStatus SystemCredentialStore::add(const QString &service, const QString &account, const QByteArray &value)
{
    return chosen().add(service, account, value);
}

CredentialStatus SystemCredentialStore::update(const QString &service, const QString &account, const QByteArray &value)
{
    return chosen().update(service, account, value);
}

CredentialStore::Match SystemCredentialStore::copyMatching(const QString &service, const QString &account)
{
    return chosen().copyMatching(service, account);
}

CredentialStatus SystemCredentialStore::remove(const QString &service, const QString &account)
{
    return chosen().remove(service, account);
}

QString SystemCredentialStore::displayName() const
{
    const CredentialStore *store = m_chosen;
    return store ? store->displayName() : QStringLiteral("not chosen yet");
}

} // namespace quillhaven
