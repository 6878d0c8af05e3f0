// SPDX-License-Identifier: GPL-3.0-or-later

/// The look of a button next to the main one.
SecondaryButton {
}
