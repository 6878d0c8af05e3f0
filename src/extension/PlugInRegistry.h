// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "extension/ManagerMenus.h"

namespace quillhaven {

/// Which extension is registered for this user, and whether it is in use: a small file in the settings folder, and the
/// menus of the extension. Each change returns what prevents it, as sentences, and else nothing.
class PlugInRegistry
{
public:
    /// The folder of the settings, and those of the menus.
    PlugInRegistry(const QString &settings, MenuPlaces places);

    /// One line for the registered extension, empty when there is none: "+" or "-" for whether it is in use with all
    /// menus in place, four blanks, its identifier and version and, after a tab, the file managers that have the menus.
    [[nodiscard]] QString listing() const;
    /// The running file managers that have the menus only when they start the next time. None is ended here: a
    /// window of the user's, or a copy that is under way, would end with it.
    [[nodiscard]] QStringList managersToBeRestarted() const;
    /// Registers the extension in this folder, and installs its menus unless they are not to be used.
    [[nodiscard]] QStringList add(const QString &extension);
    /// Removes the registration and the menus, as far as there are any, unless it is an extension in another folder
    /// that is registered.
    [[nodiscard]] QStringList remove(const QString &extension);
    /// Installs the menus of the registered extension, or removes them but keeps the registration.
    [[nodiscard]] QStringList elect(bool isUsed);

    static inline const QString identifier = QStringLiteral("com.tarnwick.quillhaven.FinderSync");
    static inline const QString extensionPoint = QStringLiteral("com.apple.FinderSync");

private:
    struct Registration
    {
        QString extension;
        bool isUsed = true;
    };
    [[nodiscard]] std::optional<Registration> registration() const;
    [[nodiscard]] QStringList save(const Registration &registration);
    [[nodiscard]] QStringList installMenus(const QString &extension) const;
    [[nodiscard]] QStringList removeMenus() const;

    QString m_file;
    MenuPlaces m_places;
};

} // namespace quillhaven
