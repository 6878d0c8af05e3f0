// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStore.h"

#include <QSemaphore>

#include <atomic>
#include <exception>

namespace quillhaven::test {

/// A store whose lookups wait, on the credential queue, until the test lets them continue, like a slow keyring.
class GatedCredentialStore : public CredentialStore
{
public:
    explicit GatedCredentialStore(CredentialStore &next) : m_next(next) {}

    [[nodiscard]] CredentialStatus prepareForWriting() override { return m_next.prepareForWriting(); }
    [[nodiscard]] CredentialStatus add(const QString &service, const QString &account, const QByteArray &value) override
    {
        return m_next.add(service, account, value);
    }
    [[nodiscard]] CredentialStatus update(const QString &service, const QString &account,
                                          const QByteArray &value) override
    {
        return m_next.update(service, account, value);
    }
    [[nodiscard]] Match copyMatching(const QString &service, const QString &account) override
    {
        ++lookups;
        if (isClosed) {
            m_gate.acquire();
        }
        if (failure) {
            std::rethrow_exception(failure);
        }
        return m_next.copyMatching(service, account);
    }
    [[nodiscard]] CredentialStatus remove(const QString &service, const QString &account) override
    {
        return m_next.remove(service, account);
    }
    [[nodiscard]] Place place() const override { return m_next.place(); }

    void letOneThrough() { m_gate.release(); }

    std::atomic<bool> isClosed = false;
    std::atomic<int> lookups = 0; ///< started, including the waiting one
    std::exception_ptr failure;   ///< what a lookup throws; set it only while none is running

private:
    CredentialStore &m_next;
    QSemaphore m_gate;
};

} // namespace quillhaven::test
