// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/ManagerMenus.h"

#include "extension/ExecWords.h"
#include "extension/MenuAction.h"
#include "extension/MenuFiles.h"
#include "extension/ThunarActions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStandardPaths>

#include <unistd.h>

namespace quillhaven {

namespace {

using Values = QHash<QByteArray, QByteArray>;

/// Fills in the places of a template, such as @LABEL@.
class Templates
{
public:
    explicit Templates(const QString &extension) : m_extension(extension) {}

    [[nodiscard]] QByteArray filled(const char *name, const Values &values) const
    {
        QFile file(m_extension + QStringLiteral("/menus/") + QLatin1String(name));
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        QByteArray text = file.readAll();
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            text.replace('@' + value.key() + '@', value.value());
        }
        return text;
    }
    [[nodiscard]] QByteArray tool() const { return QFile::encodeName(m_extension) + "/quillhaven-menu"; }

private:
    QString m_extension;
};

QByteArray bytesOf(QLatin1String text)
{
    return {text.data(), text.size()};
}

/// An extension in Python, for a file manager of the Nautilus family.
MenuFile pythonExtension(const Templates &templates, const char *manager, const char *versions, const QString &folder)
{
    QByteArrayList labels;
    for (const MenuAction &action : menuActions) {
        labels.append('"' + bytesOf(action.word) + "\": \"" + bytesOf(action.label) + '"');
    }
    const QByteArray contents = templates.filled("menu_provider.py.in", {{"MANAGER", manager},
                                                                         {"VERSIONS", versions},
                                                                         {"TOOL_BYTES", pythonBytes(templates.tool())},
                                                                         {"LABELS", labels.join(", ")}});
    return {folder + QStringLiteral("/quillhaven_menu.py"), contents};
}

MenuFile dolphinMenu(const Templates &templates, const QString &data)
{
    QByteArray words;
    QByteArray groups;
    for (const MenuAction &action : menuActions) {
        words += bytesOf(action.word) + ';';
        groups += "\n[Desktop Action " + bytesOf(action.word) + "]\nName=" + bytesOf(action.label) +
                  "\nExec=" + keyFileValue(execWord(templates.tool())) + ' ' + bytesOf(action.word) + " %F\n";
    }
    // Dolphin runs what it is told only by a file that its user may execute.
    return {data + QStringLiteral("/kio/servicemenus/quillhaven.desktop"),
            templates.filled("quillhaven_dolphin.desktop.in", {{"ACTION_LIST", words}, {"ACTION_GROUPS", groups}}),
            true};
}

QList<MenuFile> pcmanfmMenu(const Templates &templates, const QString &data)
{
    const QString folder = data + QStringLiteral("/file-manager/actions");
    QList<MenuFile> files;
    QByteArray names;
    for (const MenuAction &action : menuActions) {
        const QByteArray name = "quillhaven-" + bytesOf(action.word);
        names += name + ';';
        const QByteArray contents = templates.filled("quillhaven_pcmanfm_action.desktop.in",
                                                     {{"LABEL", bytesOf(action.label)},
                                                      {"ACTION", bytesOf(action.word)},
                                                      {"TOOL", keyFileValue(execWord(templates.tool()))}});
        files.append({folder + QLatin1Char('/') + QLatin1String(name) + QStringLiteral(".desktop"), contents});
    }
    files.append({folder + QStringLiteral("/quillhaven.desktop"),
                  templates.filled("quillhaven_pcmanfm_menu.desktop.in", {{"ITEM_LIST", names}})});
    return files;
}

/// Whether this user has a process of the program.
bool isRunning(const QString &program)
{
    for (const QFileInfo &process : QDir(QStringLiteral("/proc")).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile command(process.filePath() + QStringLiteral("/comm"));
        if (process.ownerId() == ::geteuid() && command.open(QIODevice::ReadOnly) &&
            QFile::decodeName(command.readAll().trimmed()) == program) {
            return true;
        }
    }
    return false;
}

} // namespace

MenuPlaces MenuPlaces::ofUser()
{
    return {QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation),
            QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
            QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation).mid(1)};
}

bool ManagerMenus::isPresent() const
{
    return !QStandardPaths::findExecutable(m_program).isEmpty();
}

bool ManagerMenus::isToBeRestarted() const
{
    return m_reads == Reads::AtStart && isRunning(m_program);
}

MenusOfManagers menusOfAllManagers(const QString &extension, const MenuPlaces &places)
{
    const Templates templates(extension);
    using Reads = ManagerMenus::Reads;
    const auto files = [](const char *name, const char *program, Reads reads, const QList<MenuFile> &list) {
        return std::make_unique<MenuFiles>(QLatin1String(name), QLatin1String(program), reads, list);
    };
    MenusOfManagers all;
    all.push_back(files("Nautilus", "nautilus", Reads::AtStart,
                        {pythonExtension(templates, "Nautilus", R"("4.0", "3.0")",
                                         places.data + QStringLiteral("/nautilus-python/extensions"))}));
    // An extension rather than files in nemo/actions: in those, Nemo 5.6 passes a name with a line end as another name.
    all.push_back(files(
        "Nemo", "nemo", Reads::AtStart,
        {pythonExtension(templates, "Nemo", R"("3.0",)", places.data + QStringLiteral("/nemo-python/extensions"))}));
    all.push_back(std::make_unique<ThunarActions>(templates.tool(), places));
    all.push_back(files(
        "Caja", "caja", Reads::AtStart,
        {pythonExtension(templates, "Caja", R"("2.0",)", places.data + QStringLiteral("/caja-python/extensions"))}));
    all.push_back(files("Dolphin", "dolphin", Reads::AtOnce, {dolphinMenu(templates, places.data)}));
    all.push_back(files("PCManFM-Qt", "pcmanfm-qt", Reads::AtStart, pcmanfmMenu(templates, places.data)));
    return all;
}

} // namespace quillhaven
