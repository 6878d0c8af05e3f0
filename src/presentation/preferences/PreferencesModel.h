// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"
#include "presentation/preferences/AutoLockSectionModel.h"
#include "presentation/preferences/LaunchAtLoginToggleModel.h"
#include "presentation/preferences/WatchedSourcesModel.h"

#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class NotificationCenter;

/// The models that the sections of the preferences show. They must outlive the sheet's.
struct PreferencesSections
{
    LaunchAtLoginToggleModel &launchAtLogin;
    AutoLockSectionModel &autoLock;
    WatchedSourcesModel &watchedSources;
};

/// The model of the sheet with the preferences. Each of its sections has a model of its own.
class PreferencesModel : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(quillhaven::LaunchAtLoginToggleModel *launchAtLogin READ launchAtLogin CONSTANT)
    Q_PROPERTY(quillhaven::AutoLockSectionModel *autoLock READ autoLock CONSTANT)
    Q_PROPERTY(quillhaven::WatchedSourcesModel *watchedSources READ watchedSources CONSTANT)

public:
    /// The sheet is also shown on the notification `showPreferences` of this centre. The references must outlive this
    /// object.
    PreferencesModel(NotificationCenter &notifications, const PreferencesSections &sections, QObject *parent = nullptr);

    [[nodiscard]] LaunchAtLoginToggleModel *launchAtLogin() const { return &m_sections.launchAtLogin; }
    [[nodiscard]] AutoLockSectionModel *autoLock() const { return &m_sections.autoLock; }
    [[nodiscard]] WatchedSourcesModel *watchedSources() const { return &m_sections.watchedSources; }

    Q_INVOKABLE void show() { setIsPresented(true); }
    Q_INVOKABLE void close() { setIsPresented(false); }

private:
    PreferencesSections m_sections;
};

} // namespace quillhaven
