// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/session/FprintAuthenticator.h"
#include "platform/linux/session/FprintClient.h"
#include "support/RunTask.h"

#include <QTimer>

#include <gtest/gtest.h>

namespace quillhaven::test {

inline const QString reasonText = QStringLiteral("Unlock protected item");

/// Counts the iterations of the event loop.
class Ticker
{
public:
    Ticker()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { ++m_count; });
        m_timer.start(10);
    }
    [[nodiscard]] int count() const { return m_count; }

private:
    QTimer m_timer;
    int m_count = 0;
};

class FprintFixture : public ::testing::Test
{
protected:
    void expectPrompt(const QString &hint)
    {
        EXPECT_TRUE(spinUntil([&] { return authenticator->hint() == hint; }))
            << "the hint is: " << qUtf8Printable(authenticator->hint());
        EXPECT_TRUE(authenticator->isPrompting());
        EXPECT_EQ(authenticator->reason(), reasonText);
    }
    void expectNoPrompt()
    {
        EXPECT_FALSE(authenticator->isPrompting());
        EXPECT_EQ(authenticator->reason(), QString());
        EXPECT_EQ(authenticator->hint(), QString());
    }
    /// Starts an evaluation, and waits until the reader waits for a finger.
    RunningTask<bool> beginEvaluation()
    {
        RunningTask<bool> evaluation(authenticator->evaluatePolicy(reasonText));
        expectPrompt(placeFinger);
        return evaluation;
    }
    bool canEvaluatePolicy() { return runTask(authenticator->canEvaluatePolicy()); }
    bool evaluatePolicy() { return runTask(authenticator->evaluatePolicy(reasonText)); }

    const QString placeFinger = QStringLiteral("Place your finger on the reader");
    std::unique_ptr<FprintAuthenticator> authenticator = std::make_unique<FprintAuthenticator>();
};

} // namespace quillhaven::test
