// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/QtStatusBar.h"

#include "platform/WatchedSources.h"

#include <QFile>
#include <QMenu>
#include <QPainter>
#include <QSvgRenderer>
#include <QSystemTrayIcon>

#include <algorithm>
#include <array>

namespace quillhaven {

namespace {

QImage filledShape(QSvgRenderer &drawing, int size, const QColor &color)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter, QRectF(0, 0, size, size));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

QPixmap edgedShape(QSvgRenderer &drawing, int size)
{
    const QImage edge = filledShape(drawing, size, QColor(30, 34, 44, 210));
    const int width = std::max(1, size / 24);
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    for (const QPoint &offset :
         {QPoint(-width, 0), QPoint(width, 0), QPoint(0, -width), QPoint(0, width), QPoint(width, width)}) {
        painter.drawImage(offset, edge);
    }
    painter.drawImage(QPoint(), filledShape(drawing, size, QColor(255, 255, 255)));
    return pixmap;
}

} // namespace

QIcon templateIcon(const QString &name)
{
    const QString path = QStringLiteral(":/images/%1.svg").arg(name);
    if (!QFile::exists(path)) {
        return {};
    }
    QSvgRenderer drawing(path);
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48}) {
        icon.addPixmap(edgedShape(drawing, size));
    }
    return icon;
}

/// An item that exists for the desktop only while there is a host.
class QtStatusItem : public StatusItem
{
public:
    explicit QtStatusItem(QtStatusBar &bar) : m_bar(bar)
    {
        m_bar.m_items.append(this);
        setShown(bar.isShown());
    }
    ~QtStatusItem() override { m_bar.m_items.removeAll(this); }

    void setTemplateImage(const QString &name) override
    {
        m_icon = templateIcon(name);
        if (m_icon.isNull()) {
            QPixmap nothing(1, 1);
            nothing.fill(Qt::transparent);
            m_icon.addPixmap(nothing);
        }
        update();
    }
    void setToolTip(const QString &text) override
    {
        m_toolTip = text;
        update();
    }
    void setAction(std::function<void()> action) override { m_action = std::move(action); }
    void setMenu(std::vector<MenuEntry> entries) override
    {
        m_menu.clear();
        for (const MenuEntry &entry : entries) {
            m_menu.addAction(entry.text, &m_menu, entry.action);
        }
    }

    void setShown(bool isShown)
    {
        if (!isShown) {
            m_tray.reset();
            return;
        }
        m_tray = std::make_unique<QSystemTrayIcon>();
        QObject::connect(m_tray.get(), &QSystemTrayIcon::activated, m_tray.get(),
                         [this](QSystemTrayIcon::ActivationReason reason) {
                             if (reason == QSystemTrayIcon::Trigger && m_action) {
                                 m_action();
                             }
                         });
        m_tray->setContextMenu(&m_menu);
        update();
    }

private:
    void update()
    {
        if (m_tray) {
            m_tray->setIcon(m_icon);
            m_tray->setToolTip(m_toolTip);
            m_tray->setVisible(!m_icon.isNull());
        }
    }

    QtStatusBar &m_bar;
    QIcon m_icon;
    QString m_toolTip;
    std::function<void()> m_action;
    QMenu m_menu;
    std::unique_ptr<QSystemTrayIcon> m_tray;
};

QtStatusBar::QtStatusBar(WatchedSources &watched, QObject *parent) : StatusBar(parent), m_watched(watched)
{
    connect(&m_host, &StatusNotifierHost::changed, this, &QtStatusBar::hostChanged);
}

QtStatusBar::~QtStatusBar() = default;

std::unique_ptr<StatusItem> QtStatusBar::makeStatusItem()
{
    return std::make_unique<QtStatusItem>(*this);
}

void QtStatusBar::hostChanged()
{
    for (QtStatusItem *item : std::as_const(m_items)) {
        item->setShown(isShown());
    }
    m_watched.setState(
        WatchedSources::Source::Tray,
        {.isAvailable = isShown(),
         .sentence = isShown()
                         ? QStringLiteral("The desktop's panel shows Quillhaven's icon.")
                         : QStringLiteral("The desktop has no panel that shows Quillhaven's icon. Closing the window "
                                          "minimizes it, and starting Quillhaven again brings it back.")});
    Q_EMIT isShownChanged();
}

} // namespace quillhaven
