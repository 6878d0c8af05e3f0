// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/KWinInput.h"

#include "fake-input-client-protocol.h"

#include <wayland-client.h>

#include <stdexcept>
#include <string_view>

namespace quillhaven::test {

KWinInput::KWinInput() : m_display(wl_display_connect(nullptr))
{
    if (m_display == nullptr) {
        throw std::runtime_error("there is no compositor");
    }
    static const wl_registry_listener listener{
        .global =
            [](void *input, wl_registry *registry, uint32_t name, const char *interface, uint32_t) {
                const wl_interface &type = org_kde_kwin_fake_input_interface;
                if (std::string_view(interface) == type.name) {
                    *static_cast<org_kde_kwin_fake_input **>(input) =
                        static_cast<org_kde_kwin_fake_input *>(wl_registry_bind(registry, name, &type, 4));
                }
            },
        .global_remove = [](void *, wl_registry *, uint32_t) {}};
    wl_registry *registry = wl_display_get_registry(m_display);
    wl_registry_add_listener(registry, &listener, &m_input);
    wl_display_roundtrip(m_display);
    wl_registry_destroy(registry);
    if (m_input == nullptr) {
        throw std::runtime_error("the compositor takes no input from tests");
    }
    org_kde_kwin_fake_input_authenticate(m_input, "test", "test");
}

KWinInput::~KWinInput()
{
    org_kde_kwin_fake_input_destroy(m_input);
    wl_display_disconnect(m_display);
}

void KWinInput::movePointer()
{
    org_kde_kwin_fake_input_pointer_motion(m_input, wl_fixed_from_int(5), wl_fixed_from_int(5));
    finish();
}

void KWinInput::pressKey()
{
    constexpr uint32_t keyA = 30;
    org_kde_kwin_fake_input_keyboard_key(m_input, keyA, 1);
    org_kde_kwin_fake_input_keyboard_key(m_input, keyA, 0);
    finish();
}

void KWinInput::finish()
{
    wl_display_roundtrip(m_display);
}

} // namespace quillhaven::test
