// SPDX-License-Identifier: GPL-3.0-or-later

// Draws every scene in one look, which the environment describes (see `run`), as a PNG file for each size of the
// window.

#include "Stage.h"
#include "presentation/tokens/Typography.h"

#include <QDir>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

double number(const char *variable, double otherwise)
{
    bool isNumber = false;
    const double value = qEnvironmentVariable(variable).toDouble(&isNumber);
    return isNumber ? value : otherwise;
}

/// Without motion in every look, so that each frame is the last one.
DisplayPreferences::Values wishes()
{
    const bool moreContrast = number("GALLERY_CONTRAST", 0) == 1;
    return {.reduceMotion = true,
            .differentiateWithoutColor = moreContrast,
            .colorSchemeContrast =
                moreContrast ? DisplayPreferences::Contrast::Increased : DisplayPreferences::Contrast::Standard,
            .textScale = number("GALLERY_TEXT", 1)};
}

/// Such as "1200x900 760x560".
QList<QSize> sizes()
{
    QList<QSize> all;
    for (const QString &size :
         qEnvironmentVariable("GALLERY_SIZES", QStringLiteral("1200x900")).split(QLatin1Char(' '))) {
        const QStringList lengths = size.split(QLatin1Char('x'));
        all.append(QSize(lengths.value(0).toInt(), lengths.value(1).toInt()));
    }
    return all;
}

class Gallery : public Stage, public ::testing::WithParamInterface<Scene>
{
};

TEST_P(Gallery, Draw)
{
    services.display.setValues(wishes());
    QGuiApplication::setFont(Typography::settingLabel(wishes().textScale));
    GetParam().setUp(*this);
    DashboardHarness::settle();
    draw(QString::fromUtf8(GetParam().name), sizes());
}

INSTANTIATE_TEST_SUITE_P(All, Gallery, ::testing::ValuesIn(allScenes()),
                         [](const auto &scene) { return std::string(scene.param.name); });

} // namespace

void Stage::draw(const QString &name, const QList<QSize> &sizes)
{
    if (m_popover) {
        save(*m_popover, name);
        return;
    }
    QQuickWindow &window = *shown().window();
    for (const QSize &size : sizes) {
        window.resize(size);
        ASSERT_TRUE(spinUntil([&] { return window.size() == size; })) << "the display is too small";
        save(window, QStringLiteral("%1-%2").arg(name).arg(size.width()));
    }
}

void Stage::save(QQuickWindow &window, const QString &name)
{
    const QDir folder(qEnvironmentVariable("GALLERY_FOLDER", QStringLiteral("gallery")));
    ASSERT_TRUE(folder.mkpath(QStringLiteral(".")));
    constexpr int settledFrames = 8; // layouts, and what is created after the first frames
    int frames = 0;
    const QMetaObject::Connection counting =
        QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&frames] { ++frames; });
    ASSERT_TRUE(spinUntil([&] {
        window.update();
        return frames > settledFrames;
    }));
    QObject::disconnect(counting);
    ASSERT_TRUE(window.grabWindow().save(folder.filePath(name + QStringLiteral(".png"))));
}
