// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/PreferencesModel.h"

#include "platform/NotificationCenter.h"

namespace quillhaven {

PreferencesModel::PreferencesModel(NotificationCenter &notifications, const PreferencesSections &sections,
                                   QObject *parent)
    : DialogModel(parent), m_sections(sections)
{
    notifications.observe(notifications::showPreferences, this, [this](const QVariantMap & /*userInfo*/) { show(); });
}

} // namespace quillhaven
