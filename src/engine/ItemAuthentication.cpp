// SPDX-License-Identifier: GPL-3.0-or-later

// The check of an item's own secret before it is unlocked: one attempt for each call. An item has either a password
// or a fingerprint; neither replaces the other.

#include "async/Answer.h"
#include "async/OffMainThread.h"
#include "catalogue/QuillhavenError.h"
#include "credentials/PasswordInputDialogManager.h"
#include "engine/QuillhavenManager.h"
#include "platform/BiometricAuthenticator.h"
#include "support/DisplayName.h"

#include <QPointer>

namespace quillhaven {

namespace {

/// Reads a secret off the main thread; whatever goes wrong reads as a failed authentication.
template <typename Read>
QCoro::Task<QString> readSecret(QThreadPool &queue, Read read)
{
    try {
        const QString secret = co_await offMainThread(queue, std::move(read));
        co_return secret;
    } catch (...) {
        throw QuillhavenError(QuillhavenError::authenticationFailed);
    }
}

} // namespace

QCoro::Task<bool> QuillhavenManager::requestPasswordAuthentication(ProtectedItem item)
{
    const QPointer<QuillhavenManager> self(this);
    const auto answer =
        m_passwordInputDialogManager.ask({.title = QStringLiteral("Password Required"),
                                          .message = QStringLiteral("Enter the password for '") +
                                                     displayName(item.originalName) + QStringLiteral("':")});
    const PasswordInputDialogManager::Reply reply = co_await answer;
    if (reply.end == DialogEnd::Replaced) {
        if (self) {
            Q_EMIT self->questionReplaced(item.id);
        }
        // An operation whose question another one replaces remains suspended for good. Never deleted, so that a leak
        // checker finds what such operations hold.
        static const auto *const never = new Answer<bool>;
        (void)co_await *never;
    }
    if (reply.end != DialogEnd::Confirmed) {
        co_return false;
    }
    auto read = [keychain = m_keychain, id = item.id] { return keychain->retrievePassword(id); };
    const QString stored = co_await readSecret(m_platform.credentialQueue, std::move(read));
    if (stored != reply.password) {
        throw QuillhavenError(QuillhavenError::authenticationFailed);
    }
    co_return true;
}

QCoro::Task<QString> QuillhavenManager::authenticateWithTouchID(QString id)
{
    BiometricAuthenticator &biometrics = m_platform.biometrics;
    if (!co_await biometrics.canEvaluatePolicy()) {
        throw QuillhavenError(QuillhavenError::touchIDNotAvailable);
    }
    if (!co_await biometrics.evaluatePolicy(QStringLiteral("Unlock protected item"))) {
        throw QuillhavenError(QuillhavenError::authenticationFailed);
    }
    auto read = [keychain = m_keychain, id] { return keychain->retrieveTouchIDKey(id); };
    const QString key = co_await readSecret(m_platform.credentialQueue, std::move(read));
    co_return key;
}

QCoro::Task<bool> QuillhavenManager::authenticateForUnlock(ProtectedItem item)
{
    if (item.isFolder) {
        co_return true;
    }
    if (item.useTouchID && enableTouchID()) {
        co_await authenticateWithTouchID(item.id);
        co_return true;
    }
    const bool passed = co_await requestPasswordAuthentication(item);
    co_return passed;
}

} // namespace quillhaven
