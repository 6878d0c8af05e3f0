// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/login/AutostartEntry.h"

#include "platform/FileError.h"
#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/FolderEntries.h"
#include "platform/linux/login/DesktopEntryFile.h"
#include "platform/linux/login/ExecLine.h"
#include "support/DisplayName.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <utility>

namespace quillhaven {

namespace {

using Kind = AutostartState::Kind;

constexpr const char *hidden = "Hidden";
constexpr const char *exec = "Exec";
constexpr const char *tryExec = "TryExec";
constexpr const char *onlyShowIn = "OnlyShowIn";
constexpr const char *notShowIn = "NotShowIn";
/// The switches of the desktops' own settings programs.
constexpr std::array switches{"X-GNOME-Autostart-enabled", "X-MATE-Autostart-enabled"};

bool isOneOf(const QStringList &desktops, const QStringList &names)
{
    return std::ranges::any_of(desktops, [&names](const QString &name) { return names.contains(name); });
}

bool isSwitchedOff(const DesktopEntryFile &entry)
{
    return entry.boolean(hidden, false) ||
           std::ranges::any_of(switches, [&entry](const char *key) { return !entry.boolean(key, true); });
}

bool isForDesktop(const DesktopEntryFile &entry, const QStringList &desktops)
{
    return (!entry.has(onlyShowIn) || isOneOf(desktops, entry.list(onlyShowIn))) &&
           !isOneOf(desktops, entry.list(notShowIn));
}

QString programOf(const DesktopEntryFile &entry)
{
    return commandOfExecLine(entry.string(exec)).value(0);
}

/// Whether the entry starts a program other than this one. One that names nothing, or what no longer exists, does not.
bool isForeign(const DesktopEntryFile &entry, const AutostartFolders &folders)
{
    const QString program = programOf(entry);
    return !folders.isProgram(program) && (!executableOf(program).isEmpty() || (entry.has(exec) && program.isEmpty()));
}

Kind kindOf(const DesktopEntryFile &entry, const AutostartFolders &folders)
{
    if (isForeign(entry, folders)) {
        return Kind::Foreign;
    }
    if (isSwitchedOff(entry)) {
        return Kind::SwitchedOff;
    }
    if (!folders.isProgram(programOf(entry)) || executableOf(programOf(entry)).isEmpty() ||
        (entry.has(tryExec) && executableOf(entry.string(tryExec)).isEmpty())) {
        return Kind::CannotStart;
    }
    return isForDesktop(entry, folders.desktops) ? Kind::Enabled : Kind::ForOtherDesktop;
}

QString sentenceFor(Kind kind, const QString &path)
{
    const QString name = displayName(path);
    const QString consequence = QStringLiteral(", so Quillhaven does not start when you log in.");
    switch (kind) {
    case Kind::Enabled:
        return QStringLiteral("Quillhaven starts when you log in, through \"%1\".").arg(name);
    case Kind::SwitchedOff:
        return QStringLiteral("\"%1\" is switched off").arg(name) + consequence;
    case Kind::ForOtherDesktop:
        return QStringLiteral("\"%1\" is for another desktop").arg(name) + consequence;
    case Kind::CannotStart:
        return QStringLiteral("\"%1\" names a program that does not exist").arg(name) + consequence;
    case Kind::Foreign:
        return QStringLiteral("\"%1\" starts another program").arg(name) + consequence;
    case Kind::Missing:
    case Kind::Unreadable:
        break;
    }
    return QStringLiteral("Quillhaven does not start when you log in.");
}

AutostartState stateOf(const DesktopEntryFile &entry, const QString &path, const AutostartFolders &folders)
{
    const Kind kind = kindOf(entry, folders);
    return {kind, path, sentenceFor(kind, path)};
}

/// The state by the first of these files that exists.
AutostartState stateOf(const QStringList &paths, const AutostartFolders &folders)
{
    for (const QString &path : paths) {
        try {
            if (const std::optional<DesktopEntryFile> entry = DesktopEntryFile::read(path)) {
                return stateOf(*entry, path, folders);
            }
        } catch (const FileError &error) {
            return {Kind::Unreadable, path, error.errorDescription()};
        }
    }
    return {Kind::Missing, {}, sentenceFor(Kind::Missing, {})};
}

QStringList systemEntries(const AutostartFolders &folders)
{
    QStringList paths;
    for (const QString &folder : folders.system) {
        paths.append(folder + QLatin1Char('/') + folders.fileName);
    }
    return paths;
}

/// Lets the entry count on the present desktop, and on those on which it counted before.
void admitDesktop(DesktopEntryFile &entry, const QStringList &desktops)
{
    QStringList excluded = entry.list(notShowIn);
    if (isOneOf(desktops, excluded)) {
        excluded.removeIf([&desktops](const QString &name) { return desktops.contains(name); });
        entry.remove(notShowIn);
        if (!excluded.isEmpty()) {
            entry.setList(notShowIn, excluded);
        }
    }
    if (entry.has(onlyShowIn) && !isOneOf(desktops, entry.list(onlyShowIn))) {
        if (desktops.isEmpty()) {
            entry.remove(onlyShowIn);
        } else {
            entry.setList(onlyShowIn, entry.list(onlyShowIn) << desktops.constFirst());
        }
    }
}

void setIfMissing(DesktopEntryFile &entry, const char *key, const QString &value)
{
    if (!entry.has(key)) {
        entry.setString(key, value);
    }
}

void complete(DesktopEntryFile &entry, const AutostartFolders &folders, const QStringList &arguments)
{
    setIfMissing(entry, "Type", QStringLiteral("Application"));
    setIfMissing(entry, "Name", QStringLiteral("Quillhaven"));
    setIfMissing(entry, "Icon", folders.fileName.chopped(QStringLiteral(".desktop").size()));
    entry.setString(exec, execLine(QStringList{folders.executable} + arguments));
    entry.setString(tryExec, folders.executable);
    entry.remove(hidden);
    for (const char *key : switches) {
        if (entry.has(key)) {
            entry.setBoolean(key, true);
        }
    }
    admitDesktop(entry, folders.desktops);
}

bool holdsOnlyOwnKeys(const DesktopEntryFile &entry)
{
    static const QStringList own{QStringLiteral("Type"),
                                 QStringLiteral("Name"),
                                 QStringLiteral("Icon"),
                                 QStringLiteral("Exec"),
                                 QStringLiteral("TryExec"),
                                 QStringLiteral("Hidden"),
                                 QStringLiteral("X-GNOME-Autostart-enabled"),
                                 QStringLiteral("X-MATE-Autostart-enabled")};
    return std::ranges::all_of(entry.keys(), [](const QString &key) { return own.contains(key); });
}

/// Whether the file at the path is something that is not ours to change.
bool isForeignFile(const QString &path, const AutostartFolders &folders)
{
    try {
        const std::optional<DesktopEntryFile> entry = DesktopEntryFile::read(path);
        return entry && isForeign(*entry, folders);
    } catch (const FileError &error) {
        if (error.kind() == FileError::Kind::NotAFileOrFolder) {
            return true;
        }
        throw;
    }
}

void removeEntry(const QString &path)
{
    const QByteArray name = encodedItemPath(path, FileError::Action::Remove);
    if (unlink(name.constData()) != 0 && errno != ENOENT) {
        throw FileError::fromErrno(errno, FileError::Action::Remove, path);
    }
    syncParentFolders(name);
}

} // namespace

AutostartState autostartState(const AutostartFolders &folders)
{
    return stateOf(QStringList{folders.userEntry()} + systemEntries(folders), folders);
}

void registerAutostart(const AutostartFolders &folders, const QStringList &arguments)
{
    const QString path = folders.userEntry();
    if (executableOf(folders.executable).isEmpty()) {
        throw FileError::of(FileError::Kind::NoSuchFile, FileError::Action::Use, folders.executable);
    }
    std::optional<DesktopEntryFile> existing = DesktopEntryFile::read(path);
    if (existing && isForeign(*existing, folders)) {
        throw FileError(
            FileError::Kind::Other,
            QStringLiteral("The file \"%1\" starts another program, so it was left as it is.").arg(displayName(path)));
    }
    const QByteArray before = existing ? existing->bytes() : QByteArray();
    DesktopEntryFile entry = existing ? std::move(*existing) : DesktopEntryFile();
    complete(entry, folders, arguments);
    if (entry.bytes() != before) {
        entry.write(path);
    }
}

void unregisterAutostart(const AutostartFolders &folders)
{
    const QString path = folders.userEntry();
    if (isForeignFile(path, folders)) {
        return;
    }
    std::optional<DesktopEntryFile> entry = DesktopEntryFile::read(path);
    const bool isSystemsEnabled = stateOf(systemEntries(folders), folders).kind == Kind::Enabled;
    if (!entry && !isSystemsEnabled) {
        return;
    }
    if (entry && !isSystemsEnabled && holdsOnlyOwnKeys(*entry)) {
        removeEntry(path);
        return;
    }
    if (!entry) {
        entry.emplace();
        setIfMissing(*entry, "Type", QStringLiteral("Application"));
        setIfMissing(*entry, "Name", QStringLiteral("Quillhaven"));
    }
    if (!entry->boolean(hidden, false)) {
        entry->setBoolean(hidden, true);
        entry->write(path);
    }
}

} // namespace quillhaven
