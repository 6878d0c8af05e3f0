// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Platform.h"
#include "settings/Settings.h"
#include "updates/UpdateInfo.h"

#include <QCoroTask>
#include <QObject>

#include <exception>
#include <optional>
#include <type_traits>

namespace quillhaven {

class UserDefaults;

/// Finds out whether a newer version of the program has been published. It reads one JSON document and compares two
/// version strings; it downloads and installs nothing. Main thread only: the network is waited for without blocking.
///
/// Two checks may run at the same time. Each of them sets the fields when it ends, so that the last to finish decides.
/// A check that has not ended when the end of the program is asked for, or when this object is destroyed, changes and
/// logs nothing any more.
class UpdateManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isCheckingForUpdates READ isCheckingForUpdates NOTIFY isCheckingForUpdatesChanged)
    Q_PROPERTY(std::optional<quillhaven::UpdateInfo> availableUpdate READ availableUpdate NOTIFY availableUpdateChanged)
    Q_PROPERTY(bool hasUpdateAvailable READ hasUpdateAvailable NOTIFY availableUpdateChanged)
    Q_PROPERTY(std::optional<QDateTime> lastCheckDate READ lastCheckDate NOTIFY lastCheckDateChanged)
    Q_PROPERTY(std::optional<QString> checkError READ checkError NOTIFY checkErrorChanged)
    Q_PROPERTY(QString currentVersion READ currentVersion CONSTANT)
    Q_PROPERTY(QString unavailableReason READ unavailableReason CONSTANT)

public:
    /// The address that this build was given; empty if it was given none.
    [[nodiscard]] static QString buildManifestAddress();

    /// `manifestAddress` is the address of the document, or empty when there is none yet. The platform's services must
    /// outlive this object.
    UpdateManager(const Platform &platform, const QString &manifestAddress, QObject *parent = nullptr);

    /// Defined in the program only.
    static UpdateManager &shared();

    /// Looks for a newer version and returns when that has ended. It never fails: the outcome is in the fields. A
    /// background check is skipped within 24 hours after the last successful one, and before it, which is what a clock
    /// that was set back looks like. Without an address nothing is asked, and only a check that is not in the
    /// background sets `checkError`.
    [[nodiscard]] QCoro::Task<> performUpdateCheck(bool isBackground);

    [[nodiscard]] bool isCheckingForUpdates() const { return m_isCheckingForUpdates; }
    /// The latest version if the last successful check found it newer.
    [[nodiscard]] const std::optional<UpdateInfo> &availableUpdate() const { return m_availableUpdate; }
    [[nodiscard]] bool hasUpdateAvailable() const;
    /// The end of the last successful check, of this process or an earlier one.
    [[nodiscard]] const std::optional<QDateTime> &lastCheckDate() const { return m_lastCheckDate; }
    /// The failure of the last check, as a sentence for the user.
    [[nodiscard]] const std::optional<QString> &checkError() const { return m_checkError; }
    /// The version of this program, or "1.0.0" if it is not known.
    [[nodiscard]] QString currentVersion() const;
    /// Why no check is possible, as a sentence for the user. Empty if checks are possible.
    [[nodiscard]] QString unavailableReason() const;

Q_SIGNALS:
    void isCheckingForUpdatesChanged();
    void availableUpdateChanged();
    void lastCheckDateChanged();
    void checkErrorChanged();

private:
    /// The latest version. Throws an UpdateError, the network's error or the decoder's. Uses nothing of this object
    /// after it has suspended.
    [[nodiscard]] QCoro::Task<UpdateInfo> fetchLatestRelease();
    [[nodiscard]] bool shouldSkipBackgroundCheck() const;
    [[nodiscard]] bool isNewer(const QString &version) const;
    void loadLastCheckDate();
    void saveLastCheckDate() const;
    void reportUnavailable(bool isBackground);
    void begin();
    void succeed(const UpdateInfo &latest);
    void fail(const std::exception_ptr &error);
    template <typename Value>
    void assign(Value &field, const std::type_identity_t<Value> &value, void (UpdateManager::*changed)())
    {
        if (field != value) {
            field = value;
            Q_EMIT(this->*changed)();
        }
    }

    static constexpr auto lastCheckKey = settings::lastUpdateCheck;

    const QString m_gistURL;
    UserDefaults &m_userDefaults;
    UrlSession &m_urlSession;
    const Clock &m_clock;
    const BundleInformation m_bundle;

    bool m_isCheckingForUpdates = false;
    std::optional<UpdateInfo> m_availableUpdate;
    std::optional<QDateTime> m_lastCheckDate;
    std::optional<QString> m_checkError;
};

} // namespace quillhaven
