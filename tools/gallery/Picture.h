// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/tokens/Design.h"
#include "support/FakeDisplayPreferences.h"
#include "support/RunTask.h"

#include <QDir>
#include <QQmlEngine>
#include <QQuickWindow>

#include <gtest/gtest.h>

namespace quillhaven::test {

/// The wishes that the pictures are drawn with: QUILLHAVEN_GALLERY_WISHES=1 asks for more contrast, for no difference
/// by a colour alone and for no motion.
inline FakeDisplayPreferences &wishes()
{
    static FakeDisplayPreferences display;
    if (qEnvironmentVariableIntValue("QUILLHAVEN_GALLERY_WISHES") == 1) {
        display.setValues({.reduceMotion = true,
                           .differentiateWithoutColor = true,
                           .colorSchemeContrast = DisplayPreferences::Contrast::Increased});
    }
    return display;
}

/// Saves a picture of the window, after its animations have ended, in the folder that QUILLHAVEN_GALLERY names.
inline void draw(QQuickWindow &window, const QString &name)
{
    followDisplay(*qmlEngine(&window), wishes());

    const QDir folder(qEnvironmentVariable("QUILLHAVEN_GALLERY", QStringLiteral("gallery")));
    ASSERT_TRUE(folder.mkpath(QStringLiteral(".")));
    constexpr int maxAnimationFrames = 40;
    int frames = 0;
    const QMetaObject::Connection counting =
        QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&frames] { ++frames; });
    ASSERT_TRUE(spinUntil([&] {
        window.update();
        return frames > maxAnimationFrames;
    }));
    QObject::disconnect(counting);
    ASSERT_TRUE(window.grabWindow().save(folder.filePath(name + QStringLiteral(".png"))));
}

/// Saves one picture at the usual size of the window, and one at the smallest.
inline void drawInBothSizes(QQuickWindow &window, const QString &name)
{
    for (const QSize &size : {QSize(1200, 900), QSize(760, 560)}) {
        window.resize(size);
        ASSERT_TRUE(spinUntil([&] { return window.size() == size; }));
        draw(window, QStringLiteral("%1-%2").arg(name).arg(size.width()));
    }
}

} // namespace quillhaven::test
