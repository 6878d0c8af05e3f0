// SPDX-License-Identifier: GPL-3.0-or-later

/// The look of a button beside the main one.
SecondaryButton {
}
