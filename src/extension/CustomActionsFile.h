// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

// Thunar's list of custom actions, an XML document with the element "actions".

namespace quillhaven {

/// What matters here of one custom action.
struct CustomAction
{
    QString uniqueId;
    QString name;
    QString submenu;
    QString command;

    bool operator==(const CustomAction &) const = default;
};

/// The actions of a document, or nothing when it is damaged or another kind of document.
[[nodiscard]] std::optional<QList<CustomAction>> customActions(const QByteArray &document);

/// A document without any action.
[[nodiscard]] QByteArray emptyCustomActions();

/// The document, which `customActions` can read, without the actions whose id begins with `prefix`, and with `added` at
/// its end. All else is kept.
[[nodiscard]] QByteArray withCustomActions(const QByteArray &document, const QString &prefix,
                                           const QList<CustomAction> &added);

} // namespace quillhaven
