// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"

#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// The model of the list of the keyboard shortcuts.
class KeyboardShortcutsModel : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")

public:
    explicit KeyboardShortcutsModel(QObject *parent = nullptr) : DialogModel(parent) {}

    Q_INVOKABLE void show() { setIsPresented(true); }
    Q_INVOKABLE void close() { setIsPresented(false); }
};

} // namespace quillhaven
