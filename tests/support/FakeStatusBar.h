// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/StatusBar.h"

#include <QStringList>

namespace quillhaven::test {

/// A status bar in which the test clicks. It has one item at most.
class FakeStatusBar : public StatusBar
{
public:
    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem() override
    {
        calls.append(QStringLiteral("item"));
        return std::make_unique<Item>(*this);
    }
    [[nodiscard]] bool isShown() const override { return m_isShown; }
    void setShown(bool value)
    {
        m_isShown = value;
        Q_EMIT isShownChanged();
    }

    QStringList calls; ///< what the program has done to the bar and its item, in order
    QString image;
    std::function<void()> click;
    std::vector<StatusItem::MenuEntry> menu;

private:
    class Item : public StatusItem
    {
    public:
        explicit Item(FakeStatusBar &bar) : m_bar(bar) {}
        ~Item() override
        {
            m_bar.calls.append(QStringLiteral("remove item"));
            m_bar.click = {};
        }
        void setTemplateImage(const QString &name) override { m_bar.image = name; }
        void setToolTip(const QString & /*text*/) override {}
        void setAction(std::function<void()> action) override { m_bar.click = std::move(action); }
        void setMenu(std::vector<MenuEntry> entries) override { m_bar.menu = std::move(entries); }

    private:
        FakeStatusBar &m_bar;
    };

    bool m_isShown = false;
};

} // namespace quillhaven::test
