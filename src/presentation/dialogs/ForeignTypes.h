// SPDX-License-Identifier: GPL-3.0-or-later

// Registers the models of the libraries below this one under the names that the dialogs' QML uses.

#pragma once

#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/PasswordInputDialogManager.h"
#include "credentials/PasswordInputDialogModel.h"
#include "platform/BiometricAuthenticator.h"

#include <QtQml/qqml.h>

namespace quillhaven {

struct ForeignDialogModel
{
    Q_GADGET
    QML_FOREIGN(quillhaven::DialogModel)
    QML_NAMED_ELEMENT(DialogModel)
    QML_UNCREATABLE("Created in C++")
};

struct ForeignTitledDialogModel
{
    Q_GADGET
    QML_FOREIGN(quillhaven::TitledDialogModel)
    QML_NAMED_ELEMENT(TitledDialogModel)
    QML_UNCREATABLE("Created in C++")
};

struct ForeignMasterPasswordDialogManager
{
    Q_GADGET
    QML_FOREIGN(quillhaven::MasterPasswordDialogManager)
    QML_NAMED_ELEMENT(MasterPasswordDialogManager)
    QML_UNCREATABLE("Created in C++")
};

struct ForeignPasswordInputDialogManager
{
    Q_GADGET
    QML_FOREIGN(quillhaven::PasswordInputDialogManager)
    QML_NAMED_ELEMENT(PasswordInputDialogManager)
    QML_UNCREATABLE("Created in C++")
};

struct ForeignPasswordInputDialogModel
{
    Q_GADGET
    QML_FOREIGN(quillhaven::PasswordInputDialogModel)
    QML_NAMED_ELEMENT(PasswordInputDialogModel)
    QML_UNCREATABLE("Created in C++")
};

struct ForeignBiometricAuthenticator
{
    Q_GADGET
    QML_FOREIGN(quillhaven::BiometricAuthenticator)
    QML_NAMED_ELEMENT(BiometricAuthenticator)
    QML_UNCREATABLE("Created in C++")
};

} // namespace quillhaven
