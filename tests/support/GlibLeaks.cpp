// SPDX-License-Identifier: GPL-3.0-or-later

/// GLib may leak eight bytes for a D-Bus proxy that is released on another thread than the main one, as happens in each
/// call of the keyring's store. Only the leak sanitizer calls this function.
extern "C" const char *__lsan_default_suppressions(); // NOLINT(bugprone-reserved-identifier)

const char *__lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
    return "leak:libglib-2.0.so\n";
}
