// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/credentials/SecretServiceCredentialStore.h"

#include "platform/linux/session/BusConnection.h"
#include "support/Calls.h"

#include <libsecret/secret.h>

#include <memory>

namespace quillhaven {

namespace {

constexpr int busTimeoutMs = 2000;
constexpr const char *serviceName = "org.freedesktop.secrets";

/// Matching by the two attributes alone: with the schema's name in the match, an entry of a keyring that has been
/// locked since it was started is not found, and would read as absent.
const SecretSchema *schema()
{
    static const SecretSchema passwordSchema = {
        "com.tarnwick.quillhaven.Password",
        SECRET_SCHEMA_DONT_MATCH_NAME,
        {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING}, {"account", SECRET_SCHEMA_ATTRIBUTE_STRING}, {nullptr, {}}},
        0,
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        nullptr};
    return &passwordSchema;
}

void freeObjects(GList *list)
{
    g_list_free_full(list, g_object_unref);
}

template <typename Object>
using Owned = std::unique_ptr<Object, Calls<g_object_unref>>;
using Attributes = std::unique_ptr<GHashTable, Calls<g_hash_table_unref>>;
using Objects = std::unique_ptr<GList, Calls<freeObjects>>;
using Secret = std::unique_ptr<SecretValue, Calls<secret_value_unref>>;
using Variant = std::unique_ptr<GVariant, Calls<g_variant_unref>>;

/// The error of a call, if it had one.
class Failure
{
public:
    Failure() = default;
    ~Failure() { g_clear_error(&m_error); }
    Failure(const Failure &) = delete;
    Failure &operator=(const Failure &) = delete;

    operator GError **() { return &m_error; }
    [[nodiscard]] bool happened() const { return m_error != nullptr; }
    [[nodiscard]] bool isTimeout() const
    {
        return g_error_matches(m_error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
               g_error_matches(m_error, G_DBUS_ERROR, G_DBUS_ERROR_TIMED_OUT) ||
               g_error_matches(m_error, G_DBUS_ERROR, G_DBUS_ERROR_TIMEOUT) ||
               g_error_matches(m_error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY);
    }
    [[nodiscard]] CredentialStatus status() const
    {
        if (!m_error) {
            return credentialSuccess;
        }
        const bool isLocked = m_error->domain == SECRET_ERROR && m_error->code == SECRET_ERROR_IS_LOCKED;
        return isLocked ? credentialInteractionNotAllowed : credentialNotAvailable;
    }

private:
    GError *m_error = nullptr;
};

Attributes attributesFor(const QString &service, const QString &account)
{
    return Attributes(secret_attributes_build(schema(), "service", service.toUtf8().constData(), "account",
                                              account.toUtf8().constData(), nullptr));
}

Owned<SecretService> openService(SecretServiceFlags flags, Failure &failure)
{
    Owned<SecretService> service(secret_service_get_sync(flags, nullptr, failure));
    if (service) {
        // The process shares this connection. By default it would end the program, whatever that is doing, when the bus
        // ends.
        g_dbus_connection_set_exit_on_close(g_dbus_proxy_get_connection(G_DBUS_PROXY(service.get())), FALSE);
    }
    return service;
}

/// The entries of a service and an account, and whether one of them is locked.
struct Found
{
    CredentialStatus status = credentialNotAvailable;
    Objects items;
    bool isLocked = false;
};

/// Success when the default collection exists and is unlocked.
CredentialStatus defaultCollectionStatus(SecretService *service)
{
    Failure failure;
    const Owned<SecretCollection> collection(
        secret_collection_for_alias_sync(service, SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, nullptr, failure));
    if (failure.happened()) {
        return failure.status();
    }
    if (!collection) {
        return credentialNoDefaultCollection;
    }
    return secret_collection_get_locked(collection.get()) ? credentialInteractionNotAllowed : credentialSuccess;
}

Found find(const QString &service, const QString &account)
{
    Found found;
    Failure failure;
    const auto secrets = openService(SECRET_SERVICE_OPEN_SESSION, failure);
    if (!secrets) {
        return found;
    }
    const Attributes attributes = attributesFor(service, account);
    // Neither of the flags that unlock or load: those would prompt.
    found.items.reset(
        secret_service_search_sync(secrets.get(), schema(), attributes.get(), SECRET_SEARCH_ALL, nullptr, failure));
    if (failure.happened()) {
        found.status = failure.status();
        return found;
    }
    for (GList *item = found.items.get(); item; item = item->next) {
        found.isLocked = found.isLocked || secret_item_get_locked(SECRET_ITEM(item->data));
    }
    if (found.isLocked) {
        found.status = credentialInteractionNotAllowed;
        return found;
    }
    // An empty answer proves that there is no entry only if the keyring is unlocked.
    found.status = found.items ? credentialSuccess : defaultCollectionStatus(secrets.get());
    if (found.status == credentialSuccess && !found.items) {
        found.status = credentialItemNotFound;
    }
    return found;
}

Secret secretOf(const QByteArray &value)
{
    return Secret(secret_value_new(value.constData(), value.size(), "application/octet-stream"));
}

CredentialStatus store(const QString &service, const QString &account, const QByteArray &value)
{
    Failure failure;
    const Attributes attributes = attributesFor(service, account);
    const Secret secret = secretOf(value);
    secret_service_store_sync(nullptr, schema(), attributes.get(), SECRET_COLLECTION_DEFAULT, "Quillhaven",
                              secret.get(), nullptr, failure);
    return failure.status();
}

GVariant *callBus(GDBusConnection *bus, const char *method, GVariant *parameters, const char *type)
{
    return g_dbus_connection_call_sync(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                       method, parameters, G_VARIANT_TYPE(type), G_DBUS_CALL_FLAGS_NONE, busTimeoutMs,
                                       nullptr, nullptr);
}

bool hasOwner(GDBusConnection *bus)
{
    const Variant reply(callBus(bus, "NameHasOwner", g_variant_new("(s)", serviceName), "(b)"));
    gboolean isOwned = FALSE;
    if (reply) {
        g_variant_get(reply.get(), "(b)", &isOwned);
    }
    return isOwned;
}

bool isActivatable(GDBusConnection *bus)
{
    const Variant reply(callBus(bus, "ListActivatableNames", nullptr, "(as)"));
    if (!reply) {
        return false;
    }
    const Variant names(g_variant_get_child_value(reply.get(), 0));
    for (gsize i = 0; i < g_variant_n_children(names.get()); ++i) {
        const Variant name(g_variant_get_child_value(names.get(), i));
        if (g_str_equal(g_variant_get_string(name.get(), nullptr), serviceName)) {
            return true;
        }
    }
    return false;
}

} // namespace

bool SecretServiceCredentialStore::isAvailable()
{
    if (!hasSessionBus()) {
        return false;
    }
    const Owned<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!bus || (!hasOwner(bus.get()) && !isActivatable(bus.get()))) {
        return false;
    }
    // A keyring that exists and is slow, as at login, is waited for later: choosing another store because of that would
    // hide the secrets that are in the keyring.
    Failure failure;
    const auto secrets = openService(SECRET_SERVICE_NONE, failure);
    return secrets || failure.isTimeout();
}

CredentialStatus SecretServiceCredentialStore::add(const QString &service, const QString &account,
                                                   const QByteArray &value)
{
    // The interface has no create that refuses a second entry; the one queue of calls makes search and store one step.
    const Found found = find(service, account);
    if (found.status == credentialSuccess) {
        return credentialDuplicateItem;
    }
    return found.status == credentialItemNotFound ? store(service, account, value) : found.status;
}

CredentialStatus SecretServiceCredentialStore::update(const QString &service, const QString &account,
                                                      const QByteArray &value)
{
    const Found found = find(service, account);
    if (found.status != credentialSuccess) {
        return found.status;
    }
    // The entry itself is changed, in whichever collection it is: storing would make a second one in the default.
    Failure failure;
    const Secret secret = secretOf(value);
    secret_item_set_secret_sync(SECRET_ITEM(found.items->data), secret.get(), nullptr, failure);
    return failure.status();
}

CredentialStore::Match SecretServiceCredentialStore::copyMatching(const QString &service, const QString &account)
{
    const Found found = find(service, account);
    if (found.status != credentialSuccess) {
        return {found.status, std::nullopt};
    }
    auto *item = SECRET_ITEM(found.items->data);
    Failure failure;
    secret_item_load_secret_sync(item, nullptr, failure);
    const Secret secret(failure.happened() ? nullptr : secret_item_get_secret(item));
    if (failure.happened()) {
        return {failure.status(), std::nullopt};
    }
    if (!secret) {
        return {credentialSuccess, std::nullopt};
    }
    gsize length = 0;
    const gchar *bytes = secret_value_get(secret.get(), &length);
    return {credentialSuccess, QByteArray(bytes, static_cast<qsizetype>(length))};
}

CredentialStatus SecretServiceCredentialStore::remove(const QString &service, const QString &account)
{
    const Found found = find(service, account);
    if (found.status != credentialSuccess) {
        return found.status;
    }
    for (GList *item = found.items.get(); item; item = item->next) {
        Failure failure;
        secret_item_delete_sync(SECRET_ITEM(item->data), nullptr, failure);
        if (failure.happened()) {
            return failure.status();
        }
    }
    return credentialSuccess;
}

} // namespace quillhaven
