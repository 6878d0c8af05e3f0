#include "platform/desktop/QtFilePanels.h"

#include "platform/Answer.h"
#include "platform/FileError.h"
#include "platform/desktop/OpenPanelDialog.h"

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
        throw FileError::of(FileError::Kind::InvalidName, FileError::Action::Protect, path);
    }
    if (info.exists() && !info.isFile() && !info.isDir()) {
        throw FileError::of(FileError::Kind::NotAFileOrFolder, FileError::Action::Protect, path);
    }
}

/// Keeps the panel above the window that asks.
void attachToFocusWindow(OpenPanelDialog &dialog)
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

} // namespace

QCoro::Task<std::optional<QString>> QtFilePanels::open(OpenPanelRequest request)
{
    Answer<QString> answer;
    auto *dialog = new OpenPanelDialog(request);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &OpenPanelDialog::answered, dialog, [answer](const QString &path) { answer.give(path); });
    attachToFocusWindow(*dialog);
    dialog->open();

    const QString chosen = co_await answer;
    if (chosen.isEmpty()) {
        co_return std::nullopt;
    }
    const QString path = resolved(chosen);
    requireUsable(path);
    co_return path;
}

} // namespace quillhaven
