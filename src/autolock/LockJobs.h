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

/// What is called when the lock of an item has ended, with its name, and when the locks of all items have.
struct Outcome
{
    std::function<void(const QString &name)> succeeded;
    std::function<void(const QString &name, const QString &description)> failed;
    QString cause; ///< for the report: `LockReport::text`
    /// Not called with an empty report.
    std::function<void(const QString &report)> ended;
};

/// Starts a job for each of the items that locks it, and returns. Where a master password is set, each lock asks for it
/// unless the user has allowed auto-lock to act without it. The engine must outlive the jobs.
void start(QuillhavenManager &engine, const UserDefaults &defaults, const QList<ProtectedItem> &items,
           const Outcome &outcome);

} // namespace lockJobs

} // namespace quillhaven
