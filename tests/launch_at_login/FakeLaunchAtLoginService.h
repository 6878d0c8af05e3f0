// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"
#include "launch_at_login/LaunchAtLoginService.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace quillhaven::test {

/// What the test and the service that it has given away share.
struct FakeRegistration
{
    bool isRegistered = false;
    QStringList calls;
    /// Called by the operation of this name instead of its success, to throw.
    std::function<void()> failRegister;
    std::function<void()> failUnregister;
    std::function<void()> failStatus;
    /// While it exists, changes wait for it.
    std::optional<Answer<bool>> gate;
};

/// A registration that the test controls. Every operation suspends, as the real ones do.
class FakeLaunchAtLoginService : public LaunchAtLoginService
{
public:
    explicit FakeLaunchAtLoginService(std::shared_ptr<FakeRegistration> registration)
        : m_registration(std::move(registration))
    {
    }

    QCoro::Task<> registerApp() override { return change(QStringLiteral("register"), true); }
    QCoro::Task<> unregister() override { return change(QStringLiteral("unregister"), false); }
    QCoro::Task<bool> isRegistered() override
    {
        const std::shared_ptr<FakeRegistration> registration = m_registration;
        registration->calls.append(QStringLiteral("status"));
        static_cast<void>(co_await nextTurn());
        if (registration->failStatus) {
            registration->failStatus();
        }
        co_return registration->isRegistered;
    }

private:
    static Answer<bool> nextTurn()
    {
        const Answer<bool> answer;
        postToMainThread([answer] { answer.give(true); });
        return answer;
    }
    QCoro::Task<> change(QString name, bool value)
    {
        const std::shared_ptr<FakeRegistration> registration = m_registration;
        registration->calls.append(name);
        const Answer<bool> turn = registration->gate ? *registration->gate : nextTurn();
        static_cast<void>(co_await turn);
        const auto fail = value ? registration->failRegister : registration->failUnregister;
        if (fail) {
            fail();
        }
        registration->isRegistered = value;
    }

    std::shared_ptr<FakeRegistration> m_registration;
};

} // namespace quillhaven::test
