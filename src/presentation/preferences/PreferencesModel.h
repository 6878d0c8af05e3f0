// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"

#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class NotificationCenter;

/// The model of the sheet with the preferences. Each of its sections has a model of its own.
class PreferencesModel : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")

public:
    /// The sheet is also shown on the notification `showPreferences` of this centre. The reference must outlive this
    /// object.
    explicit PreferencesModel(NotificationCenter &notifications, QObject *parent = nullptr);

    Q_INVOKABLE void show() { setIsPresented(true); }
    Q_INVOKABLE void close() { setIsPresented(false); }
};

} // namespace quillhaven
