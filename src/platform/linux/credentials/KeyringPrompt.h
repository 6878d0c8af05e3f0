// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

namespace quillhaven {

/// Shows a prompt of the keyring and waits, without a limit, until the user has answered it, the keyring has ended, or
/// `cancellable` is cancelled, which dismisses it. Whether the user allowed it is to be looked at afterwards: keyrings
/// differ in what they report.
///
/// Not by libsecret's own function: cancelled, that still waits for the keyring, and for one that does not answer any
/// more 25 seconds; and it never returns when the prompt's result has another type than it expects.
void showKeyringPrompt(GDBusConnection *bus, const char *owner, const char *path, GCancellable *cancellable);

} // namespace quillhaven
