// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStoreState.h"

namespace quillhaven::test {

/// A state that the test sets; it counts what it is asked for.
class FakeCredentialStoreState : public CredentialStoreState
{
public:
    using CredentialStoreState::setPhase;

    void tryAgain() override { ++tries; }
    void useStoreAtHand() override { ++replacements; }

    int tries = 0;
    int replacements = 0;
};

} // namespace quillhaven::test
