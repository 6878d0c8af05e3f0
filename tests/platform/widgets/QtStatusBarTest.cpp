// SPDX-License-Identifier: GPL-3.0-or-later

// The status item as a desktop sees it, over a session bus of its own with a double of a panel.

#include "platform/widgets/QtStatusBar.h"

#include "platform/WatchedSources.h"
#include "support/RunTask.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QProcess>

#include <gtest/gtest.h>

#include <optional>

namespace quillhaven {
namespace {

using test::spinUntil;

/// The panel: it is on the bus while it lives.
class PanelDouble
{
public:
    explicit PanelDouble(const QStringList &options = {})
    {
        m_process.start(QStringLiteral("/usr/bin/python3"), QStringList{QStringLiteral(WATCHER_DOUBLE)} + options);
        EXPECT_TRUE(spinUntil([this] { return lines().contains("ready"); }));
    }
    ~PanelDouble()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }
    PanelDouble(const PanelDouble &) = delete;
    PanelDouble &operator=(const PanelDouble &) = delete;

    void setHost(bool isThere) { m_process.write(isThere ? "host\n" : "no host\n"); }
    /// How many items have registered since its start.
    int registrations() { return static_cast<int>(lines().size()) - 1; }
    /// Calls a method of the item that registered last, and waits for its end.
    QDBusMessage call(const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments)
    {
        const QString item = QString::fromUtf8(lines().constLast());
        QDBusMessage message =
            QDBusMessage::createMethodCall(item.section(QLatin1Char('/'), 0, 0), path, interface, method);
        message.setArguments(arguments);
        // Another connection, since this process answers itself.
        QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("panel"));
        const QDBusPendingCall call = bus.asyncCall(message);
        EXPECT_TRUE(spinUntil([&call] { return call.isFinished(); }));
        return call.reply();
    }
    void click()
    {
        call(QStringLiteral("/StatusNotifierItem"), QStringLiteral("org.kde.StatusNotifierItem"),
             QStringLiteral("Activate"), {100, 10});
    }
    QVariant itemProperty(const char *name)
    {
        const QDBusMessage reply =
            call(QStringLiteral("/StatusNotifierItem"), QStringLiteral("org.freedesktop.DBus.Properties"),
                 QStringLiteral("Get"), {QStringLiteral("org.kde.StatusNotifierItem"), QString::fromLatin1(name)});
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }

private:
    QList<QByteArray> lines()
    {
        m_output += m_process.readAllStandardOutput();
        return m_output.trimmed().split('\n');
    }

    QProcess m_process;
    QByteArray m_output;
};

class StatusBarOfQt : public ::testing::Test
{
protected:
    void start()
    {
        bar.emplace(watched);
        item = bar->makeStatusItem();
        item->setTemplateImage(QStringLiteral("menubarIcon"));
        item->setToolTip(QStringLiteral("Quillhaven"));
        item->setAction([this] { ++clicks; });
        item->setMenu({{QStringLiteral("Open"), [this] { ++opened; }}, {QStringLiteral("Quit"), [] {}}});
    }
    bool eventuallyShown(bool value)
    {
        return spinUntil([this, value] { return bar->isShown() == value; });
    }
    [[nodiscard]] bool isReportedAs(bool value)
    {
        const auto state = watched.state(WatchedSources::Source::Tray);
        return state && state->isAvailable == value && !state->sentence.isEmpty();
    }

    WatchedSources watched;
    std::optional<QtStatusBar> bar;
    std::unique_ptr<StatusItem> item;
    int clicks = 0;
    int opened = 0;

    void TearDown() override
    {
        item.reset();
        bar.reset();
    }
};

// First, since the toolkit would remember for the life of the process that it has found no host.
TEST_F(StatusBarOfQt, AHostThatComesLateGetsTheItem)
{
    start();
    ASSERT_TRUE(spinUntil([this] { return isReportedAs(false); }));
    EXPECT_FALSE(bar->isShown());
    PanelDouble panel;
    ASSERT_TRUE(eventuallyShown(true));
    EXPECT_TRUE(isReportedAs(true));
    ASSERT_TRUE(spinUntil([&] { return panel.registrations() == 1; }));
    panel.click();
    EXPECT_EQ(clicks, 1);
}

TEST_F(StatusBarOfQt, AWatcherWithoutAHostShowsNothingUntilThereIsOne)
{
    PanelDouble panel({QStringLiteral("--without-host")});
    start();
    ASSERT_TRUE(spinUntil([this] { return isReportedAs(false); }));
    EXPECT_EQ(panel.registrations(), 0);
    panel.setHost(true);
    ASSERT_TRUE(eventuallyShown(true));
    ASSERT_TRUE(spinUntil([&] { return panel.registrations() == 1; }));
    panel.setHost(false);
    EXPECT_TRUE(eventuallyShown(false));
    EXPECT_TRUE(isReportedAs(false));
}

TEST_F(StatusBarOfQt, AWatcherThatRestartsGetsTheItemAgain)
{
    std::optional<PanelDouble> panel(std::in_place);
    start();
    ASSERT_TRUE(eventuallyShown(true));
    ASSERT_TRUE(spinUntil([&] { return panel->registrations() == 1; }));
    panel.reset();
    ASSERT_TRUE(eventuallyShown(false));
    panel.emplace();
    ASSERT_TRUE(eventuallyShown(true));
    ASSERT_TRUE(spinUntil([&] { return panel->registrations() >= 1; }));
    panel->click();
    EXPECT_EQ(clicks, 1);
}

TEST_F(StatusBarOfQt, TheItemHasAnIconAToolTipAndAMenu)
{
    PanelDouble panel;
    start();
    ASSERT_TRUE(spinUntil([&] { return panel.registrations() == 1; }));
    EXPECT_EQ(panel.itemProperty("Status").toString(), QStringLiteral("Active"));
    EXPECT_TRUE(panel.itemProperty("IconPixmap").isValid());
    const QDBusObjectPath menu = panel.itemProperty("Menu").value<QDBusObjectPath>();
    ASSERT_FALSE(menu.path().isEmpty());
    const QDBusMessage group =
        panel.call(menu.path(), QStringLiteral("com.canonical.dbusmenu"), QStringLiteral("GetGroupProperties"),
                   {QVariant::fromValue(QList<int>()), QStringList()});
    EXPECT_EQ(group.type(), QDBusMessage::ReplyMessage) << qUtf8Printable(group.errorMessage());
}

TEST_F(StatusBarOfQt, AnItemThatIsDestroyedLeavesTheBar)
{
    PanelDouble panel;
    start();
    ASSERT_TRUE(spinUntil([&] { return panel.registrations() == 1; }));
    item.reset();
    EXPECT_EQ(panel.itemProperty("Status"), QVariant());
}

TEST_F(StatusBarOfQt, WithoutTheImageTheItemStillHasItsAction)
{
    PanelDouble panel;
    start();
    item->setTemplateImage(QStringLiteral("no such image"));
    ASSERT_TRUE(spinUntil([&] { return panel.registrations() >= 1; }));
    panel.click();
    EXPECT_EQ(clicks, 1);
}

TEST(TemplateIcon, CanBeSeenOnALightAndOnADarkBar)
{
    const QImage image = templateIcon(QStringLiteral("menubarIcon")).pixmap(22, 22).toImage();
    ASSERT_FALSE(image.isNull());
    int light = 0;
    int dark = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            light += color.alpha() > 180 && color.lightness() > 200 ? 1 : 0;
            dark += color.alpha() > 120 && color.lightness() < 80 ? 1 : 0;
        }
    }
    EXPECT_GT(light, 40);
    EXPECT_GT(dark, 40);
}

TEST(TemplateIcon, IsCentredWithRoomForItsEdgeAtEverySize)
{
    for (const int size : {16, 22, 24, 32, 48}) {
        const QImage image = templateIcon(QStringLiteral("menubarIcon")).pixmap(size, size).toImage();
        ASSERT_EQ(image.size(), QSize(size, size));
        QRect shape;
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x) {
                const QColor color = image.pixelColor(x, y);
                if (color.alpha() > 180 && color.lightness() > 200) {
                    shape |= QRect(x, y, 1, 1);
                }
            }
        }
        EXPECT_TRUE(image.rect().adjusted(1, 1, -1, -1).contains(shape)) << size;
        EXPECT_NEAR(QRectF(shape).center().x(), size / 2.0, 1.5) << size;
        EXPECT_NEAR(QRectF(shape).center().y(), size / 2.0, 1.5) << size;
        EXPECT_GE(shape.height(), size * 2 / 3) << size;
    }
}

} // namespace
} // namespace quillhaven
