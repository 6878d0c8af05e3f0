// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

/// The keys of the settings store; no other file spells one.
namespace quillhaven::defaults_keys {

inline const QString protectedItems = QStringLiteral("ProtectedItems");                 ///< data: the catalogue
inline const QString enableTouchID = QStringLiteral("enableTouchID");                   ///< bool, true when absent
inline const QString enforceStrongPasswords = QStringLiteral("enforceStrongPasswords"); ///< bool, true when absent
inline const QString enableiCloudBackup = QStringLiteral("enableiCloudBackup");         ///< bool, false when absent

/// The domain that other programs of the user read.
inline const QString sharedSuite = QStringLiteral("TQ4WZ81KDR.com.quillhaven.shared");

} // namespace quillhaven::defaults_keys
