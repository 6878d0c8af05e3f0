// SPDX-License-Identifier: GPL-3.0-or-later

#include "updates/UpdateManager.h"

#include "async/WorkInFlight.h"
#include "platform/Clock.h"
#include "platform/UrlSession.h"
#include "support/printLogger.h"
#include "updates/GistUpdateData.h"
#include "updates/UpdateError.h"
#include "updates/VersionComparison.h"

#include <QPointer>

namespace quillhaven {

namespace {

constexpr double hoursBetweenBackgroundChecks = 24.0;
constexpr int notFound = 404;
constexpr int success = 200;

/// The address, if it is one of a document on an HTTPS server.
QUrl documentUrl(const QString &address)
{
    const QUrl url(address, QUrl::StrictMode);
    if (!url.isValid() || url.scheme() != QStringLiteral("https") || url.host().isEmpty()) {
        throw UpdateError::invalidURL();
    }
    return url;
}

UpdateInfo decoded(const UrlResponse &response)
{
    if (response.statusCode == notFound) {
        throw UpdateError::gistNotFound();
    }
    if (response.statusCode != success) { // also where the response did not come over HTTP
        throw UpdateError::networkError();
    }
    return UpdateInfo(decodeGistUpdateData(response.data).app);
}

} // namespace

QString UpdateManager::buildManifestAddress()
{
    return QStringLiteral(QUILLHAVEN_UPDATE_MANIFEST_URL);
}

UpdateManager::UpdateManager(const Platform &platform, const QString &manifestAddress, QObject *parent)
    : QObject(parent),
      m_gistURL(manifestAddress),
      m_userDefaults(platform.defaults.standard()),
      m_urlSession(platform.urlSession),
      m_clock(platform.clock),
      m_bundle(platform.bundle)
{
    loadLastCheckDate();
}

QString UpdateManager::currentVersion() const
{
    return m_bundle.string(BundleInformation::shortVersionKey).value_or(QStringLiteral("1.0.0"));
}

QString UpdateManager::unavailableReason() const
{
    return m_gistURL.isEmpty() ? QStringLiteral("This build of Quillhaven has no address for update information.")
                               : QString();
}

bool UpdateManager::hasUpdateAvailable() const
{
    return m_availableUpdate && isNewer(m_availableUpdate->version);
}

bool UpdateManager::isNewer(const QString &version) const
{
    return compareNumerically(version, currentVersion()) > 0;
}

QCoro::Task<> UpdateManager::performUpdateCheck(bool isBackground)
{
    if (!unavailableReason().isEmpty()) {
        reportUnavailable(isBackground);
        co_return;
    }
    if (isBackground && shouldSkipBackgroundCheck()) {
        printLogger(QStringLiteral("⏭️ Skipping background update check - checked recently"));
        co_return;
    }
    printLogger(QStringLiteral("🔍 Performing update check (background: ") + printed(isBackground) + QLatin1Char(')'));
    begin();

    const QPointer<UpdateManager> guard(this);
    std::optional<UpdateInfo> latest;
    std::exception_ptr failure;
    try {
        latest = co_await fetchLatestRelease();
    } catch (...) {
        failure = std::current_exception();
    }
    if (!guard || WorkInFlight::isClosing()) {
        co_return;
    }
    if (latest) {
        succeed(*latest);
    } else {
        fail(failure);
    }
}

QCoro::Task<UpdateInfo> UpdateManager::fetchLatestRelease()
{
    const QByteArray userAgent = "Quillhaven/" + currentVersion().toUtf8();
    const UrlRequest request{
        .url = documentUrl(m_gistURL), .timeout = std::chrono::seconds(60), .headers = {{"User-Agent", userAgent}}};
    const UrlResponse response = co_await m_urlSession.data(request);
    co_return decoded(response);
}

void UpdateManager::reportUnavailable(bool isBackground)
{
    printLogger(QStringLiteral("ℹ️ No update check: ") + unavailableReason());
    if (!isBackground) {
        assign(m_checkError, unavailableReason(), &UpdateManager::checkErrorChanged);
    }
}

void UpdateManager::begin()
{
    assign(m_isCheckingForUpdates, true, &UpdateManager::isCheckingForUpdatesChanged);
    assign(m_checkError, std::nullopt, &UpdateManager::checkErrorChanged);
}

void UpdateManager::succeed(const UpdateInfo &latest)
{
    if (isNewer(latest.version)) {
        assign(m_availableUpdate, latest, &UpdateManager::availableUpdateChanged);
        printLogger(QStringLiteral("🆕 Update available: ") + latest.version);
    } else {
        assign(m_availableUpdate, std::nullopt, &UpdateManager::availableUpdateChanged);
        printLogger(QStringLiteral("✅ No update available (current: ") + currentVersion() +
                    QStringLiteral(", latest: ") + latest.version + QLatin1Char(')'));
    }
    assign(m_lastCheckDate, m_clock.now(), &UpdateManager::lastCheckDateChanged);
    saveLastCheckDate();
    assign(m_isCheckingForUpdates, false, &UpdateManager::isCheckingForUpdatesChanged);
}

void UpdateManager::fail(const std::exception_ptr &error)
{
    const QString description = localizedDescription(error);
    assign(m_checkError, description, &UpdateManager::checkErrorChanged);
    assign(m_isCheckingForUpdates, false, &UpdateManager::isCheckingForUpdatesChanged);
    printLogger(QStringLiteral("❌ Update check failed: ") + description);
}

bool UpdateManager::shouldSkipBackgroundCheck() const
{
    if (!m_lastCheckDate) {
        return false;
    }
    const double seconds = static_cast<double>(m_lastCheckDate->msecsTo(m_clock.now())) / 1000.0;
    return seconds / 3600.0 < hoursBetweenBackgroundChecks;
}

void UpdateManager::loadLastCheckDate()
{
    m_lastCheckDate = lastCheckKey.read(m_userDefaults);
}

void UpdateManager::saveLastCheckDate() const
{
    if (m_lastCheckDate) {
        lastCheckKey.write(m_userDefaults, *m_lastCheckDate);
    }
}

} // namespace quillhaven
