// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/EngineHarness.h"

#include <random>
#include <string>
#include <vector>

namespace quillhaven::testing {

/// A few items on which random operations run side by side, and what must be true once they have ended: whichever came
/// first, the data of each item is whole in one place, and record, placeholder, container and credential fit to it.
class Interleavings
{
public:
    Interleavings(TestPlatform &services, unsigned seed);

    /// Starts some operations at once and waits for them. Their names, for a message.
    std::string round();
    /// Compares the disk, the credentials and the catalogue with each other.
    void check() const;
    /// The operations of all rounds.
    [[nodiscard]] int operations() const { return m_operations; }

private:
    struct Item
    {
        QString name;
        QByteArray bytes;
        bool isFolder = false;
        bool usesTouchID = false;
        bool isShredded = false; ///< a shred of it has been started since it was made
        [[nodiscard]] QString data(const QString &place) const
        {
            return isFolder ? place + QStringLiteral("/inner.txt") : place;
        }
    };
    using Run = std::unique_ptr<RunningTask<void>>;

    [[nodiscard]] QString place(const Item &item) const;
    [[nodiscard]] const ProtectedItem *record(const Item &item) const;
    [[nodiscard]] unsigned pick(unsigned bound) { return m_random() % bound; }

    void make(Item &item);
    /// Starts one operation that the item's state allows; its name.
    std::string start(Item &item, std::vector<Run> &runs);
    std::string startOnRecord(Item &item, const ProtectedItem &known, std::vector<Run> &runs);
    void add(std::vector<Run> &runs, QCoro::Task<> task);

    void checkItem(const Item &item) const;
    void checkData(const Item &item, const ProtectedItem *known) const;
    void checkStrays() const;
    [[nodiscard]] QStringList namesIn(const QString &folder) const;

    TestPlatform &m_services;
    std::mt19937 m_random;
    EngineHarness m_engine;
    std::vector<Item> m_items;
    bool m_isAsking = false; ///< an operation of this round shows the one password dialog
    int m_operations = 0;
    int m_made = 0;
};

} // namespace quillhaven::testing
