// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/EngineHarness.h"

#include <optional>
#include <random>
#include <vector>

namespace quillhaven::test {

/// A simple model of a few files and folders while a user, other programs and restarts work on them. Every step
/// performs one random action on the model and with the real engine, and compares all items.
class ItemModel
{
public:
    ItemModel(TestPlatform &services, unsigned seed);

    /// Performs one random action, and returns its name for a message.
    std::string step();
    /// Compares every item with the disk and the catalogue.
    void check() const;

private:
    enum class State { Plain, Locked, Unlocked, Gone };

    struct Item
    {
        QString path;
        bool isFolder = false;
        State state = State::Plain;
        QString id;                      ///< of the record, if there is one
        std::optional<QByteArray> bytes; ///< the data; nothing if its owner deleted it
        bool hasPlaceholder = false;     ///< while locked: whether there is a file at the place
        [[nodiscard]] QString dataIn(const QString &place) const
        {
            return isFolder ? place + QStringLiteral("/inner.txt") : place;
        }
    };

    void start();
    /// Tries a random action; returns "nothing" if the item's state does not allow it.
    std::string tryStep();
    std::string recreate(Item &item);
    /// Whether an existing item uses this path.
    [[nodiscard]] bool isTaken(const QString &path) const;
    [[nodiscard]] unsigned pick(unsigned bound) { return m_random() % bound; }
    [[nodiscard]] const ProtectedItem *record(const Item &item) const;
    /// Returns the case of the error that the call throws, or nothing.
    template <typename Call>
    std::optional<QString> errorOf(Call call);
    template <typename Call>
    void expectSuccess(Call call);

    std::string protect(Item &item);
    std::string lock(Item &item);
    std::string unlock(Item &item);
    std::string unlockWithWrongPassword(Item &item);
    std::string unlockCancelled(Item &item);
    std::string remove(Item &item);
    std::string duplicate(Item &item);
    std::string shred(Item &item);
    std::string editOutside(Item &item);
    std::string deleteOutside(Item &item);
    std::string bulkLock();
    std::string bulkUnlock();
    std::string restart();
    std::string declineThePanel(Item &item);

    TestPlatform &m_services;
    std::mt19937 m_random;
    std::unique_ptr<EngineHarness> m_engine;
    std::vector<Item> m_items;
    int m_edits = 0;
};

} // namespace quillhaven::test
