// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/preferences/SettingsValidation.h"

#include <QCoroTask>
#include <QPointer>
#include <QStringList>

#include <memory>

namespace quillhaven {

class BiometricAuthenticator;
class Clock;
class RunningTimer;
class UserDefaults;
struct Platform;

/// A draft of seven settings, with the rules for their values. The draft reads the store when it is created and when it
/// is discarded, and writes it only when it is saved, which an error prevents.
///
/// The preferences do not use it: there, each setting takes effect at once. This class is where the rules are written
/// down, and lets a screen offer "Save" and "Discard". Its bounds hold for nobody else.
///
/// Each assignment of a setting checks that setting at once, also one of the value that it had. The rules over several
/// settings are checked together with all others, 300 ms after the last assignment of one that most of them depend on.
/// Main thread only.
class SettingsViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(qlonglong autoLockMinutes READ autoLockMinutes WRITE setAutoLockMinutes NOTIFY autoLockMinutesChanged)
    Q_PROPERTY(bool lockOnSleep READ lockOnSleep WRITE setLockOnSleep NOTIFY lockOnSleepChanged)
    Q_PROPERTY(bool startAtLogin READ startAtLogin WRITE setStartAtLogin NOTIFY startAtLoginChanged)
    Q_PROPERTY(bool hideMenuBarIcon READ hideMenuBarIcon WRITE setHideMenuBarIcon NOTIFY hideMenuBarIconChanged)
    Q_PROPERTY(bool enableTouchID READ enableTouchID WRITE setEnableTouchID NOTIFY enableTouchIDChanged)
    Q_PROPERTY(bool enforceStrongPasswords READ enforceStrongPasswords WRITE setEnforceStrongPasswords NOTIFY
                   enforceStrongPasswordsChanged)
    Q_PROPERTY(QString appearanceMode READ appearanceMode WRITE setAppearanceMode NOTIFY appearanceModeChanged)
    Q_PROPERTY(
        QList<quillhaven::SettingValidationError> validationErrors READ validationErrors NOTIFY validationErrorsChanged)
    Q_PROPERTY(QList<quillhaven::SettingValidationWarning> validationWarnings READ validationWarnings NOTIFY
                   validationWarningsChanged)
    Q_PROPERTY(bool allSettingsValid READ allSettingsValid NOTIFY validationErrorsChanged)
    Q_PROPERTY(bool hasValidationWarnings READ hasValidationWarnings NOTIFY validationWarningsChanged)
    Q_PROPERTY(bool hasUnsavedChanges READ hasUnsavedChanges NOTIFY hasUnsavedChangesChanged)
    Q_PROPERTY(bool isValidating READ isValidating NOTIFY isValidatingChanged)
    Q_PROPERTY(bool touchIDAvailable READ touchIDAvailable NOTIFY touchIDAvailableChanged)
    Q_PROPERTY(bool systemAppearanceSupported READ systemAppearanceSupported NOTIFY systemAppearanceSupportedChanged)

public:
    /// Asks the fingerprint reader and reads the store. A reader that needs time answers later: until then it counts as
    /// not available, and its answer checks `enableTouchID` again. The services must outlive this object.
    explicit SettingsViewModel(const Platform &platform, QObject *parent = nullptr);
    ~SettingsViewModel() override;

    [[nodiscard]] qlonglong autoLockMinutes() const { return m_autoLockMinutes; }
    [[nodiscard]] bool lockOnSleep() const { return m_lockOnSleep; }
    [[nodiscard]] bool startAtLogin() const { return m_startAtLogin; }
    [[nodiscard]] bool hideMenuBarIcon() const { return m_hideMenuBarIcon; }
    [[nodiscard]] bool enableTouchID() const { return m_enableTouchID; }
    [[nodiscard]] bool enforceStrongPasswords() const { return m_enforceStrongPasswords; }
    /// "system", "light" or "dark", or another text, which is an error.
    [[nodiscard]] QString appearanceMode() const { return m_appearanceMode; }

    void setAutoLockMinutes(qlonglong value);
    void setLockOnSleep(bool value);
    void setStartAtLogin(bool value);
    void setHideMenuBarIcon(bool value);
    void setEnableTouchID(bool value);
    void setEnforceStrongPasswords(bool value);
    void setAppearanceMode(const QString &value);

    [[nodiscard]] const QList<SettingValidationError> &validationErrors() const { return m_validationErrors; }
    [[nodiscard]] const QList<SettingValidationWarning> &validationWarnings() const { return m_validationWarnings; }
    [[nodiscard]] bool allSettingsValid() const { return m_validationErrors.isEmpty(); }
    [[nodiscard]] bool hasValidationWarnings() const { return !m_validationWarnings.isEmpty(); }
    /// Whether a setting was assigned since the draft was last loaded or saved.
    [[nodiscard]] bool hasUnsavedChanges() const { return m_hasUnsavedChanges; }
    [[nodiscard]] bool isValidating() const { return m_isValidating; }
    [[nodiscard]] bool touchIDAvailable() const { return m_touchIDAvailable; }
    [[nodiscard]] bool systemAppearanceSupported() const { return m_systemAppearanceSupported; }

    /// Checks the setting with this key again and returns its issues. For the names "security", "autoLock" and
    /// "accessibility" it returns what the last check of all settings found, and for any other text nothing.
    Q_INVOKABLE quillhaven::ValidationResult validateSetting(const QString &key);
    /// The worst of a setting's issues; any warning counts as one, also a hint.
    Q_INVOKABLE [[nodiscard]] quillhaven::ValidationStatus getValidationStatus(const QString &key) const;
    /// The messages of a setting's errors, and then those of its warnings.
    Q_INVOKABLE [[nodiscard]] QStringList getValidationMessages(const QString &key) const;

    /// Writes all seven settings. Writes none, which is logged, while there is an error.
    Q_INVOKABLE void saveSettings();
    /// Assigns the defaults to the draft; the store keeps its values until they are saved.
    Q_INVOKABLE void resetToDefaults();
    /// Reads the store again.
    Q_INVOKABLE void discardChanges();
    /// Asks the fingerprint reader again, and checks `enableTouchID`.
    Q_INVOKABLE void refreshSystemCapabilities();

Q_SIGNALS:
    void autoLockMinutesChanged();
    void lockOnSleepChanged();
    void startAtLoginChanged();
    void hideMenuBarIconChanged();
    void enableTouchIDChanged();
    void enforceStrongPasswordsChanged();
    void appearanceModeChanged();
    void validationErrorsChanged();
    void validationWarningsChanged();
    void hasUnsavedChangesChanged();
    void isValidatingChanged();
    void touchIDAvailableChanged();
    void systemAppearanceSupportedChanged();
    /// A setting was assigned, also one that keeps its value.
    void settingAssigned(const QString &key, QPrivateSignal);

private:
    using Step = void (SettingsViewModel::*)();
    using Changed = void (SettingsViewModel::*)();

    void setupValidation();
    void checkSystemCapabilities();
    [[nodiscard]] static QCoro::Task<> askForTouchID(QPointer<SettingsViewModel> self);
    void loadSettings();
    template <typename Value>
    void assign(QLatin1String key, Value &member, const Value &value, Changed changed);
    template <typename Value>
    void publish(Value &member, const Value &value, Changed changed)
    {
        if (member != value) {
            member = value;
            Q_EMIT(this->*changed)();
        }
    }

    // The rules; in SettingsRules.cpp.
    [[nodiscard]] static Step stepFor(const QString &key);
    void validateAutoLockMinutes();
    void validateLockOnSleep();
    void validateStartAtLogin();
    void validateHideMenuBarIcon();
    void validateTouchID();
    void validateEnforceStrongPasswords();
    void validateAppearanceMode();
    void validateSettingDependencies();
    void validateEverything();
    void validateAllSettings();
    void addValidationError(const QString &setting, const QString &message, ValidationSeverity severity);
    void addValidationWarning(const QString &setting, const QString &message, ValidationSeverity severity);
    void clearValidationIssues(const QString &setting);
    /// Runs a step, and then reports the lists that it has changed.
    void run(Step step);

    UserDefaults &m_defaults;
    Clock &m_clock;
    BiometricAuthenticator &m_context;

    qlonglong m_autoLockMinutes;
    bool m_lockOnSleep;
    bool m_startAtLogin;
    bool m_hideMenuBarIcon;
    bool m_enableTouchID;
    bool m_enforceStrongPasswords;
    QString m_appearanceMode;
    QList<SettingValidationError> m_validationErrors;
    QList<SettingValidationWarning> m_validationWarnings;
    bool m_hasUnsavedChanges = false;
    bool m_isValidating = false;
    bool m_touchIDAvailable = false;
    bool m_systemAppearanceSupported = true;

    std::unique_ptr<RunningTimer> m_untilFullValidation;
};

} // namespace quillhaven
