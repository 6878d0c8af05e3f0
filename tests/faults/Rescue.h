// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/EngineHarness.h"

#include <functional>

namespace quillhaven::test {

/// What a user does after an interrupted run: every lost item is given back, to the place that is probably its own or
/// else to the one that `placeOf` names, and every row whose data is back is settled. Then nothing is found any more.
inline void rescueAll(EngineHarness &engine, const std::function<QString(const LostItem &)> &placeOf,
                      QuillhavenManager::Returned returned)
{
    const RescueFindings findings = runTask(engine.manager.findLostItems());
    for (const LostItem &lost : findings.lostItems) {
        const QString place = lost.probablePlace.isEmpty() ? placeOf(lost) : lost.probablePlace;
        EXPECT_TRUE(runTask(engine.manager.giveBackLostItem(lost, place))) << place.toStdString();
    }
    for (const QString &id : findings.returnedItems) {
        EXPECT_TRUE(runTask(engine.manager.settleReturnedItem(id, returned)));
    }
    for (const QString &id : findings.interruptedLocks) {
        runTask(engine.manager.lockItem(*engine.manager.catalogue().item(id)));
    }
    EXPECT_EQ(runTask(engine.manager.findLostItems()).count(), 0);
}

} // namespace quillhaven::test
