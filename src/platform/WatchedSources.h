// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

#include <map>
#include <optional>

namespace quillhaven {

/// What of the desktop the program is connected to at present, in words for the user. Each service of the platform
/// keeps its own entry up to date. Main thread only.
class WatchedSources : public QObject
{
    Q_OBJECT

public:
    enum class Source { Input, Sleep, ScreenLock, ScreenSaver, Tray, FileManagerMenus, Links, LaunchAtLogin };

    struct State
    {
        bool isAvailable = false;
        QString sentence; ///< such as "Keyboard and pointer are watched through XInput 2."

        bool operator==(const State &) const = default;
    };

    using QObject::QObject;

    /// Nothing until the source has been looked for.
    [[nodiscard]] std::optional<State> state(Source source) const;
    void setState(Source source, const State &state);

Q_SIGNALS:
    void stateChanged(quillhaven::WatchedSources::Source source);

private:
    std::map<Source, State> m_states;
};

} // namespace quillhaven
