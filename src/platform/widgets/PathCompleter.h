// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/widgets/FolderView.h"

#include <QCompleter>

namespace quillhaven {

/// Completes a name in the view's folder, or an absolute path.
class PathCompleter : public QCompleter
{
    Q_OBJECT

public:
    /// The view must outlive the completer.
    PathCompleter(FolderView &view, QObject *parent);

    [[nodiscard]] QStringList splitPath(const QString &path) const override;
    [[nodiscard]] QString pathFromIndex(const QModelIndex &index) const override;

private:
    [[nodiscard]] QString folderWithSlash() const;

    FolderView &m_view;
};

} // namespace quillhaven
