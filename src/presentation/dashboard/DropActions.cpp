// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/DropActions.h"

#include "engine/QuillhavenManager.h"
#include "presentation/dashboard/BulkActions.h"
#include "presentation/dashboard/ProtectActions.h"
#include "presentation/dialogs/OperationErrors.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace quillhaven {

DropActions::DropActions(const DashboardContext &context, ProtectActions &protecting, BulkActions &bulk,
                         QObject *parent)
    : QObject(parent), m_context(context), m_protecting(protecting), m_bulk(bulk)
{
}

namespace {

/// The path of a local file's URL, which may name this computer as its host; empty for any other URL.
QString localPath(QUrl url)
{
    if (url.isLocalFile() && url.host() == QLatin1String("localhost")) {
        url.setHost({});
    }
    return url.toLocalFile();
}

} // namespace

bool DropActions::canDrop(const QList<QUrl> &urls) const
{
    return std::ranges::any_of(urls, [](const QUrl &url) { return !localPath(url).isEmpty(); });
}

void DropActions::onDrop(const QList<QUrl> &urls)
{
    QStringList paths;
    for (const QUrl &url : urls) {
        if (const QString path = localPath(url); !path.isEmpty()) {
            // As the panel does: a link is replaced by what it points to.
            const QFileInfo info(path);
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
