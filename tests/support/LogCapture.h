// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMutex>
#include <QStringList>

#include <memory>

namespace quillhaven::test {

/// Collects what the program logs during its lifetime.
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
    /// Shared with the sink, which a worker may still call after this object was destroyed.
    struct Text
    {
        QMutex mutex;
        QString text;
    };
    std::shared_ptr<Text> m_text = std::make_shared<Text>();
};

} // namespace quillhaven::test
