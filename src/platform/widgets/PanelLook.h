// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

QT_BEGIN_NAMESPACE
class QDialog;
class QHBoxLayout;
class QLabel;
class QPalette;
class QPushButton;
class QVBoxLayout;
class QWidget;
QT_END_NAMESPACE

namespace quillhaven {

/// Fills a panel with rows that have the program's look, in the colours of the palette. Dialogs that the panel opens
/// keep their own look.
[[nodiscard]] QVBoxLayout *newPanelRows(QDialog &panel, const QPalette &palette);

/// A label for plain text in several lines, with the font of a heading if `isHeading`.
[[nodiscard]] QLabel *newTextLabel(const QString &text, QWidget *parent, bool isHeading = false);

/// The last row of a panel: a control at its start, "Cancel", and the confirming button, which Return presses.
[[nodiscard]] QHBoxLayout *newButtonRow(QDialog &panel, QWidget *first, QPushButton *confirm);

} // namespace quillhaven
