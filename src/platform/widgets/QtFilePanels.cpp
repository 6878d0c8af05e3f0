// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/QtFilePanels.h"

#include "async/Answer.h"
#include "platform/FileError.h"
#include "platform/widgets/AccessPanelDialog.h"
#include "platform/widgets/OpenPanelDialog.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QWindow>

namespace quillhaven {

namespace {

/// What a path stands for: a link is resolved to what it points to, the folders above it stay as they are named.
QString resolved(const QString &path)
{
    const QFileInfo info(path);
    return info.isSymLink() ? info.symLinkTarget() : path;
}

void requireUsable(const QString &path)
{
    const QFileInfo info(path);
    if (path.contains(QChar::ReplacementCharacter) && !info.exists()) {
        throw FileError::of(FileError::Kind::InvalidName, FileError::Action::Use, path);
    }
    if (info.exists() && !info.isFile() && !info.isDir()) {
        throw FileError::of(FileError::Kind::NotAFileOrFolder, FileError::Action::Use, path);
    }
}

/// Keeps the panel above the window that asks.
void attachToFocusWindow(QDialog &dialog)
{
    QWindow *parent = QGuiApplication::focusWindow();
    if (!parent && !QGuiApplication::topLevelWindows().isEmpty()) {
        parent = QGuiApplication::topLevelWindows().constFirst();
    }
    dialog.winId();
    if (parent && dialog.windowHandle() && parent != dialog.windowHandle()) {
        dialog.windowHandle()->setTransientParent(parent);
    }
}

/// The chosen paths, each resolved; throws for one that cannot be worked on.
QStringList usablePaths(const QStringList &chosen)
{
    QStringList paths;
    for (const QString &each : chosen) {
        const QString path = resolved(each);
        requireUsable(path);
        paths.append(path);
    }
    return paths;
}

std::optional<QString> onlyOne(const QStringList &paths)
{
    return paths.isEmpty() ? std::nullopt : std::optional(paths.constFirst());
}

QCoro::Task<QStringList> choose(OpenPanelRequest request, QPalette palette)
{
    Answer<QStringList> answer;
    auto *dialog = new OpenPanelDialog(request);
    dialog->setPalette(palette);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &OpenPanelDialog::answered, dialog,
                     [answer](const QStringList &paths) { answer.give(paths); });
    attachToFocusWindow(*dialog);
    dialog->open();
    const QStringList chosen = co_await answer;
    co_return usablePaths(chosen);
}

} // namespace

QCoro::Task<std::optional<QString>> QtFilePanels::open(OpenPanelRequest request)
{
    co_return onlyOne(co_await choose(std::move(request), m_palette));
}

QCoro::Task<std::optional<QStringList>> QtFilePanels::openSeveral(OpenPanelRequest request)
{
    request.allowsMultipleSelection = true;
    const QStringList paths = co_await choose(std::move(request), m_palette);
    co_return paths.isEmpty() ? std::nullopt : std::optional(paths);
}

QCoro::Task<std::optional<QStringList>> QtFilePanels::grantAccess(AccessRequest request)
{
    Answer<std::optional<QStringList>> answer;
    auto *dialog = new AccessPanelDialog(request);
    dialog->setPalette(m_palette);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &AccessPanelDialog::answered, dialog,
                     [answer](bool isConfirmed, const QStringList &paths) {
                         answer.give(isConfirmed ? std::optional(paths) : std::nullopt);
                     });
    attachToFocusWindow(*dialog);
    dialog->open();
    co_return co_await answer;
}

std::optional<QString> QtFilePanels::runModal(const OpenPanelRequest &request)
{
    OpenPanelDialog dialog(request);
    dialog.setPalette(m_palette);
    QStringList chosen;
    QObject::connect(&dialog, &OpenPanelDialog::answered, &dialog,
                     [&chosen](const QStringList &paths) { chosen = paths; });
    attachToFocusWindow(dialog);
    dialog.exec();
    return onlyOne(usablePaths(chosen));
}

} // namespace quillhaven
