// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace quillhaven {

/// The user's folders that hold the file managers' menus.
struct MenuPlaces
{
    QString data;                       ///< $XDG_DATA_HOME
    QString configuration;              ///< $XDG_CONFIG_HOME
    QStringList systemConfigurations{}; ///< $XDG_CONFIG_DIRS

    /// Those of the environment, which must have been repaired.
    [[nodiscard]] static MenuPlaces ofUser();
};

/// The entries of the program in the menus of one file manager.
class ManagerMenus
{
public:
    /// When the file manager reads its menus.
    enum class Reads {
        AtOnce,  ///< as soon as they change (Dolphin)
        AtStart, ///< when it starts, or opens its first window
    };

    /// The file manager's name for the user, and the program by which it is found.
    ManagerMenus(QString name, QString program, Reads reads)
        : m_name(std::move(name)), m_program(std::move(program)), m_reads(reads)
    {
    }
    virtual ~ManagerMenus() = default;
    ManagerMenus(const ManagerMenus &) = delete;
    ManagerMenus &operator=(const ManagerMenus &) = delete;

    [[nodiscard]] QString name() const { return m_name; }
    /// Whether the file manager is installed.
    [[nodiscard]] bool isPresent() const;
    /// Whether the user has a running one that reads the menus only when it starts the next time.
    [[nodiscard]] bool isToBeRestarted() const;

    /// Whether all entries are there as `install` writes them.
    [[nodiscard]] virtual bool isCurrent() const = 0;
    /// Writes the entries, and replaces older ones. Returns what prevents it, as a sentence; then nothing has changed
    /// at that place.
    [[nodiscard]] virtual std::optional<QString> install() const = 0;
    /// Removes the entries, and nothing else. Returns what prevents it, as a sentence.
    [[nodiscard]] virtual std::optional<QString> remove() const = 0;

private:
    QString m_name;
    QString m_program;
    Reads m_reads;
};

using MenusOfManagers = std::vector<std::unique_ptr<ManagerMenus>>;

/// The menus of every file manager that is supported, installed or not. `extension` is the folder of the menu tool and
/// of the templates.
[[nodiscard]] MenusOfManagers menusOfAllManagers(const QString &extension, const MenuPlaces &places);

} // namespace quillhaven
