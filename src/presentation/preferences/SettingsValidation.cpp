// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/SettingsValidation.h"

#include "presentation/tokens/ColorTokens.h"

namespace quillhaven {

QString iconName(ValidationSeverity severity)
{
    switch (severity) {
    case ValidationSeverity::error:
        return QStringLiteral("xmark.circle.fill");
    case ValidationSeverity::warning:
        return QStringLiteral("exclamationmark.triangle.fill");
    case ValidationSeverity::info:
        return QStringLiteral("info.circle.fill");
    }
    Q_UNREACHABLE();
}

QColor color(ValidationSeverity severity, const ColorTokens &tokens)
{
    switch (severity) {
    case ValidationSeverity::error:
        return tokens.error;
    case ValidationSeverity::warning:
        return tokens.warning;
    case ValidationSeverity::info:
        return tokens.info;
    }
    Q_UNREACHABLE();
}

StatusType::Case statusType(ValidationStatus status)
{
    switch (status) {
    case ValidationStatus::valid:
        return StatusType::Enabled;
    case ValidationStatus::warning:
        return StatusType::Warning;
    case ValidationStatus::error:
        return StatusType::Error;
    }
    Q_UNREACHABLE();
}

} // namespace quillhaven
