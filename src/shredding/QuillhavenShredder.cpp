// SPDX-License-Identifier: GPL-3.0-or-later

#include "shredding/QuillhavenShredder.h"

#include "async/AfterPosted.h"
#include "catalogue/QuillhavenError.h"
#include "credentials/MasterPasswordManager.h"
#include "platform/FileManager.h"
#include "shredding/Overwriting.h"

namespace quillhaven {

QuillhavenShredder::QuillhavenShredder(const Platform &platform, MasterPasswordManager &masterPasswordManager,
                                       QObject *parent)
    : QObject(parent), m_platform(platform), m_masterPasswordManager(masterPasswordManager)
{
}

QCoro::Task<> QuillhavenShredder::shredItem(QString path, ProgressCallback progressCallback)
{
    if (!co_await m_masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    co_await afterPosted(); // The end of an earlier run must not clear the state that this run sets.
    begin();
    try {
        co_await shredFileOrDirectory(path, progressCallback);
    } catch (...) {
        progressCallback(QStringLiteral("Shredding failed: ") + localizedDescription(std::current_exception()), 0.0);
        finishLater();
        throw;
    }
    progressCallback(QStringLiteral("Shredding completed successfully"), 1.0);
    m_masterPasswordManager.endSession();
    finishLater();
}

QCoro::Task<> QuillhavenShredder::shredFileOrDirectory(QString path, ProgressCallback progressCallback)
{
    const FileManager &files = m_platform.fileManager;
    if (!files.fileExists(path)) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    if (files.isDirectory(path)) {
        co_await shredDirectory(path, progressCallback);
    } else {
        co_await shredFile(path, progressCallback);
    }
}

void QuillhavenShredder::begin()
{
    m_isShredding = true;
    m_shredProgress = 0;
    Q_EMIT changed();
}

void QuillhavenShredder::finishLater()
{
    const auto finish = [this] {
        m_isShredding = false;
        m_shredProgress = 0;
        m_currentOperation.clear();
        Q_EMIT changed();
    };
    QMetaObject::invokeMethod(this, finish, Qt::QueuedConnection);
}

QString QuillhavenShredder::passText(int pass, const QString &fileName)
{
    return QStringLiteral("Pass %1/%2: ").arg(pass).arg(overwritingPasses) + fileName;
}

void QuillhavenShredder::report(const ProgressCallback &progressCallback, const QString &operation, double progress)
{
    m_currentOperation = operation;
    Q_EMIT changed();
    progressCallback(operation, progress);
}

} // namespace quillhaven
