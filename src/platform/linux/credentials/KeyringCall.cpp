// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/credentials/KeyringCall.h"

#include "platform/linux/credentials/KeyringPrompt.h"
#include "platform/linux/session/BusConnection.h"

namespace quillhaven {

namespace {

constexpr int busLimitMs = 2000;
/// A keyring that has just been started at login may need some seconds. The bus itself would wait for 25, for each
/// step.
constexpr int answerLimitMs = 10'000;
constexpr const char *serviceName = "org.freedesktop.secrets";
constexpr const char *servicePath = "/org/freedesktop/secrets";
constexpr const char *serviceInterface = "org.freedesktop.Secret.Service";

using Connection = Owned<GDBusConnection>;
using Message = Owned<GDBusMessage>;

Connection sessionBus(GCancellable *cancellable)
{
    if (!hasSessionBus()) {
        return nullptr;
    }
    Connection bus(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, nullptr));
    if (bus) {
        // The process shares this connection. By default it would end the program, whatever that is doing, when the bus
        // ends.
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    }
    return bus;
}

Variant callBus(GDBusConnection *bus, const char *method, GVariant *parameters, const char *type,
                GCancellable *cancellable)
{
    return Variant(g_dbus_connection_call_sync(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                               "org.freedesktop.DBus", method, parameters, G_VARIANT_TYPE(type),
                                               G_DBUS_CALL_FLAGS_NONE, busLimitMs, cancellable, nullptr));
}

bool hasOwner(GDBusConnection *bus, const char *name, GCancellable *cancellable)
{
    const Variant reply = callBus(bus, "NameHasOwner", g_variant_new("(s)", name), "(b)", cancellable);
    gboolean isOwned = FALSE;
    if (reply) {
        g_variant_get(reply.get(), "(b)", &isOwned);
    }
    return isOwned;
}

bool isActivatable(GDBusConnection *bus, GCancellable *cancellable)
{
    const Variant reply = callBus(bus, "ListActivatableNames", nullptr, "(as)", cancellable);
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

/// The bus name of the keyring's process, which has answered a question. Empty on a failure.
QByteArray ownerThatAnswers(GDBusConnection *bus, GCancellable *cancellable, Failure &failure)
{
    const Message question(
        g_dbus_message_new_method_call(serviceName, servicePath, "org.freedesktop.DBus.Properties", "Get"));
    g_dbus_message_set_body(question.get(), g_variant_new("(ss)", serviceInterface, "Collections"));
    const Message reply(g_dbus_connection_send_message_with_reply_sync(
        bus, question.get(), G_DBUS_SEND_MESSAGE_FLAGS_NONE, answerLimitMs, nullptr, cancellable, failure));
    if (!reply || g_dbus_message_to_gerror(reply.get(), failure)) {
        return {};
    }
    return g_dbus_message_get_sender(reply.get());
}

void setLimit(gpointer proxy)
{
    g_dbus_proxy_set_default_timeout(G_DBUS_PROXY(proxy), answerLimitMs);
}

/// Its name is not part of a search: with it, an entry of a keyring that has been locked since it was started is not
/// found, and would read as absent.
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

using LockedItems = std::unique_ptr<GList, Calls<g_list_free>>; ///< does not own them

LockedItems lockedOf(GList *items)
{
    GList *locked = nullptr;
    for (GList *item = items; item; item = item->next) {
        if (secret_item_get_locked(SECRET_ITEM(item->data))) {
            locked = g_list_prepend(locked, item->data);
        }
    }
    return LockedItems(locked);
}

Secret secretOf(const QByteArray &value)
{
    return Secret(secret_value_new(value.constData(), value.size(), "application/octet-stream"));
}

} // namespace

Attributes keyringAttributes(const QString &service, const QString &account)
{
    return Attributes(secret_attributes_build(schema(), "service", service.toUtf8().constData(), "account",
                                              account.toUtf8().constData(), nullptr));
}

Attributes keyringAttributes(const QString &service)
{
    return Attributes(secret_attributes_build(schema(), "service", service.toUtf8().constData(), nullptr));
}

KeyringPresence keyringPresence(GCancellable *cancellable)
{
    const Connection bus = sessionBus(cancellable);
    if (!bus || (!hasOwner(bus.get(), serviceName, cancellable) && !isActivatable(bus.get(), cancellable))) {
        return KeyringPresence::Absent;
    }
    Failure failure;
    if (!ownerThatAnswers(bus.get(), cancellable, failure).isEmpty()) {
        return KeyringPresence::Answers;
    }
    return failure.isTimeout() ? KeyringPresence::Silent : KeyringPresence::Absent;
}

KeyringCall::KeyringCall(Prompting prompting, GCancellable *cancellable)
    : m_prompting(prompting), m_cancellable(cancellable)
{
}

CredentialStatus KeyringCall::open(QByteArray &owner)
{
    m_bus = sessionBus(m_cancellable);
    if (!m_bus) {
        return credentialNotAvailable;
    }
    Failure failure;
    m_owner = ownerThatAnswers(m_bus.get(), m_cancellable, failure);
    if (m_owner.isEmpty()) {
        return credentialNotAvailable;
    }
    if (m_owner != owner) {
        secret_service_disconnect(); // the library's object still has the session with the former process
        owner = m_owner;
    }
    m_service.reset(secret_service_get_sync(SECRET_SERVICE_NONE, m_cancellable, failure));
    if (!m_service) {
        return credentialNotAvailable;
    }
    setLimit(m_service.get());
    return secret_service_ensure_session_sync(m_service.get(), m_cancellable, failure) ? credentialSuccess
                                                                                       : credentialNotAvailable;
}

CredentialStatus KeyringCall::callAndPrompt(const char *path, const char *interface, const char *method,
                                            GVariant *arguments)
{
    Failure failure;
    const Variant reply(g_dbus_connection_call_sync(m_bus.get(), m_owner.constData(), path, interface, method,
                                                    arguments, nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, answerLimitMs,
                                                    m_cancellable, failure));
    if (!reply) {
        return failure.status();
    }
    // The prompt's path, or "/", is always the last value.
    const Variant prompt(g_variant_get_child_value(reply.get(), g_variant_n_children(reply.get()) - 1));
    const char *promptPath = g_variant_get_string(prompt.get(), nullptr);
    if (!g_str_equal(promptPath, "/")) {
        m_hasPrompted = true;
        showKeyringPrompt(m_bus.get(), m_owner.constData(), promptPath, m_cancellable);
    }
    // Whatever keyring took the place of one that ended meanwhile has not been asked.
    const bool isStillThere = hasOwner(m_bus.get(), m_owner.constData(), m_cancellable);
    return isStillThere ? credentialSuccess : credentialNotAvailable;
}

CredentialStatus KeyringCall::find(GHashTable *attributes, Objects &items)
{
    Failure failure;
    // Neither of the flags that unlock or load: what is locked is seen here first.
    items.reset(
        secret_service_search_sync(m_service.get(), schema(), attributes, SECRET_SEARCH_ALL, m_cancellable, failure));
    if (failure.happened()) {
        return failure.status();
    }
    return items ? credentialSuccess : credentialItemNotFound;
}

CredentialStatus KeyringCall::findUnlocked(GHashTable *attributes, Objects &items)
{
    CredentialStatus status = find(attributes, items);
    if (status == credentialItemNotFound) {
        status = unlockDefaultCollection();
        if (status == credentialSuccess) {
            status = find(attributes, items);
        }
    }
    LockedItems locked = lockedOf(items.get());
    if (status != credentialSuccess || !locked) {
        return status;
    }
    status = unlock(locked.get());
    if (status == credentialSuccess) {
        locked.reset();
        status = find(attributes, items);
    }
    return status == credentialSuccess && lockedOf(items.get()) ? credentialInteractionNotAllowed : status;
}

CredentialStatus KeyringCall::unlock(GList *objects)
{
    if (m_prompting == Prompting::Forbidden) {
        return credentialInteractionNotAllowed;
    }
    GVariantBuilder paths;
    g_variant_builder_init(&paths, G_VARIANT_TYPE_OBJECT_PATH_ARRAY);
    for (GList *object = objects; object; object = object->next) {
        g_variant_builder_add(&paths, "o", g_dbus_proxy_get_object_path(G_DBUS_PROXY(object->data)));
    }
    return callAndPrompt(servicePath, serviceInterface, "Unlock", g_variant_new("(ao)", &paths));
}

CredentialStatus KeyringCall::defaultCollection(Owned<SecretCollection> &collection)
{
    Failure failure;
    collection.reset(secret_collection_for_alias_sync(m_service.get(), SECRET_COLLECTION_DEFAULT,
                                                      SECRET_COLLECTION_NONE, m_cancellable, failure));
    if (failure.happened()) {
        return failure.status();
    }
    if (!collection) {
        return credentialNoDefaultCollection;
    }
    return secret_collection_get_locked(collection.get()) ? credentialInteractionNotAllowed : credentialSuccess;
}

CredentialStatus KeyringCall::unlockDefaultCollection()
{
    Owned<SecretCollection> collection;
    CredentialStatus status = defaultCollection(collection);
    if (status == credentialInteractionNotAllowed && collection) {
        GList objects{collection.get(), nullptr, nullptr};
        status = unlock(&objects);
        return status == credentialSuccess ? defaultCollection(collection) : status;
    }
    return status;
}

CredentialStatus KeyringCall::createDefaultCollection()
{
    if (m_prompting == Prompting::Forbidden) {
        return credentialNoDefaultCollection;
    }
    GVariantBuilder properties;
    g_variant_builder_init(&properties, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&properties, "{sv}", "org.freedesktop.Secret.Collection.Label",
                          g_variant_new_string("Default keyring"));
    GVariant *arguments = g_variant_new("(a{sv}s)", &properties, SECRET_COLLECTION_DEFAULT);
    const CredentialStatus status = callAndPrompt(servicePath, serviceInterface, "CreateCollection", arguments);
    return status == credentialSuccess ? unlockDefaultCollection() : credentialNoDefaultCollection;
}

CredentialStatus KeyringCall::store(GHashTable *attributes, const char *label, const QByteArray &value)
{
    Failure failure;
    const Secret secret = secretOf(value);
    const bool isStored = secret_service_store_sync(m_service.get(), schema(), attributes, SECRET_COLLECTION_DEFAULT,
                                                    label, secret.get(), m_cancellable, failure);
    if (failure.happened()) {
        return failure.status();
    }
    // The library reports success, too, when the user dismissed a prompt of the keyring.
    Objects items;
    const CredentialStatus status = find(attributes, items);
    return status == credentialItemNotFound || !isStored ? credentialInteractionNotAllowed : status;
}

CredentialStatus KeyringCall::replace(SecretItem *item, const QByteArray &value)
{
    Failure failure;
    const Secret secret = secretOf(value);
    setLimit(item);
    const bool isReplaced = secret_item_set_secret_sync(item, secret.get(), m_cancellable, failure);
    return isReplaced || failure.happened() ? failure.status() : credentialNotAvailable;
}

CredentialStore::Match KeyringCall::load(SecretItem *item)
{
    Failure failure;
    setLimit(item);
    secret_item_load_secret_sync(item, m_cancellable, failure);
    if (failure.happened()) {
        return {failure.status(), std::nullopt};
    }
    const Secret secret(secret_item_get_secret(item));
    if (!secret) {
        return {credentialSuccess, std::nullopt};
    }
    gsize length = 0;
    const gchar *bytes = secret_value_get(secret.get(), &length);
    return {credentialSuccess, QByteArray(bytes, static_cast<qsizetype>(length))};
}

CredentialStatus KeyringCall::remove(GHashTable *attributes, GList *items)
{
    for (GList *item = items; item; item = item->next) {
        const char *path = g_dbus_proxy_get_object_path(G_DBUS_PROXY(item->data));
        const CredentialStatus status = callAndPrompt(path, "org.freedesktop.Secret.Item", "Delete", nullptr);
        if (status != credentialSuccess) {
            return status;
        }
    }
    // The user may have declined the deletion: only another search can tell.
    Objects remaining;
    const CredentialStatus status = find(attributes, remaining);
    if (status == credentialItemNotFound) {
        return credentialSuccess;
    }
    return status == credentialSuccess ? credentialInteractionNotAllowed : status;
}

} // namespace quillhaven
