#include "credentials/MasterPasswordManager.h"

#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordError.h"
#include "credentials/PasswordStrength.h"
#include "platform/Answer.h"
#include "platform/Jobs.h"
#include "platform/OffMainThread.h"
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
    startJob([self = QPointer(this)]() -> QCoro::Task<> {
        if (self) {
            co_await readAtStart(self);
        }
    });
}

MasterPasswordManager::~MasterPasswordManager() = default;

QCoro::Task<> MasterPasswordManager::readAtStart(QPointer<MasterPasswordManager> self)
{
    auto read = [keychain = self->m_keychain] {
        try {
            (void)keychain->retrieveMasterPassword();
            return true;
        } catch (const LocalizedError &) {
            return false;
        }
    };
    const bool exists = co_await offMainThread(self->m_credentialQueue, std::move(read));
    if (!self) {
        co_return;
    }
    self->setHasMasterPassword(exists);
    self->m_hasReadAtStart = true;
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
    const QString stored = co_await offMainThread(m_credentialQueue, std::move(read));
    if (stored != password) {
        co_return false;
    }
    setIsAuthenticated(true);
    startAuthenticationTimer();
    co_return true;
}

QCoro::Task<bool> MasterPasswordManager::requireAuthenticationOrCancel()
{
    co_await waitForStart();
    if (!m_hasMasterPassword || m_isAuthenticated) {
        co_return true;
    }
    Answer<bool> answer;
    showAuthenticationDialog([answer](bool succeeded) { answer.give(succeeded); });
    const bool succeeded = co_await answer;
    if (!succeeded) {
        endSession();
    }
    co_return succeeded;
}

void MasterPasswordManager::showAuthenticationDialog(Completion completion)
{
    MasterPasswordDialogManager &dialog = m_dialogManager;
    dialog.setTitle(QStringLiteral("Authentication Required"));
    dialog.setMessage(QStringLiteral("Enter your master password to continue:"));
    dialog.onAuthenticate = [this, completion](const QString &entered) {
        startJob([self = QPointer(this), entered, completion]() -> QCoro::Task<> {
            if (self) {
                co_await checkEntered(self, entered, completion);
            }
        });
    };
    dialog.onCancel = [this, completion] {
        m_dialogManager.setIsPresented(false);
        completion(false);
    };
    dialog.setIsPresented(true);
    dialog.setShowingError(false);
    dialog.setErrorMessage({});
    dialog.setIsAuthenticating(false);
    dialog.setIsPasswordSetting(false);
}

QCoro::Task<> MasterPasswordManager::checkEntered(QPointer<MasterPasswordManager> self, QString entered,
                                                  Completion completion)
{
    QString error;
    try {
        if (!co_await self->authenticate(entered)) {
            error = QStringLiteral("Invalid master password. Please try again.");
        }
    } catch (const LocalizedError &failure) {
        error = failure.errorDescription();
    }
    // While the store answered, the dialog may have been cancelled; its caller has gone on without the session then.
    if (!self) {
        co_return;
    }
    if (!self->m_dialogManager.isPresented()) {
        self->endSession();
        co_return;
    }
    if (!error.isEmpty()) {
        self->m_dialogManager.showError(error);
        co_return;
    }
    self->m_dialogManager.setIsPresented(false);
    completion(true);
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
