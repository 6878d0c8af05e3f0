// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/DropActions.h"

#include "engine/QuillhavenManager.h"
#include "presentation/dashboard/BulkActions.h"
#include "presentation/dashboard/DashboardErrors.h"
#include "presentation/dashboard/ProtectActions.h"

#include <QDir>
#include <QFileInfo>

namespace quillhaven {

DropActions::DropActions(const DashboardContext &context, ProtectActions &protecting, BulkActions &bulk,
                         QObject *parent)
    : QObject(parent), m_context(context), m_protecting(protecting), m_bulk(bulk)
{
}

void DropActions::onDrop(const QList<QUrl> &urls)
{
    QStringList paths;
    for (const QUrl &url : urls) {
        if (url.isLocalFile()) {
            // As the panel does: a link stands for what it points to.
            const QFileInfo info(url.toLocalFile());
            paths.append(info.isSymLink() ? info.symLinkTarget() : QDir::cleanPath(info.absoluteFilePath()));
        }
    }
    if (paths.isEmpty()) {
        return;
    }
    if (paths.size() == 1) {
        m_protecting.handleFileSelection(paths.constFirst());
        return;
    }
    const QStringList protectable = m_context.quillhavenManager.protectablePaths(paths);
    if (protectable.isEmpty()) {
        m_context.errors.showError(QStringLiteral("None of the selected items can be protected"));
    } else {
        m_bulk.performBulkProtect(protectable);
    }
}

} // namespace quillhaven
