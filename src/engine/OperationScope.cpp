// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/OperationScope.h"

#include "async/AfterPosted.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/QuillhavenManager.h"

#include <utility>

namespace quillhaven {

QCoro::Task<std::unique_ptr<OperationScope>> OperationScope::begin(QuillhavenManager &engine, Mark mark, QString itemId)
{
    const bool wasListed = engine.isListed(itemId);
    if (!co_await engine.m_masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return std::unique_ptr<OperationScope>();
    }
    if (mark == Mark::EngineLater) {
        co_await afterPosted(); // In a list the end of the item before must not clear the flag of this one.
    }
    co_return std::unique_ptr<OperationScope>(new OperationScope(engine, mark, std::move(itemId), wasListed));
}

std::unique_ptr<OperationScope> OperationScope::beginUnattended(QuillhavenManager &engine, Mark mark, QString itemId)
{
    const bool wasListed = engine.isListed(itemId);
    return std::unique_ptr<OperationScope>(new OperationScope(engine, mark, std::move(itemId), wasListed));
}

OperationScope::OperationScope(QuillhavenManager &engine, Mark mark, QString itemId, bool wasListed)
    : m_engine(engine), m_mark(mark), m_itemId(std::move(itemId)), m_wasListed(wasListed)
{
    if (m_mark == Mark::Item) {
        m_engine.setItemIsProcessing(m_itemId, true);
    } else {
        m_engine.setIsProcessing(true);
    }
}

OperationScope::~OperationScope()
{
    clearMark();
}

QCoro::Task<> OperationScope::lease()
{
    if (m_lease.isHeld()) {
        co_return;
    }
    m_lease = co_await m_engine.m_catalogue.lease(m_itemId);
    if (m_isMarked && m_mark == Mark::Item) {
        m_engine.setItemIsProcessing(m_itemId, true); // The operation before has taken its mark away.
    }
}

QCoro::Task<bool> OperationScope::leaseInSession()
{
    MasterPasswordManager &guard = m_engine.m_masterPasswordManager;
    const auto asks = [&guard] { return guard.hasMasterPassword() && !guard.isAuthenticated(); };
    do {
        if (asks()) {
            releaseLease();
        }
        if (!co_await guard.requireAuthenticationOrCancel()) {
            co_return false;
        }
        co_await lease(); // While it waits, another operation may close the session.
    } while (asks());
    co_return true;
}

void OperationScope::clearMark()
{
    if (!std::exchange(m_isMarked, false)) {
        return;
    }
    switch (m_mark) {
    case Mark::Engine:
        m_engine.setIsProcessing(false);
        break;
    case Mark::EngineLater:
        m_engine.stopProcessingLater();
        break;
    case Mark::Item:
        m_engine.setItemIsProcessing(m_itemId, false);
        break;
    }
}

void OperationScope::endSession()
{
    m_engine.m_masterPasswordManager.endSession();
}

} // namespace quillhaven
