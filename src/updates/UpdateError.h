// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/LocalizedError.h"

namespace quillhaven {

/// Why the information about the latest version could not be fetched.
class UpdateError : public LocalizedError
{
public:
    enum class Case { invalidURL, networkError, parseError, gistNotFound };

    [[nodiscard]] static UpdateError invalidURL();
    /// The server answered, but not with the document.
    [[nodiscard]] static UpdateError networkError();
    /// Raised by nothing: a document that cannot be decoded gives the decoder's own error.
    [[nodiscard]] static UpdateError parseError();
    [[nodiscard]] static UpdateError gistNotFound();

    [[nodiscard]] Case errorCase() const { return m_case; }

private:
    UpdateError(Case errorCase, const QString &description) : LocalizedError(description), m_case(errorCase) {}

    Case m_case;
};

} // namespace quillhaven
