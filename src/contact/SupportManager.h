// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/BundleInformation.h"

#include <QObject>
#include <QString>
#include <QUrl>

namespace quillhaven {

class MachineInformation;
class UrlOpener;
struct Platform;

/// Writes to the support desk with the user's own mail program. Nothing is sent by this program. Main thread only.
class SupportManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString supportEmail READ supportEmail CONSTANT)

public:
    /// The address of the support desk and the product's site of this build, the latter without a slash at its end.
    [[nodiscard]] static QString buildSupportEmail();
    [[nodiscard]] static QString buildSite();

    /// The services must outlive this object.
    explicit SupportManager(const Platform &platform, QString supportEmail = buildSupportEmail(),
                            QString site = buildSite(), QObject *parent = nullptr);

    static SupportManager &shared();

    [[nodiscard]] QString supportEmail() const { return m_supportEmail; }
    /// The web page where users say what they think of the program.
    [[nodiscard]] QUrl feedbackUrl() const;

    /// Opens a new mail to the support desk, with the details of the system or without them. Without a mail program
    /// nothing happens.
    Q_INVOKABLE void composeEmail(bool includeSystemInfo);
    /// Opens the page of `feedbackUrl`.
    Q_INVOKABLE void feedback();

    /// The program's version and the machine, in lines for the body of a mail.
    [[nodiscard]] QString collectSystemInformation() const;
    /// The maker's name of the computer's model; empty when it has none.
    [[nodiscard]] QString getMacModel() const;

private:
    UrlOpener &m_opener;
    const MachineInformation &m_machine;
    BundleInformation m_bundle;
    QString m_supportEmail;
    QString m_site;
};

} // namespace quillhaven
