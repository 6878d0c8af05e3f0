// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/ThunarActions.h"

#include "extension/CustomActionsFile.h"
#include "extension/ExecWords.h"
#include "extension/MenuAction.h"
#include "extension/OwnFile.h"

#include <algorithm>

namespace quillhaven {

namespace {

const QString idPrefix = QStringLiteral("com.tarnwick.quillhaven.");
const QString fileInFolder = QStringLiteral("/Thunar/uca.xml");

QList<CustomAction> wantedActions(const QByteArray &tool)
{
    QList<CustomAction> actions;
    for (const MenuAction &action : menuActions) {
        actions.append({idPrefix + action.word, action.label, QStringLiteral("Quillhaven"),
                        QString::fromUtf8(execWord(tool)) + QLatin1Char(' ') + action.word + QStringLiteral(" %F")});
    }
    return actions;
}

bool isOurs(const CustomAction &action)
{
    return action.uniqueId.startsWith(idPrefix);
}

} // namespace

ThunarActions::ThunarActions(QByteArray tool, const MenuPlaces &places)
    : ManagerMenus(QStringLiteral("Thunar"), QStringLiteral("thunar"), Reads::AtStart),
      m_tool(std::move(tool)),
      m_path(places.configuration + fileInFolder)
{
    for (const QString &folder : places.systemConfigurations) {
        m_systemPaths.append(folder + fileInFolder);
    }
}

bool ThunarActions::isCurrent() const
{
    QList<CustomAction> ours = customActions(fileAt(m_path).contents).value_or(QList<CustomAction>());
    ours.removeIf([](const CustomAction &action) { return !isOurs(action); });
    return ours == wantedActions(m_tool);
}

std::optional<QString> ThunarActions::install() const
{
    const FileAtPlace found = fileAt(m_path);
    const QByteArray document = found.kind == FileAtPlace::Kind::Missing ? systemActions() : found.contents;
    if (found.kind == FileAtPlace::Kind::Other || !customActions(document)) {
        return QStringLiteral("%1 is damaged or not a regular file, so it was left as it is.").arg(m_path);
    }
    return writeInOneStep(m_path, withCustomActions(document, idPrefix, wantedActions(m_tool)), false);
}

std::optional<QString> ThunarActions::remove() const
{
    const FileAtPlace found = fileAt(m_path);
    const auto actions = customActions(found.contents);
    if (!actions || std::ranges::none_of(*actions, isOurs)) {
        return std::nullopt; // there is nothing of ours, as far as can be read
    }
    const QByteArray rest = withCustomActions(found.contents, idPrefix, {});
    // Written by `install` where there was none.
    if (rest == withCustomActions(systemActions(), idPrefix, {})) {
        return removeFile(m_path);
    }
    return writeInOneStep(m_path, rest, false);
}

QByteArray ThunarActions::systemActions() const
{
    for (const QString &path : m_systemPaths) {
        const FileAtPlace found = fileAt(path);
        if (found.kind == FileAtPlace::Kind::File && customActions(found.contents)) {
            return found.contents;
        }
    }
    return emptyCustomActions();
}

} // namespace quillhaven
