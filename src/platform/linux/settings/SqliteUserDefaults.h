// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserDefaults.h"

#include <map>
#include <memory>

namespace quillhaven {

/// The settings domains as one SQLite database (WAL) each, `<directory>/<name>.db`, mode 0600, which another process
/// may read and write meanwhile. A database that cannot be read as one is set aside under another name and a fresh one
/// takes its place; a place that cannot be written leaves the domain in memory. Both are logged.
class SqliteUserDefaultsProvider : public UserDefaultsProvider
{
public:
    /// `directory` is made, mode 0700, when it is missing.
    explicit SqliteUserDefaultsProvider(const QString &directory);
    ~SqliteUserDefaultsProvider() override;

    [[nodiscard]] UserDefaults &standard() override;
    [[nodiscard]] UserDefaults *suite(const QString &name) override;

    /// The name of the standard domain.
    static inline const QString standardDomain = QStringLiteral("com.tarnwick.quillhaven");

private:
    QString m_directory;
    std::unique_ptr<UserDefaults> m_standard;
    std::map<QString, std::unique_ptr<UserDefaults>> m_suites; ///< a suite that could not be opened is asked anew
};

} // namespace quillhaven
