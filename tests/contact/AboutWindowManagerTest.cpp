// SPDX-License-Identifier: GPL-3.0-or-later

#include "contact/AboutWindowManager.h"

#include <gtest/gtest.h>

#include <memory>

namespace quillhaven::test {

namespace {

TEST(AboutWindowManager, HoldsNoWindowUntilOneIsSetAndNoneAfterItsEnd)
{
    AboutWindowManager manager;
    int changes = 0;
    QObject::connect(&manager, &AboutWindowManager::aboutWindowChanged, [&] { ++changes; });
    EXPECT_EQ(manager.aboutWindow(), nullptr);
    auto window = std::make_unique<QWindow>();
    manager.setAboutWindow(window.get());
    manager.setAboutWindow(window.get());
    EXPECT_EQ(manager.aboutWindow(), window.get());
    EXPECT_EQ(changes, 1);
    window.reset();
    EXPECT_EQ(manager.aboutWindow(), nullptr);
    EXPECT_EQ(changes, 2);
}

TEST(AboutWindowManager, AReplacedWindowIsForgotten)
{
    AboutWindowManager manager;
    auto first = std::make_unique<QWindow>();
    QWindow second;
    manager.setAboutWindow(first.get());
    manager.setAboutWindow(&second);
    int changes = 0;
    QObject::connect(&manager, &AboutWindowManager::aboutWindowChanged, [&] { ++changes; });
    first.reset();
    EXPECT_EQ(manager.aboutWindow(), &second);
    EXPECT_EQ(changes, 0);
    manager.setAboutWindow(nullptr);
    EXPECT_EQ(manager.aboutWindow(), nullptr);
    EXPECT_EQ(changes, 1);
}

} // namespace

} // namespace quillhaven::test
