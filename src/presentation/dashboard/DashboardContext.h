// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace quillhaven {

class ConfirmationDialogManager;
class OperationErrors;
class FilteredItemsModel;
class ItemSelection;
class MasterPasswordDialogManager;
class MasterPasswordManager;
class PasswordInputDialogManager;
class ProtectedItemsModel;
class ProtectionMethodDialogManager;
class QuillhavenManager;

/// The program's shared dialogs, through which the dashboard asks questions.
struct DashboardDialogs
{
    ConfirmationDialogManager &confirmation;
    ProtectionMethodDialogManager &protectionMethod;
    PasswordInputDialogManager &passwordInput;
    MasterPasswordDialogManager &masterPassword;
};

/// What the dashboard's actions work on. All of it must outlive the actions and the jobs that they start.
struct DashboardContext
{
    QuillhavenManager &quillhavenManager;
    MasterPasswordManager &masterPasswordManager;
    DashboardDialogs dialogs;
    ProtectedItemsModel &rows;
    const FilteredItemsModel &items;
    ItemSelection &selection;
    OperationErrors &errors;
};

} // namespace quillhaven
