// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/links/UrlSchemeHandler.h"

#include "platform/linux/login/DesktopEntryFile.h"
#include "platform/linux/login/ExecLine.h"
#include "support/LocalizedError.h"

// A member of GIO has the name of a macro of Qt's.
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <memory>

namespace quillhaven {

namespace {

struct Unref
{
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GError *error) const { g_error_free(error); }
};

template <typename Object>
using Owned = std::unique_ptr<Object, Unref>;

constexpr const char *schemePrefix = "x-scheme-handler/";

/// Whether an entry at this path starts a program that exists.
bool startsAProgram(const QString &path)
{
    const auto entry = DesktopEntryFile::read(path);
    return entry && !entry->boolean("Hidden", false) &&
           !executableOf(commandOfExecLine(entry->string("Exec")).value(0)).isEmpty();
}

/// The entry that counts, or the user's if it has yet to be written.
QString entryThatCounts(const EntryFolders &folders)
{
    for (const QString &folder : QStringList{folders.user} + folders.system) {
        const QString path = folder + QLatin1Char('/') + folders.fileName;
        if (QFileInfo::exists(path) && startsAProgram(path)) {
            return path;
        }
    }
    return folders.userEntry();
}

void writeEntry(const EntryFolders &folders, const QString &type)
{
    DesktopEntryFile entry;
    entry.setString("Type", QStringLiteral("Application"));
    entry.setString("Name", QStringLiteral("Quillhaven"));
    entry.setString("Comment", QStringLiteral("Keeps sensitive files and folders out of sight until they are wanted"));
    entry.setString("Exec", execLine({folders.executable}) + QStringLiteral(" %U"));
    entry.setString("TryExec", folders.executable);
    entry.setString("Icon", QStringLiteral("com.tarnwick.quillhaven"));
    entry.setBoolean("Terminal", false);
    entry.setList("Categories", {QStringLiteral("Utility"), QStringLiteral("Security")});
    entry.setList("MimeType", {type});
    entry.write(folders.userEntry());
}

WatchedSources::State failure(const QString &reason)
{
    return {.isAvailable = false, .sentence = QStringLiteral("Links do not reach Quillhaven: ") + reason};
}

/// The name of the program that opens the type, or nothing.
QString handlerOf(const QByteArray &type)
{
    const Owned<GAppInfo> handler(g_app_info_get_default_for_type(type.constData(), false));
    const char *id = handler ? g_app_info_get_id(handler.get()) : nullptr;
    return id ? QString::fromUtf8(id) : QString();
}

/// An empty string, or why it cannot be.
QString makeHandler(const QString &entry, const QByteArray &type)
{
    const Owned<GDesktopAppInfo> program(g_desktop_app_info_new_from_filename(QFile::encodeName(entry).constData()));
    if (!program) {
        return entry + QStringLiteral(" cannot be used.");
    }
    GError *raised = nullptr;
    g_app_info_set_as_default_for_type(G_APP_INFO(program.get()), type.constData(), &raised);
    const Owned<GError> error(raised);
    return error ? QString::fromUtf8(error->message) : QString();
}

} // namespace

WatchedSources::State registerUrlScheme(const EntryFolders &applications, const QString &scheme)
{
    const QByteArray type = schemePrefix + scheme.toUtf8();
    try {
        const QString entry = entryThatCounts(applications);
        if (!startsAProgram(entry)) {
            writeEntry(applications, QString::fromUtf8(type));
        }
        const QString handler = handlerOf(type);
        if (!handler.isEmpty() && handler != applications.fileName) {
            return failure(handler + QStringLiteral(" opens them."));
        }
        const QString reason = handler.isEmpty() ? makeHandler(entry, type) : QString();
        if (!reason.isEmpty()) {
            return failure(reason);
        }
    } catch (const LocalizedError &error) {
        return failure(error.errorDescription());
    }
    return {.isAvailable = true,
            .sentence = QStringLiteral("Links that begin with “%1://” open in Quillhaven.").arg(scheme)};
}

} // namespace quillhaven
