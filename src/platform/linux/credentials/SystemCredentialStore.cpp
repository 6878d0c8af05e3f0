// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/credentials/SystemCredentialStore.h"

#include "platform/linux/credentials/KeyringCall.h"
#include "support/printLogger.h"

#include <utility>

namespace quillhaven {

using Kind = RememberedStore::Kind;

namespace {

std::shared_ptr<GCancellable> newCancellable()
{
    return {g_cancellable_new(), g_object_unref};
}

void cancelOther(GCancellable * /*source*/, gpointer other)
{
    g_cancellable_cancel(G_CANCELLABLE(other));
}

const QString keyringLine = QStringLiteral("🔑 Credentials are kept in the desktop's keyring (Secret Service)");
const QString silentKeyring =
    QStringLiteral("The passwords are in the desktop's keyring, which does not answer in this session.");

} // namespace

/// The time of one call, which the end of the store can cut short.
class SystemCredentialStore::Call
{
public:
    explicit Call(SystemCredentialStore &store) : m_store(store), m_cancellable(newCancellable())
    {
        m_store.m_keyring.cancelWith(m_cancellable);
        m_connection = g_cancellable_connect(m_store.m_end.get(), G_CALLBACK(cancelOther),
                                             g_object_ref(m_cancellable.get()), g_object_unref);
        if (m_store.m_observer.callBegan) {
            m_store.m_observer.callBegan();
        }
    }
    ~Call()
    {
        g_cancellable_disconnect(m_store.m_end.get(), m_connection);
        if (m_store.m_observer.callEnded) {
            m_store.m_observer.callEnded();
        }
    }
    Call(const Call &) = delete;
    Call &operator=(const Call &) = delete;

private:
    SystemCredentialStore &m_store;
    std::shared_ptr<GCancellable> m_cancellable;
    gulong m_connection;
};

SystemCredentialStore::SystemCredentialStore(const QString &directory, RandomSource &random, const Clock *clock)
    : m_directory(directory), m_random(random), m_end(newCancellable()), m_keyring(clock), m_embedded(directory, random)
{
}

SystemCredentialStore::~SystemCredentialStore() = default;

CredentialStatus SystemCredentialStore::prepareForWriting()
{
    return ask(Evidence::None, [](CredentialStore &store) { return store.prepareForWriting(); });
}

CredentialStatus SystemCredentialStore::add(const QString &service, const QString &account, const QByteArray &value)
{
    return ask(Evidence::IsOurs, [&](CredentialStore &store) { return store.add(service, account, value); });
}

CredentialStatus SystemCredentialStore::update(const QString &service, const QString &account, const QByteArray &value)
{
    return ask(Evidence::IsOurs, [&](CredentialStore &store) { return store.update(service, account, value); });
}

CredentialStore::Match SystemCredentialStore::copyMatching(const QString &service, const QString &account)
{
    Match match;
    match.status = ask(Evidence::IsOurs, [&](CredentialStore &store) {
        match = store.copyMatching(service, account);
        return match.status;
    });
    return match;
}

CredentialStatus SystemCredentialStore::remove(const QString &service, const QString &account)
{
    return ask(Evidence::None, [&](CredentialStore &store) { return store.remove(service, account); });
}

CredentialStore::Place SystemCredentialStore::place() const
{
    switch (m_kind) {
    case Kind::Keyring:
        return Place::Keyring;
    case Kind::Embedded:
        return Place::OwnFile;
    default:
        return Place::NotChosen;
    }
}

CredentialStatus SystemCredentialStore::tryAgain()
{
    m_isMissing = false;
    m_keyring.forgetDeclined();
    return ask(Evidence::None, [](CredentialStore &) { return credentialSuccess; });
}

CredentialStatus SystemCredentialStore::useStoreAtHand()
{
    printLogger(QStringLiteral("⚠️ The store that had the credentials is given up, as the user asked: another one is "
                               "used from now on"));
    if (!RememberedStore::removeFrom(m_directory)) {
        return reportMissing(QStringLiteral("The note of where the passwords are kept cannot be removed: ") +
                             RememberedStore::path(m_directory));
    }
    m_embedded.setAsideIfUnusable();
    m_remembered = RememberedStore{};
    m_isMissing = false;
    m_inUse = nullptr;
    m_keyring.forgetDeclined();
    m_keyring.unbind();
    const Call call(*this);
    const CredentialStatus status = choose(Silence::IsAbsent);
    noteAnswer(status);
    return status;
}

void SystemCredentialStore::close()
{
    g_cancellable_cancel(m_end.get());
}

bool SystemCredentialStore::isClosed() const
{
    return g_cancellable_is_cancelled(m_end.get());
}

CredentialStatus SystemCredentialStore::ask(Evidence evidence,
                                            const std::function<CredentialStatus(CredentialStore &)> &question)
{
    if (isClosed()) {
        return credentialNotAvailable;
    }
    const Call call(*this);
    CredentialStatus status = askOnce(question);
    if (status == credentialNotAvailable && m_keyring.isReplaced()) {
        status = askOnce(question); // the keyring was restarted, or another one took its place: it is looked at first
    }
    if (status == credentialSuccess && evidence == Evidence::IsOurs) {
        remember();
    }
    noteAnswer(status);
    return status;
}

CredentialStatus SystemCredentialStore::askOnce(const std::function<CredentialStatus(CredentialStore &)> &question)
{
    const CredentialStatus chosen = choose();
    if (chosen != credentialSuccess) {
        return chosen;
    }
    const CredentialStatus status = question(*m_inUse);
    if (status == credentialNotAvailable && m_inUse == &m_keyring) {
        m_inUse = nullptr; // looked for again at the next call
    }
    return status;
}

CredentialStatus SystemCredentialStore::choose(Silence ofKeyring)
{
    if (m_inUse) {
        return credentialSuccess;
    }
    if (m_isMissing) {
        return credentialNotAvailable;
    }
    if (!m_remembered) {
        m_remembered = RememberedStore::readFrom(m_directory);
        m_kind = m_remembered->kind;
    }
    switch (m_remembered->kind) {
    case Kind::Keyring:
        return chooseRememberedKeyring();
    case Kind::Embedded:
        return chooseEmbedded();
    case Kind::Unreadable:
        return reportMissing(QStringLiteral("The note of where the passwords are kept cannot be read: ") +
                             RememberedStore::path(m_directory));
    default:
        return chooseFirst(ofKeyring);
    }
}

CredentialStatus SystemCredentialStore::chooseFirst(Silence ofKeyring)
{
    // A home of a version that did not remember: what is in the embedded store would not be found in a keyring.
    const auto content = m_embedded.content();
    if (content != EmbeddedCredentialStore::Content::None && content != EmbeddedCredentialStore::Content::Empty) {
        const CredentialStatus status = chooseEmbedded();
        if (status == credentialSuccess) {
            remember();
        }
        return status;
    }
    const KeyringPresence keyring = keyringPresence(m_keyring.cancellable());
    if (keyring == KeyringPresence::Silent && ofKeyring == Silence::IsMissing) {
        return reportMissing(QStringLiteral("The desktop's keyring does not answer in this session."));
    }
    if (keyring == KeyringPresence::Answers) {
        m_keyring.unbind();
        return use(m_keyring, keyringLine);
    }
    return use(m_embedded,
               QStringLiteral("⚠️ No keyring answers in this session: credentials are kept in the program's own "
                              "store, in ") +
                   m_directory);
}

CredentialStatus SystemCredentialStore::chooseRememberedKeyring()
{
    const KeyringPresence presence = keyringPresence(m_keyring.cancellable());
    if (presence == KeyringPresence::Absent) {
        return reportMissing(QStringLiteral("The passwords are in the desktop's keyring, and this session has none."));
    }
    if (presence == KeyringPresence::Silent) {
        return reportMissing(silentKeyring);
    }
    m_keyring.unbind();
    // A keyring whose marker could not be stored is not told from another one.
    const CredentialStatus status =
        m_remembered->marker.isEmpty() ? credentialSuccess : m_keyring.findMarker(m_remembered->marker);
    switch (status) {
    case credentialSuccess:
        m_keyring.bindToOwner();
        return use(m_keyring, keyringLine);
    case credentialItemNotFound:
        return reportMissing(QStringLiteral("The passwords are in another keyring than the one of this session."));
    case credentialNotAvailable:
        return reportMissing(silentKeyring);
    default:
        return status;
    }
}

CredentialStatus SystemCredentialStore::chooseEmbedded()
{
    using Content = EmbeddedCredentialStore::Content;
    switch (m_embedded.content()) {
    case Content::None:
        return reportMissing(
            QStringLiteral("The passwords are in the program's own store, which is missing: ").append(databasePath()));
    case Content::Damaged:
        return reportMissing(
            QStringLiteral("The passwords are in the program's own store, which is damaged: ").append(databasePath()));
    case Content::Unusable:
        return reportMissing(QStringLiteral("The passwords are in the program's own store, which cannot be opened: ")
                                 .append(databasePath()));
    default:
        return use(m_embedded, QStringLiteral("⚠️ Credentials are kept in the program's own store, in ") + m_directory);
    }
}

CredentialStatus SystemCredentialStore::use(CredentialStore &store, const QString &logLine)
{
    m_inUse = &store;
    m_kind = m_inUse == &m_keyring ? Kind::Keyring : Kind::Embedded;
    if (std::exchange(m_lastLine, logLine) != logLine) {
        printLogger(logLine);
    }
    if (m_observer.missing) {
        m_observer.missing({});
    }
    return credentialSuccess;
}

CredentialStatus SystemCredentialStore::reportMissing(const QString &sentence)
{
    if (isClosed()) {
        return credentialNotAvailable;
    }
    m_isMissing = true;
    const QString line = QStringLiteral("❌ Credentials cannot be read or stored. ") + sentence;
    if (std::exchange(m_lastLine, line) != line) {
        printLogger(line);
    }
    if (m_observer.missing) {
        m_observer.missing(sentence);
    }
    return credentialNotAvailable;
}

void SystemCredentialStore::remember()
{
    if (m_remembered->kind != Kind::None || !m_inUse) {
        return;
    }
    // From now on no other store is used in this run, even if the note could not be written for the next one.
    m_remembered->kind = m_kind;
    if (m_inUse == &m_keyring) {
        m_remembered->marker = m_keyring.markerOrNew(m_random.uuidString());
        m_keyring.bindToOwner();
    }
    const bool isKnown = m_inUse != &m_keyring || !m_remembered->marker.isEmpty();
    if (!isKnown || !m_remembered->writeTo(m_directory)) {
        printLogger(QStringLiteral("⚠️ It could not be noted which store has the credentials: the next start may look "
                                   "for them in another one"));
    }
}

void SystemCredentialStore::noteAnswer(CredentialStatus status)
{
    const bool isRefusal = status == credentialNotAvailable || status == credentialInteractionNotAllowed;
    if (std::exchange(m_wasRefused, isRefusal) && !isRefusal && m_observer.becameReadable) {
        m_observer.becameReadable();
    }
}

QString SystemCredentialStore::databasePath() const
{
    return m_directory + QStringLiteral("/credentials.db");
}

} // namespace quillhaven
