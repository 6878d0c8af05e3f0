// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMutex>
#include <QStringList>

namespace quillhaven::testing {

/// Collects what the program logs, for as long as it lives.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    [[nodiscard]] QStringList lines() const;
    [[nodiscard]] bool contains(const QString &line) const { return lines().contains(line); }
    void clear();

private:
    mutable QMutex m_mutex;
    QString m_text;
};

} // namespace quillhaven::testing
