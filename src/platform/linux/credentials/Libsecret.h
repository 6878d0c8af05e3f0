// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStore.h"
#include "support/Calls.h"

#include <libsecret/secret.h>

#include <memory>

namespace quillhaven {

template <typename Object>
using Owned = std::unique_ptr<Object, Calls<g_object_unref>>;
using Attributes = std::unique_ptr<GHashTable, Calls<g_hash_table_unref>>;
using Secret = std::unique_ptr<SecretValue, Calls<secret_value_unref>>;
using Variant = std::unique_ptr<GVariant, Calls<g_variant_unref>>;

inline void freeObjects(GList *list)
{
    g_list_free_full(list, g_object_unref);
}
using Objects = std::unique_ptr<GList, Calls<freeObjects>>;

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
               g_error_matches(m_error, G_IO_ERROR, G_IO_ERROR_CANCELLED) ||
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

} // namespace quillhaven
