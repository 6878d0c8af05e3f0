// SPDX-License-Identifier: GPL-3.0-or-later

#include "contact/SupportManager.h"

#include "platform/MachineInformation.h"
#include "platform/Platform.h"
#include "platform/UrlOpener.h"

#include <utility>

namespace quillhaven {

namespace {

/// The text for the query of an address, as UTF-8 with all but the characters of a query (RFC 3986, section 3.4)
/// percent-encoded. Empty for a text that is not valid Unicode.
///
/// A query may contain "+" and "=": RFC 6068 takes both literally inside a value. It may also contain "&", but that
/// ends the value, so that a mail would be cut there. Nothing that the user types passes through here, but a computer's
/// model or a system may be called "A & B", and so "&" is encoded.
QByteArray queryValue(const QString &text)
{
    return text.isValidUtf16() ? QUrl::toPercentEncoding(text, "!$'()*+,;=:@/?") : QByteArray();
}

} // namespace

QString SupportManager::buildSupportEmail()
{
    return QStringLiteral(QUILLHAVEN_SUPPORT_EMAIL);
}

QString SupportManager::buildSite()
{
    return QStringLiteral(QUILLHAVEN_SITE);
}

SupportManager::SupportManager(const Platform &platform, QString supportEmail, QString site, QObject *parent)
    : QObject(parent),
      m_opener(platform.opener),
      m_machine(platform.machine),
      m_bundle(platform.bundle),
      m_supportEmail(std::move(supportEmail)),
      m_site(std::move(site))
{
}

QUrl SupportManager::feedbackUrl() const
{
    return QUrl(m_site + QStringLiteral("/feedback"), QUrl::StrictMode);
}

void SupportManager::feedback()
{
    m_opener.open(feedbackUrl());
}

void SupportManager::composeEmail(bool includeSystemInfo)
{
    const QString subject = QStringLiteral("Quillhaven Support Request");
    const QString body = includeSystemInfo ? collectSystemInformation()
                                           : QStringLiteral("\n\n--- Please describe your issue below ---\n\n");
    const QUrl url = QUrl::fromEncoded("mailto:" + m_supportEmail.toUtf8() + "?subject=" + queryValue(subject) +
                                           "&body=" + queryValue(body),
                                       QUrl::StrictMode);
    if (url.isValid()) {
        m_opener.open(url);
    }
}

QString SupportManager::collectSystemInformation() const
{
    const QString unknown = QStringLiteral("Unknown");
    const QString version = m_bundle.string(BundleInformation::shortVersionKey).value_or(unknown);
    const QString build = m_bundle.string(BundleInformation::buildKey).value_or(unknown);
    return QStringLiteral("\n--- System Information ---") + QStringLiteral("\nApp Version: ") + version +
           QStringLiteral(" (Build ") + build + QStringLiteral(")") + QStringLiteral("\nBundle ID: ") +
           m_bundle.identifier.value_or(unknown) + QStringLiteral("\nmacOS Version: ") +
           m_machine.operatingSystemVersionString() + QStringLiteral("\nMac Model: ") + getMacModel() +
           QStringLiteral("\n\n--- Please describe your issue below ---\n");
}

QString SupportManager::getMacModel() const
{
    return m_machine.hardwareModel();
}

} // namespace quillhaven
