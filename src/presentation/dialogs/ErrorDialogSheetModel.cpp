// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/ErrorDialogSheetModel.h"

#include "presentation/dialogs/ErrorDialogManager.h"

namespace quillhaven {

QString ErrorDialogSheetModel::hint() const
{
    return ErrorDialogManager::permissionHint(m_errorMessage);
}

void ErrorDialogSheetModel::show(const QString &errorMessage)
{
    assign(m_errorMessage, errorMessage, &ErrorDialogSheetModel::errorMessageChanged);
    setIsPresented(true);
}

void ErrorDialogSheetModel::ok()
{
    closeThen(onOK);
}

void ErrorDialogSheetModel::showTroubleshooting()
{
    closeThen(onShowTroubleshooting);
}

} // namespace quillhaven
