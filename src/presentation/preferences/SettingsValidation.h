// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/tokens/Styles.h"

#include <QColor>
#include <QList>
#include <QObject>
#include <QString>
#include <QUuid>
#include <QtQml/qqmlregistration.h>

#include <array>

namespace quillhaven {

struct ColorTokens;

/// How much an issue of a setting matters.
enum class ValidationSeverity : quint8 { error, warning, info };

inline constexpr std::array allValidationSeverities{ValidationSeverity::error, ValidationSeverity::warning,
                                                    ValidationSeverity::info};

/// The symbol of a severity.
[[nodiscard]] QString iconName(ValidationSeverity severity);
/// Its colour in a scheme.
[[nodiscard]] QColor color(ValidationSeverity severity, const ColorTokens &tokens);

/// What is found wrong with a setting, or could be better: the fields of an error and of a warning.
struct SettingIssue
{
    Q_GADGET
    Q_PROPERTY(QUuid id MEMBER id CONSTANT)
    Q_PROPERTY(QString setting MEMBER setting CONSTANT)
    Q_PROPERTY(QString message MEMBER message CONSTANT)
    Q_PROPERTY(int severity READ severityValue CONSTANT)
    Q_PROPERTY(QString iconName READ severityIconName CONSTANT)

public:
    QUuid id = QUuid::createUuid(); ///< identifies this issue; another one of the same words has another id
    QString setting;                ///< the key that the issue is filed under
    QString message;
    ValidationSeverity severity = ValidationSeverity::error;

    [[nodiscard]] int severityValue() const { return int(severity); }
    [[nodiscard]] QString severityIconName() const { return quillhaven::iconName(severity); }

    bool operator==(const SettingIssue &) const = default;
};

/// Prevents the settings from being saved.
struct SettingValidationError : SettingIssue
{
    Q_GADGET
    QML_VALUE_TYPE(settingValidationError)

public:
    bool operator==(const SettingValidationError &) const = default;
};

/// Advice, which does not prevent the settings from being saved.
struct SettingValidationWarning : SettingIssue
{
    Q_GADGET
    QML_VALUE_TYPE(settingValidationWarning)

public:
    bool operator==(const SettingValidationWarning &) const = default;
};

/// The issues of one setting, each list in the order in which they were found.
struct ValidationResult
{
    Q_GADGET
    QML_VALUE_TYPE(validationResult)
    Q_PROPERTY(bool isValid MEMBER isValid CONSTANT)
    Q_PROPERTY(QList<quillhaven::SettingValidationError> errors MEMBER errors CONSTANT)
    Q_PROPERTY(QList<quillhaven::SettingValidationWarning> warnings MEMBER warnings CONSTANT)
    Q_PROPERTY(bool hasIssues READ hasIssues CONSTANT)

public:
    bool isValid = true;
    QList<SettingValidationError> errors{};
    QList<SettingValidationWarning> warnings{};

    [[nodiscard]] bool hasIssues() const { return !errors.isEmpty() || !warnings.isEmpty(); }

    bool operator==(const ValidationResult &) const = default;
};

/// The worst issue of a setting.
enum class ValidationStatus { valid, warning, error };

/// What a status component shows for it.
[[nodiscard]] StatusType::Case statusType(ValidationStatus status);

} // namespace quillhaven
