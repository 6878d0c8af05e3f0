// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <ostream>

/// For messages of failed assertions, which would otherwise print the code units as numbers.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
