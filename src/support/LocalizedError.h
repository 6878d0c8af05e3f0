// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <exception>
#include <string>

namespace quillhaven {

/// An error whose description is a sentence for the user. Caught by reference, thrown by value.
class LocalizedError : public std::exception
{
public:
    /// The sentence that a dialog shows.
    [[nodiscard]] virtual QString errorDescription() const { return m_description; }
    [[nodiscard]] const char *what() const noexcept override { return m_utf8.c_str(); }

protected:
    explicit LocalizedError(const QString &description) : m_description(description), m_utf8(description.toStdString())
    {
    }

private:
    QString m_description;
    std::string m_utf8;
};

/// The sentence for any exception: `errorDescription()` of ours, `what()` of the others.
[[nodiscard]] QString localizedDescription(const std::exception &error);

/// The same for a captured exception, whatever its type.
[[nodiscard]] QString localizedDescription(const std::exception_ptr &error);

} // namespace quillhaven
