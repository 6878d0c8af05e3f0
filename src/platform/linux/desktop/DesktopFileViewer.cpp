// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/desktop/DesktopFileViewer.h"

#include "platform/UrlOpener.h"
#include "platform/linux/files/FilePaths.h"
#include "support/Paths.h"

#include <QUrl>

namespace quillhaven {

namespace {

constexpr std::chrono::seconds busLimit(2);

/// The address of a file whose name may be no valid UTF-8.
QUrl addressOf(const QString &path)
{
    const QByteArray bytes = encodedPath(path, FileError::Action::Read);
    return QUrl::fromEncoded("file://" + bytes.toPercentEncoding("/"));
}

QDBusMessage showMessage(const QString &path, const QString &folder)
{
    const QString name = QStringLiteral("org.freedesktop.FileManager1");
    const QString method = path.isEmpty() ? QStringLiteral("ShowFolders") : QStringLiteral("ShowItems");
    QDBusMessage call =
        QDBusMessage::createMethodCall(name, QStringLiteral("/org/freedesktop/FileManager1"), name, method);
    const QByteArray address = addressOf(path.isEmpty() ? folder : path).toEncoded();
    call.setArguments({QStringList(QString::fromLatin1(address)), QString()});
    return call;
}

} // namespace

struct DesktopFileViewer::State
{
    State(UrlOpener &openerOfFolders, std::chrono::milliseconds limit) : opener(openerOfFolders), answerLimit(limit)
    {
        connecting.setMaxThreadCount(1);
    }

    UrlOpener &opener;
    std::chrono::milliseconds answerLimit;
    QThreadPool connecting;
    std::shared_ptr<BusConnection> bus;
};

DesktopFileViewer::DesktopFileViewer(UrlOpener &opener, std::chrono::milliseconds answerLimit)
    : m_state(std::make_shared<State>(opener, answerLimit))
{
}

DesktopFileViewer::~DesktopFileViewer() = default;

QCoro::Task<bool> DesktopFileViewer::selectFile(QString path, QString inFileViewerRootedAtPath)
{
    return show(m_state, path, inFileViewerRootedAtPath);
}

QCoro::Task<bool> DesktopFileViewer::show(std::shared_ptr<State> state, QString path, QString folder)
{
    if (!state->bus || !state->bus->isUsable()) {
        state->bus = co_await BusConnection::open(state->connecting, MessageBus::Session, busLimit);
    }
    if (const std::shared_ptr<BusConnection> bus = state->bus) {
        const QDBusMessage call = showMessage(path, folder);
        const QDBusMessage reply = co_await BusConnection::call(bus, call, state->answerLimit);
        // A file manager that is slow to answer shows the item all the same: nothing else is opened beside it.
        if (reply.type() == QDBusMessage::ReplyMessage || isUnanswered(reply)) {
            co_return true;
        }
    }
    co_return state->opener.open(addressOf(path.isEmpty() ? folder : parentDirectory(path)));
}

} // namespace quillhaven
