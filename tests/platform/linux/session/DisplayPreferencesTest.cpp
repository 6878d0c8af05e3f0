// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/WorkInFlight.h"
#include "platform/linux/session/BusDouble.h"
#include "platform/linux/session/DesktopDisplayPreferences.h"

#include <QDBusVariant>

namespace quillhaven::test {
namespace {

using Contrast = DisplayPreferences::Contrast;
using Values = DisplayPreferences::Values;

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");

const Values lessMotion{.reduceMotion = true};
const Values moreContrast{.differentiateWithoutColor = true, .colorSchemeContrast = Contrast::Increased};
const Values both{.reduceMotion = true, .differentiateWithoutColor = true, .colorSchemeContrast = Contrast::Increased};

/// A settings portal with these settings, as Python has them.
std::unique_ptr<BusDouble> startPortal(const char *settings)
{
    auto portal = std::make_unique<BusDouble>(MessageBus::Session, portalName, portalPath);
    // A comprehension would not see the arguments.
    const QString code = QStringLiteral("ret = {}\nfor space, keys in %1.items():\n"
                                        "    if space in args[0]:\n        ret[space] = keys")
                             .arg(QString::fromUtf8(settings));
    portal->call(
        QStringLiteral("org.freedesktop.DBus.Mock.AddMethod"),
        {settingsInterface, QStringLiteral("ReadAll"), QStringLiteral("as"), QStringLiteral("a{sa{sv}}"), code});
    return portal;
}

constexpr const char *wishesContrast = "{'org.freedesktop.appearance': {'contrast': dbus.UInt32(1)}}";
constexpr const char *wishesLessMotion =
    "{'org.freedesktop.appearance': {'contrast': dbus.UInt32(0), 'reduced-motion': dbus.UInt32(1)}}";

class DisplayPreferencesTest : public ::testing::Test
{
protected:
    ~DisplayPreferencesTest() override
    {
        display.reset();
        spinOnce(); // a job of it that has not started
        spinUntil([] { return WorkInFlight::count() == 0; });
        spinOnce();
    }

    void start() { display = std::make_unique<DesktopDisplayPreferences>(); }
    void expectValues(const Values &expected) const
    {
        EXPECT_TRUE(spinUntil([&] { return display->values() == expected; }, 10'000))
            << display->reduceMotion() << display->differentiateWithoutColor() << int(display->colorSchemeContrast());
    }
    static void change(const BusDouble &portal, const char *space, const char *key, const char *value)
    {
        portal.emitSignal(settingsInterface, QStringLiteral("SettingChanged"), QStringLiteral("ssv"),
                          QStringLiteral("[<'%1'>, <'%2'>, <%3>]")
                              .arg(QLatin1String(space), QLatin1String(key), QLatin1String(value)));
    }

    std::unique_ptr<DesktopDisplayPreferences> display;
};

TEST_F(DisplayPreferencesTest, TheValuesAreThoseOfThePortal)
{
    const auto portal = startPortal("{'org.freedesktop.appearance': {'contrast': dbus.UInt32(1)},"
                                    " 'org.gnome.desktop.interface': {'enable-animations': False}}");
    start();
    EXPECT_EQ(display->values(), Values()); // it has not waited
    expectValues(both);
}

TEST_F(DisplayPreferencesTest, AChangeIsFollowedAndReported)
{
    const auto portal = startPortal(wishesContrast);
    start();
    expectValues(moreContrast);
    int reports = 0;
    QObject::connect(display.get(), &DisplayPreferences::changed, [&] { ++reports; });
    change(*portal, "org.freedesktop.appearance", "reduced-motion", "uint32 1");
    expectValues(both);
    change(*portal, "org.freedesktop.appearance", "reduced-motion", "uint32 1");
    change(*portal, "org.freedesktop.appearance", "contrast", "uint32 0");
    expectValues(lessMotion);
    EXPECT_EQ(reports, 2);
}

TEST_F(DisplayPreferencesTest, APortalThatComesLaterIsAsked)
{
    start();
    spinOnce();
    spinUntil([] { return WorkInFlight::count() == 0; });
    EXPECT_EQ(display->values(), Values());
    const auto portal = startPortal(wishesContrast);
    expectValues(moreContrast);
    change(*portal, "org.freedesktop.appearance", "reduced-motion", "uint32 1");
    expectValues(both);
}

TEST_F(DisplayPreferencesTest, TheLastValuesRemainWhileThePortalIsAwayAndTheNextOneIsFollowed)
{
    auto portal = startPortal(wishesContrast);
    start();
    expectValues(moreContrast);
    portal.reset();
    spinOnce();
    EXPECT_EQ(display->values(), moreContrast);
    portal = startPortal(wishesLessMotion);
    expectValues(lessMotion);
    change(*portal, "org.freedesktop.appearance", "contrast", "uint32 1");
    expectValues(both);
}

TEST_F(DisplayPreferencesTest, APortalThatKeepsSilentHoldsNothingUp)
{
    auto portal = startPortal(wishesContrast);
    portal->send(SIGSTOP);
    start();
    spinOnce();
    spinUntil([] { return WorkInFlight::count() == 0; });
    EXPECT_EQ(display->values(), Values());
    portal->send(SIGCONT);
    expectValues(moreContrast);
}

TEST_F(DisplayPreferencesTest, APortalThatDiesBeforeItsAnswerLeavesTheDefaults)
{
    auto portal = startPortal(wishesContrast);
    portal->send(SIGSTOP);
    start();
    spinOnce();
    spinUntil([] { return WorkInFlight::count() == 0; });
    portal.reset();
    spinOnce();
    EXPECT_EQ(display->values(), Values());
    portal = startPortal(wishesLessMotion);
    expectValues(lessMotion);
}

TEST_F(DisplayPreferencesTest, ItMayGoAwayWhileThePortalIsAsked)
{
    const auto portal = startPortal(wishesContrast);
    portal->send(SIGSTOP);
    start();
    spinOnce();
    spinUntil([] { return WorkInFlight::count() == 0; });
    display.reset();
    portal->send(SIGCONT);
    start();
    expectValues(moreContrast);
}

TEST_F(DisplayPreferencesTest, ValuesOfAnotherTypeAreIgnored)
{
    const auto portal = startPortal("{'org.freedesktop.appearance': {'contrast': 'high', 'reduced-motion': True},"
                                    " 'org.gnome.desktop.interface': {'enable-animations': False},"
                                    " 'org.gnome.desktop.a11y.interface': {'high-contrast': dbus.UInt32(1)}}");
    start();
    expectValues(lessMotion);
    change(*portal, "org.gnome.desktop.interface", "enable-animations", "'no'");
    change(*portal, "org.freedesktop.appearance", "contrast", "uint32 1"); // after it
    expectValues(both);
}

TEST_F(DisplayPreferencesTest, AnAnswerOfAnotherShapeIsIgnored)
{
    auto portal = std::make_unique<BusDouble>(MessageBus::Session, portalName, portalPath);
    portal->call(QStringLiteral("org.freedesktop.DBus.Mock.AddMethod"),
                 {settingsInterface, QStringLiteral("ReadAll"), QStringLiteral("as"), QStringLiteral("a{sv}"),
                  QStringLiteral("ret = {'contrast': dbus.UInt32(1)}")});
    start();
    spinOnce();
    spinUntil([] { return WorkInFlight::count() == 0; });
    // A signal may come before the name's owner is known here.
    spinUntil([this, &portal] {
        change(*portal, "org.freedesktop.appearance", "reduced-motion", "uint32 1");
        return display->values() != Values();
    });
    EXPECT_EQ(display->values(), lessMotion);
}

TEST_F(DisplayPreferencesTest, OnlyThePortalMayReportAChange)
{
    const auto portal = startPortal(wishesLessMotion);
    start();
    expectValues(lessMotion);
    QDBusConnection stranger = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("stranger"));
    QDBusMessage signal = QDBusMessage::createSignal(portalPath, settingsInterface, QStringLiteral("SettingChanged"));
    signal.setArguments({QStringLiteral("org.freedesktop.appearance"), QStringLiteral("contrast"),
                         QVariant::fromValue(QDBusVariant(1U))});
    ASSERT_TRUE(stranger.send(signal));
    change(*portal, "org.freedesktop.appearance", "reduced-motion", "uint32 0"); // after it
    expectValues({});
    QDBusConnection::disconnectFromBus(QStringLiteral("stranger"));
}

TEST_F(DisplayPreferencesTest, WithoutASessionBusTheValuesAreTheDefaults)
{
    const QByteArray former = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    start();
    spinOnce();
    spinUntil([] { return WorkInFlight::count() == 0; });
    spinOnce();
    EXPECT_EQ(display->values(), Values());
    qputenv("DBUS_SESSION_BUS_ADDRESS", former);
}

} // namespace
} // namespace quillhaven::test
