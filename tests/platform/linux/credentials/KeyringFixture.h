// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/KeychainManager.h"
#include "support/RunTask.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QProcess>

#include <libsecret/secret.h>

#include <csignal>

namespace quillhaven::test {

inline const QString secretsBusName = QStringLiteral("org.freedesktop.secrets");

/// The names on the session bus, on a connection that only the test uses.
[[nodiscard]] inline QDBusConnectionInterface &sessionBusNames()
{
    return *QDBusConnection::sessionBus().interface();
}

/// The attributes of the program's entries, as another program would search for them; without an account, those of all
/// entries.
class EntryAttributes
{
public:
    explicit EntryAttributes(const QString &account = {})
        : m_service(keychainServiceName.toUtf8()),
          m_account(account.toUtf8()),
          m_table(g_hash_table_new(g_str_hash, g_str_equal))
    {
        insert("service", m_service);
        if (!m_account.isEmpty()) {
            insert("account", m_account);
        }
    }
    ~EntryAttributes() { g_hash_table_unref(m_table); }
    EntryAttributes(const EntryAttributes &) = delete;
    EntryAttributes &operator=(const EntryAttributes &) = delete;

    [[nodiscard]] GHashTable *table() const { return m_table; }

private:
    void insert(const char *name, QByteArray &value)
    {
        g_hash_table_insert(m_table, const_cast<char *>(name), value.data());
    }

    QByteArray m_service;
    QByteArray m_account;
    GHashTable *m_table;
};

/// The object paths of the entries in the keyring, through a client other than the store under test.
[[nodiscard]] inline QStringList entryPaths(const QString &account = {})
{
    const EntryAttributes attributes(account);
    QStringList paths;
    GList *items =
        secret_service_search_sync(nullptr, nullptr, attributes.table(), SECRET_SEARCH_ALL, nullptr, nullptr);
    for (GList *item = items; item; item = item->next) {
        paths.append(QString::fromUtf8(g_dbus_proxy_get_object_path(G_DBUS_PROXY(item->data))));
    }
    g_list_free_full(items, g_object_unref);
    return paths;
}

/// Removes the entries of earlier tests from the keyring, which several tests share.
inline void removeAllEntries()
{
    const EntryAttributes attributes;
    GList *items =
        secret_service_search_sync(nullptr, nullptr, attributes.table(), SECRET_SEARCH_ALL, nullptr, nullptr);
    for (GList *item = items; item; item = item->next) {
        EXPECT_TRUE(secret_item_delete_sync(SECRET_ITEM(item->data), nullptr, nullptr));
    }
    g_list_free_full(items, g_object_unref);
}

} // namespace quillhaven::test
