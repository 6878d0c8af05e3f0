#pragma once

#include "platform/UserDefaults.h"

#include <map>
#include <memory>

namespace quillhaven {

/// The settings domains as one SQLite database (WAL) each, `<directory>/<name>.db`, mode 0600.
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
    std::map<QString, std::unique_ptr<UserDefaults>> m_domains;
};

} // namespace quillhaven
