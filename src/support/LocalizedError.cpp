// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/LocalizedError.h"

namespace quillhaven {

QString localizedDescription(const std::exception &error)
{
    if (const auto *localized = dynamic_cast<const LocalizedError *>(&error)) {
        return localized->errorDescription();
    }
    return QString::fromUtf8(error.what());
}

QString localizedDescription(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const std::exception &known) {
        return localizedDescription(known);
    } catch (...) {
        return QStringLiteral("An unknown error occurred.");
    }
}

} // namespace quillhaven
