// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace quillhaven {

/// A copy of a database file and its log in a private folder, which is removed with this object. A database with a log
/// cannot be read at a place where nothing can be written.
class DatabaseCopy
{
public:
    explicit DatabaseCopy(const QString &database);

    /// Where the copy is; empty when the file could not be copied.
    [[nodiscard]] QString path() const { return m_path; }
    /// Why it could not be copied.
    [[nodiscard]] QString reason() const { return m_reason; }

private:
    [[nodiscard]] bool copyFile(const QString &source, const QString &target);

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    QString m_reason;
};

} // namespace quillhaven
