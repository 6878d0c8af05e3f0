// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/EngineHarness.h"

#include <random>
#include <string>
#include <vector>

namespace quillhaven::test {

/// A few items on which random operations run concurrently, and checks of the state after they have ended: in any
/// order, the data of each item is complete in one place, and its record, placeholder, container and credential match.
class Interleavings
{
public:
    Interleavings(TestPlatform &services, unsigned seed);

    /// Starts some operations at the same time and waits for them. Returns their names, for a message.
    std::string round();
    /// Compares the disk, the credentials and the catalogue with each other.
    void check() const;
    /// The number of operations in all rounds.
    [[nodiscard]] int operations() const { return m_operations; }

private:
    struct Item
    {
        QString name;
        QByteArray bytes;
        bool isFolder = false;
        bool usesTouchID = false;
        bool isShredded = false; ///< it may have been shredded since it was created
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
    /// Starts an operation that the item's state allows, and returns its name.
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

} // namespace quillhaven::test
