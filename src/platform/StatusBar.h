// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace quillhaven {

/// An item in the desktop's status bar. It leaves the bar when it is destroyed. Main thread only.
class StatusItem
{
public:
    /// An entry of the menu, for hosts that show no more of an item than that.
    struct MenuEntry
    {
        QString text;
        std::function<void()> action;
    };

    StatusItem() = default;
    virtual ~StatusItem() = default;
    StatusItem(const StatusItem &) = delete;
    StatusItem &operator=(const StatusItem &) = delete;

    /// Sets the image of this name among the program's own, as a template: only its shape counts, and it is drawn so
    /// that it can be seen on a light and on a dark bar. Without such an image the item is empty, and still has its
    /// action.
    virtual void setTemplateImage(const QString &name) = 0;
    virtual void setToolTip(const QString &text) = 0;
    /// What a click does.
    virtual void setAction(std::function<void()> action) = 0;
    virtual void setMenu(std::vector<MenuEntry> entries) = 0;
};

/// The status bar of the desktop. A desktop may have none, and may get or lose it while the program runs; the items are
/// then shown as soon as there is one. Main thread only.
class StatusBar : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Makes an item, which is in the bar for as long as it lives. The bar must outlive it.
    [[nodiscard]] virtual std::unique_ptr<StatusItem> makeStatusItem() = 0;
    /// Whether the desktop shows the items at present. False until that is known.
    [[nodiscard]] virtual bool isShown() const = 0;

Q_SIGNALS:
    void isShownChanged();
};

} // namespace quillhaven
