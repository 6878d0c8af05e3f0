// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/QtFilePanels.h"

#include "async/Answer.h"
#include "platform/FileError.h"
#include "platform/widgets/AccessPanelDialog.h"
#include "platform/widgets/DesktopFileDialog.h"
#include "platform/widgets/OpenPanelDialog.h"
#include "support/Paths.h"

#include <QDir>
#include <QGuiApplication>
#include <QWindow>

#include <algorithm>

namespace quillhaven {

namespace {

/// The item that a path names: a link is replaced by what it points to, and the folders above it stay as they are.
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

/// Keeps the panel above the window that asks, in its middle where the desktop lets a program place its windows.
void attachToFocusWindow(QDialog &dialog)
{
    // A popover closes as soon as the panel has the keyboard, so the panel cannot belong to it.
    const auto canHavePanels = [](const QWindow *window) {
        return window && window->isVisible() && window->type() != Qt::Tool;
    };
    QWindow *parent = QGuiApplication::focusWindow();
    if (!parent) {
        const QWindowList windows = QGuiApplication::topLevelWindows();
        const auto found = std::ranges::find_if(windows, canHavePanels);
        parent = found == windows.end() ? nullptr : *found;
    } else if (!canHavePanels(parent)) {
        parent = nullptr;
    }
    dialog.winId();
    if (parent && dialog.windowHandle() && parent != dialog.windowHandle()) {
        dialog.windowHandle()->setTransientParent(parent);
        const QSize size =
            (dialog.testAttribute(Qt::WA_Resized) ? dialog.size() : dialog.sizeHint()).expandedTo(dialog.minimumSize());
        dialog.move(parent->geometry().center() - QRect(QPoint(), size).center());
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

/// Shows a dialog that emits `answer` with the chosen paths, and waits for them.
template <typename Dialog>
QCoro::Task<QStringList> shown(Dialog *dialog, void (Dialog::*answer)(const QStringList &))
{
    Answer<QStringList> chosen;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, answer, dialog, [chosen](const QStringList &paths) { chosen.give(paths); });
    QObject::connect(dialog, &QDialog::rejected, dialog, [chosen] { chosen.give({}); });
    attachToFocusWindow(*dialog);
    dialog->open();
    co_return co_await chosen;
}

/// The same without returning to the event loop of the program.
template <typename Dialog>
QStringList shownModally(Dialog &dialog, void (Dialog::*answer)(const QStringList &))
{
    QStringList chosen;
    QObject::connect(&dialog, answer, &dialog, [&chosen](const QStringList &paths) { chosen = paths; });
    attachToFocusWindow(dialog);
    dialog.exec();
    return chosen;
}

QCoro::Task<std::optional<QStringList>> granted(AccessPanelDialog *dialog)
{
    Answer<std::optional<QStringList>> answer;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &AccessPanelDialog::answered, dialog,
                     [answer](bool isConfirmed, const QStringList &paths) {
                         answer.give(isConfirmed ? std::optional(paths) : std::nullopt);
                     });
    attachToFocusWindow(*dialog);
    dialog->open();
    co_return co_await answer;
}

bool isForFilesAndFolders(const OpenPanelRequest &request)
{
    return request.canChooseFiles && request.canChooseDirectories;
}

} // namespace

OpenPanelRequest QtFilePanels::inFolder(OpenPanelRequest request) const
{
    if (request.directory.isEmpty()) {
        request.directory = QFileInfo(m_lastFolder).isDir() ? m_lastFolder : QDir::homePath();
    }
    return request;
}

QStringList QtFilePanels::used(const QStringList &chosen)
{
    if (!chosen.isEmpty()) {
        m_lastFolder = parentDirectory(chosen.constFirst());
    }
    return usablePaths(chosen);
}

QCoro::Task<QStringList> QtFilePanels::choose(OpenPanelRequest request)
{
    const OpenPanelRequest asked = inFolder(std::move(request));
    QStringList chosen;
    if (isForFilesAndFolders(asked)) {
        chosen = co_await shown(new OpenPanelDialog(asked, m_palette), &OpenPanelDialog::answered);
    } else {
        chosen = co_await shown(desktopFileDialog(asked, m_palette).release(), &QFileDialog::filesSelected);
    }
    co_return used(chosen);
}

QCoro::Task<std::optional<QString>> QtFilePanels::open(OpenPanelRequest request)
{
    co_return onlyOne(co_await choose(std::move(request)));
}

QCoro::Task<std::optional<QStringList>> QtFilePanels::openSeveral(OpenPanelRequest request)
{
    request.allowsMultipleSelection = true;
    const QStringList paths = co_await choose(std::move(request));
    co_return paths.isEmpty() ? std::nullopt : std::optional(paths);
}

std::optional<QString> QtFilePanels::runModal(const OpenPanelRequest &request)
{
    const OpenPanelRequest asked = inFolder(request);
    if (isForFilesAndFolders(asked)) {
        OpenPanelDialog dialog(asked, m_palette);
        return onlyOne(used(shownModally(dialog, &OpenPanelDialog::answered)));
    }
    const auto dialog = desktopFileDialog(asked, m_palette);
    return onlyOne(used(shownModally(*dialog, &QFileDialog::filesSelected)));
}

QCoro::Task<std::optional<QString>> QtFilePanels::confirmAccess(PlaceRequest request)
{
    const std::optional<QStringList> chosen = co_await granted(new AccessPanelDialog(request, m_palette));
    const bool isAsked = chosen == QStringList(request.path);
    co_return isAsked ? std::optional(request.path) : onlyOne(usablePaths(chosen.value_or(QStringList())));
}

QCoro::Task<std::optional<QStringList>> QtFilePanels::grantAccess(AccessRequest request)
{
    co_return co_await granted(new AccessPanelDialog(request, m_palette));
}

} // namespace quillhaven
