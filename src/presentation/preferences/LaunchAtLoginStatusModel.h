// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "launch_at_login/LaunchAtLoginSettingsObserver.h"
#include "presentation/preferences/EnhancedLaunchAtLoginErrorHandler.h"

#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// The colour of a status, as the name of a token: `StatusTone.Enabled` is `Colors.statusEnabled`.
namespace StatusTone { // NOLINT(readability-identifier-naming): the name in QML, of a type
Q_NAMESPACE
QML_ELEMENT
enum Case : quint8 { Enabled, Disabled, Warning, Error, Info, Secondary };
Q_ENUM_NS(Case)
} // namespace StatusTone

/// A status as it is shown.
struct ShownStatus
{
    QString text;
    QString icon; ///< empty for an activity indicator
    StatusTone::Case tone = StatusTone::Secondary;

    bool operator==(const ShownStatus &) const = default;
};

/// The tone of a synchronization's status.
[[nodiscard]] StatusTone::Case toneOf(SyncStatus status);
/// The status while there is no error and nothing runs.
[[nodiscard]] ShownStatus shownStatus(SyncStatus status, bool isEnabled);

/// The state of the start at login in words, with its error, the actions for it, and the note of a success.
class LaunchAtLoginStatusModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY changed)
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    Q_PROPERTY(QString statusIcon READ statusIcon NOTIFY changed)
    Q_PROPERTY(int statusTone READ statusTone NOTIFY changed)
    Q_PROPERTY(QString lastUpdatedText READ lastUpdatedText NOTIFY changed)
    Q_PROPERTY(QString syncText READ syncText NOTIFY changed)
    Q_PROPERTY(QString syncIcon READ syncIcon NOTIFY changed)
    Q_PROPERTY(int syncTone READ syncTone NOTIFY changed)
    Q_PROPERTY(QString errorText READ errorText NOTIFY changed)
    Q_PROPERTY(QString suggestionText READ suggestionText NOTIFY changed)
    Q_PROPERTY(QString successText READ successText NOTIFY changed)
    Q_PROPERTY(QStringList actionTexts READ actionTexts NOTIFY changed)
    Q_PROPERTY(QStringList actionIcons READ actionIcons NOTIFY changed)
    Q_PROPERTY(bool canAct READ canAct NOTIFY changed)

public:
    /// The references must outlive this object.
    LaunchAtLoginStatusModel(LaunchAtLoginManager &manager, LaunchAtLoginSettingsObserver &observer,
                             EnhancedLaunchAtLoginErrorHandler &errorHandler, Clock &clock, QObject *parent = nullptr);

    [[nodiscard]] bool isBusy() const;
    [[nodiscard]] ShownStatus status() const;
    [[nodiscard]] QString statusText() const { return status().text; }
    [[nodiscard]] QString statusIcon() const { return status().icon; }
    [[nodiscard]] int statusTone() const { return status().tone; }
    [[nodiscard]] QString lastUpdatedText() const;
    [[nodiscard]] QString syncText() const { return description(m_observer.syncStatus()); }
    [[nodiscard]] QString syncIcon() const { return iconName(m_observer.syncStatus()); }
    [[nodiscard]] int syncTone() const { return toneOf(m_observer.syncStatus()); }
    /// Empty without an error.
    [[nodiscard]] QString errorText() const;
    [[nodiscard]] QString suggestionText() const;
    /// Empty without a note.
    [[nodiscard]] QString successText() const { return m_errorHandler.successMessage().value_or(QString()); }
    /// The labels of the buttons; `noAction` has none.
    [[nodiscard]] QStringList actionTexts() const;
    [[nodiscard]] QStringList actionIcons() const;
    /// False while a recovery runs.
    [[nodiscard]] bool canAct() const { return !m_errorHandler.isExecutingRecovery(); }

    /// The button with this index was pressed.
    Q_INVOKABLE void act(int index);
    Q_INVOKABLE void clearSuccessMessage() { m_errorHandler.clearSuccessMessage(); }
    /// Brings the relative date up to date.
    Q_INVOKABLE void refresh() { Q_EMIT changed(); }

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] QList<RecoveryAction> actions() const;

    LaunchAtLoginManager &m_manager;
    LaunchAtLoginSettingsObserver &m_observer;
    EnhancedLaunchAtLoginErrorHandler &m_errorHandler;
    Clock &m_clock;
};

/// A moment in the past as a text, such as "5 minutes ago".
[[nodiscard]] QString relativeDate(const QDateTime &moment, const QDateTime &now);

} // namespace quillhaven
