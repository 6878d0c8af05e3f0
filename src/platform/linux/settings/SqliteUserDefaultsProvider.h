// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/settings/SqliteUserDefaults.h"

#include <map>
#include <memory>

namespace quillhaven {

/// The domains of the program itself, of which only one instance runs. A damaged database is set aside under another
/// name, and a new one takes its place; one that cannot be written is only read. Both are logged.
/// Another program opens the one domain that it needs with `SqliteUserDefaults::open`.
class SqliteUserDefaultsProvider : public UserDefaultsProvider
{
public:
    explicit SqliteUserDefaultsProvider(const QString &directory);
    ~SqliteUserDefaultsProvider() override;

    [[nodiscard]] UserDefaults &standard() override;
    [[nodiscard]] std::optional<QString> problem() const override { return m_standard->problem(); }
    [[nodiscard]] bool reopen() override;
    [[nodiscard]] UserDefaults *suite(const QString &name) override;

    /// The name of the standard domain.
    static inline const QString standardDomain = QStringLiteral("com.tarnwick.quillhaven");

private:
    QString m_directory;
    std::unique_ptr<SqliteUserDefaults> m_standard;
    std::map<QString, std::unique_ptr<UserDefaults>> m_suites; ///< nullptr for one to be tried again
};

} // namespace quillhaven
