// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/SupportSectionModel.h"

#include "contact/SupportManager.h"

namespace quillhaven {

void SupportSectionModel::contactSupport()
{
    m_supportManager.composeEmail(false);
}

void SupportSectionModel::reportIssue()
{
    m_reportIssueButtonPressed = true;
    m_supportManager.composeEmail(true);
}

void SupportSectionModel::openFeedback()
{
    m_supportManager.feedback();
}

} // namespace quillhaven
