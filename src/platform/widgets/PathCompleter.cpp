// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/PathCompleter.h"

namespace quillhaven {

PathCompleter::PathCompleter(FolderView &view, QObject *parent) : QCompleter(&view.files(), parent), m_view(view)
{
    setCaseSensitivity(Qt::CaseSensitive);
}

QString PathCompleter::folderWithSlash() const
{
    const QString folder = m_view.folder();
    return folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
}

QStringList PathCompleter::splitPath(const QString &path) const
{
    return QCompleter::splitPath(path.startsWith(QLatin1Char('/')) ? path : folderWithSlash() + path);
}

QString PathCompleter::pathFromIndex(const QModelIndex &index) const
{
    const QString path = index.data(QFileSystemModel::FilePathRole).toString();
    const bool isAbsolute = completionPrefix().startsWith(QLatin1Char('/'));
    return !isAbsolute && path.startsWith(folderWithSlash()) ? path.mid(folderWithSlash().size()) : path;
}

} // namespace quillhaven
