// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/MasterPasswordManager.h"

#include "async/Answer.h"
#include "async/Jobs.h"
#include "async/OffMainThread.h"
#include "credentials/KeychainError.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordError.h"
#include "credentials/PasswordStrength.h"
#include "platform/CredentialStoreState.h"
#include "platform/Platform.h"

namespace quillhaven {

using namespace std::chrono_literals;

namespace {

constexpr auto sessionLength = 300s;

} // namespace

MasterPasswordManager::MasterPasswordManager(const Platform &platform, MasterPasswordDialogManager &dialogManager,
                                             QObject *parent)
    : QObject(parent),
      m_credentialQueue(platform.credentialQueue),
      m_clock(platform.clock),
      m_dialogManager(dialogManager),
      m_keychain(std::make_shared<KeychainManager>(platform.credentials, platform.random, keychainServiceName))
{
    connect(&platform.credentialStoreState, &CredentialStoreState::becameReadable, this,
            &MasterPasswordManager::readAgain);
    startReading();
}

MasterPasswordManager::~MasterPasswordManager() = default;

void MasterPasswordManager::startReading()
{
    startJob([self = QPointer(this)]() -> QCoro::Task<> {
        if (self) {
            co_await readAtStart(self);
        }
    });
}

void MasterPasswordManager::readAgain()
{
    if (m_hasReadAtStart && m_couldNotRead && !m_hasMasterPassword) {
        m_hasReadAtStart = false;
        startReading();
    }
}

QCoro::Task<> MasterPasswordManager::readAtStart(QPointer<MasterPasswordManager> self)
{
    // Any failure means that there is no master password: all guards of the program wait for the end of this read.
    bool exists = false;
    bool isRefused = false;
    try {
        auto read = [keychain = self->m_keychain] { (void)keychain->retrieveMasterPassword(); };
        co_await offMainThread(self->m_credentialQueue, std::move(read));
        exists = true;
    } catch (const KeychainError &error) {
        isRefused = error.errorCase() == KeychainError::retrieveFailed && error.status() != credentialItemNotFound;
    } catch (...) { // NOLINT(bugprone-empty-catch)
    }
    if (!self) {
        co_return;
    }
    self->setHasMasterPassword(exists);
    self->m_hasReadAtStart = true;
    self->m_couldNotRead = isRefused;
    for (const auto &waiting : std::exchange(self->m_waitingForStart, {})) {
        waiting.give(true);
    }
}

QCoro::Task<> MasterPasswordManager::waitForStart()
{
    if (!m_hasReadAtStart) {
        Answer<bool> answer;
        m_waitingForStart.push_back(answer);
        (void)co_await answer;
    }
}

QCoro::Task<> MasterPasswordManager::setMasterPassword(QString password)
{
    if (password.isEmpty()) {
        throw MasterPasswordError(MasterPasswordError::emptyPassword);
    }
    if (!PasswordStrength::of(password).isStrong()) {
        throw MasterPasswordError(MasterPasswordError::weakPassword);
    }
    co_await waitForStart();
    auto store = [keychain = m_keychain, password] { keychain->storeMasterPassword(password); };
    co_await offMainThread(m_credentialQueue, std::move(store));
    setHasMasterPassword(true);
}

QCoro::Task<> MasterPasswordManager::removeMasterPassword()
{
    co_await waitForStart();
    auto remove = [keychain = m_keychain] { keychain->removeMasterPassword(); };
    co_await offMainThread(m_credentialQueue, std::move(remove));
    setHasMasterPassword(false);
    endSession();
}

QCoro::Task<bool> MasterPasswordManager::authenticate(QString password)
{
    if (!m_hasMasterPassword) {
        throw MasterPasswordError(MasterPasswordError::noMasterPassword);
    }
    auto read = [keychain = m_keychain] { return keychain->retrieveMasterPassword(); };
    const QPointer<MasterPasswordManager> self(this);
    const QString stored = co_await offMainThread(m_credentialQueue, std::move(read));
    if (!self || stored != password) {
        co_return false;
    }
    startAuthenticationTimer(); // first, since a session without an end must not open
    setIsAuthenticated(true);
    co_return true;
}

QCoro::Task<bool> MasterPasswordManager::requireAuthenticationOrCancel()
{
    co_await waitForStart();
    if (!m_hasMasterPassword || m_isAuthenticated) {
        co_return true;
    }
    const auto showing = std::make_shared<Showing>();
    showAuthenticationDialog(showing);
    const QPointer<MasterPasswordManager> self(this);
    const bool succeeded = co_await showing->answer;
    if (!succeeded && self) {
        endSession();
    }
    co_return succeeded;
}

void MasterPasswordManager::showAuthenticationDialog(std::shared_ptr<Showing> showing)
{
    m_showing = showing;
    auto authenticate = [self = QPointer(this), showing](const QString &entered) {
        startJob([self, entered, showing]() -> QCoro::Task<> {
            if (self) {
                co_await checkEntered(self, entered, showing);
            }
        });
    };
    auto cancel = [&dialog = m_dialogManager, showing] {
        dialog.setIsPresented(false);
        showing->isOver = true;
        showing->answer.give(false);
    };
    m_dialogManager.show({.title = QStringLiteral("Authentication Required"),
                          .message = QStringLiteral("Enter your master password to continue:")},
                         std::move(authenticate), std::move(cancel));
}

QCoro::Task<> MasterPasswordManager::checkEntered(QPointer<MasterPasswordManager> self, QString entered,
                                                  std::shared_ptr<Showing> showing)
{
    QString error;
    try {
        if (!co_await self->authenticate(entered)) {
            error = QStringLiteral("Invalid master password. Please try again.");
        }
    } catch (...) {
        error = localizedDescription(std::current_exception());
    }
    if (!self) {
        co_return;
    }
    MasterPasswordDialogManager &dialog = self->m_dialogManager;
    const auto current = self->m_showing;
    // The dialog may have been cancelled before the store answered; its caller has then continued without a session.
    if (showing->isOver || current->isOver || !dialog.isPresented()) {
        if (error.isEmpty()) {
            self->endSession();
        }
        co_return;
    }
    if (!error.isEmpty()) {
        if (showing == current) {
            dialog.showError(error);
        }
        co_return;
    }
    // A later caller may have taken over the dialog meanwhile: the session is open for that caller too.
    dialog.setIsPresented(false);
    for (const auto &answered : {showing, current}) {
        answered->isOver = true;
        answered->answer.give(true);
    }
}

void MasterPasswordManager::startAuthenticationTimer()
{
    m_authenticationTimer.reset();
    m_authenticationTimer = m_clock.startOneShot(sessionLength, [this] { setIsAuthenticated(false); });
}

void MasterPasswordManager::endSession()
{
    setIsAuthenticated(false);
    m_authenticationTimer.reset();
}

void MasterPasswordManager::setIsAuthenticated(bool value)
{
    if (m_isAuthenticated != value) {
        m_isAuthenticated = value;
        Q_EMIT isAuthenticatedChanged();
    }
}

void MasterPasswordManager::setHasMasterPassword(bool value)
{
    if (m_hasMasterPassword != value) {
        m_hasMasterPassword = value;
        Q_EMIT hasMasterPasswordChanged();
    }
}

} // namespace quillhaven
