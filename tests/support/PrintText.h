// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <ostream>

/// For the messages of failed assertions, which would show each unit of the text as a number.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
