// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"

#include <QList>

#include <functional>

namespace quillhaven {

class QuillhavenManager;
class UserDefaults;

/// What both auto-lock managers do to the items.
namespace lockJobs {

/// The items whose data is at its place, in the order of the list.
[[nodiscard]] QList<ProtectedItem> unlockedItems(const QuillhavenManager &engine);

/// How one lock ended.
struct Outcome
{
    std::function<void()> succeeded;
    std::function<void(const QString &description)> failed;
};

/// Starts a job of its own that locks the item, and returns. Where a master password is set, the lock asks for it
/// unless the user has allowed auto-lock to act without it. The engine must outlive the job.
void start(QuillhavenManager &engine, const UserDefaults &defaults, const ProtectedItem &item, Outcome outcome);

} // namespace lockJobs

} // namespace quillhaven
