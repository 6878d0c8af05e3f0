// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <exception>
#include <string>

namespace quillhaven {

/// An error whose description is a sentence for the user. Throw it by value and catch it by reference.
class LocalizedError : public std::exception
{
public:
    /// The sentence to show to the user.
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

/// The description of any exception: `errorDescription()` of a LocalizedError, `what()` of any other.
[[nodiscard]] QString localizedDescription(const std::exception &error);

/// The same for a captured exception, whatever its type.
[[nodiscard]] QString localizedDescription(const std::exception_ptr &error);

} // namespace quillhaven
