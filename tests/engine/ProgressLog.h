// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/QuillhavenManager.h"

#include <QCoreApplication>
#include <QStringList>
#include <QThread>

#include <gtest/gtest.h>

namespace quillhaven::test {

/// Records the progress that an operation reports, with a line such as "0.3 Creating duplicate..." for each call.
class ProgressLog
{
public:
    explicit ProgressLog(const QuillhavenManager &manager) : m_manager(manager) {}

    [[nodiscard]] ProgressCallback callback()
    {
        return [this](const QString &status, double progress) {
            EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
            EXPECT_TRUE(m_manager.isProcessing()) << qUtf8Printable(status);
            lines.append(QString::number(progress, 'g', 15) + QLatin1Char(' ') + status);
        };
    }

    QStringList lines;

private:
    const QuillhavenManager &m_manager;
};

} // namespace quillhaven::test
