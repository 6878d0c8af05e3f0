// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/SettingsNotice.h"

#include "engine/QuillhavenManager.h"
#include "presentation/dashboard/NoticesModel.h"

namespace quillhaven {

void showSettingsProblem(QuillhavenManager &engine, NoticesModel &notices)
{
    const QString id = QStringLiteral("settings");
    const auto update = [&engine, &notices, id] {
        if (const auto problem = engine.catalogue().problem()) {
            notices.show({.id = id, .text = *problem, .actionTitle = QStringLiteral("Try Again"), .action = [&engine] {
                              engine.retryLoading();
                          }});
        } else {
            notices.remove(id);
        }
    };
    QObject::connect(&engine.catalogue(), &ItemCatalogue::problemChanged, &notices, update);
    update();
}

} // namespace quillhaven
