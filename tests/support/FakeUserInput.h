// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserInput.h"

#include <vector>

namespace quillhaven::test {

/// Input as the test says; every monitor that is alive hears of it.
class FakeUserInput : public UserInput
{
public:
    [[nodiscard]] std::unique_ptr<Monitor> addGlobalMonitor(InputEvents events, Handler handler) override
    {
        return hasGlobalSource ? std::make_unique<FakeMonitor>(global, Entry{events, std::move(handler)}) : nullptr;
    }
    [[nodiscard]] std::unique_ptr<Monitor> addLocalMonitor(InputEvents events, Handler handler) override
    {
        return std::make_unique<FakeMonitor>(local, Entry{events, std::move(handler)});
    }

    struct Entry
    {
        InputEvents events;
        Handler handler;
    };
    using Entries = std::vector<std::shared_ptr<Entry>>;

    /// Input to another program.
    void inputElsewhere(InputEvent event) const { report(global, event); }
    /// Input to this program.
    void inputHere(InputEvent event) const { report(local, event); }

    Entries global;
    Entries local;
    bool hasGlobalSource = true;

private:
    class FakeMonitor : public Monitor
    {
    public:
        FakeMonitor(Entries &entries, Entry entry)
            : m_entries(entries), m_entry(std::make_shared<Entry>(std::move(entry)))
        {
            m_entries.push_back(m_entry);
        }
        ~FakeMonitor() override { std::erase(m_entries, m_entry); }

    private:
        Entries &m_entries;
        std::shared_ptr<Entry> m_entry;
    };

    static void report(const Entries &entries, InputEvent event)
    {
        for (const auto &entry : Entries(entries)) {
            if (entry->events.testFlag(event)) {
                entry->handler();
            }
        }
    }
};

} // namespace quillhaven::test
