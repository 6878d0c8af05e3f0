// SPDX-License-Identifier: GPL-3.0-or-later

// Controls are drawn and compared with kept pictures. `tests/presentation/references/renew` draws those again.

#include "presentation/tokens/Design.h"
#include "presentation/tokens/Typography.h"
#include "support/FakeDisplayPreferences.h"
#include "support/RunTask.h"
#include "support/RunTests.h"

#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

namespace quillhaven::test {
namespace {

/// What a pixel may differ by in each channel, and the share of the pixels that may differ more: another minor version
/// of the rasteriser draws the edges of letters a little differently, and nothing else.
constexpr int maxChannelDifference = 40;
constexpr double maxShare = 0.01;

struct Reference
{
    const char *name;
    const char *qml;
    double textScale = 1;
    bool moreContrast = false;
    bool isMirrored = false;
};

constexpr const char *controls = R"(
    RowLayout {
        PrimaryFilledButton { text: "Protect"; symbol: "plus" }
        SecondaryButton { text: "Cancel" }
        DestructiveButton { text: "Shred"; enabled: false }
    }
    RowLayout {
        StatusBadge { style: BadgeStyle.Locked; text: "Locked" }
        StatusBadge { style: BadgeStyle.Unlocked; text: "Unlocked" }
        StatusBadge { style: BadgeStyle.Error; text: "Error" }
    }
    SearchField { Layout.fillWidth: true; placeholderText: "Search items" }
    CheckMark { Layout.fillWidth: true; text: "I understand"; ticked: true }
    ProgressLine { Layout.fillWidth: true; value: 0.4 }
    SettingRow {
        Layout.fillWidth: true
        title: "Lock on sleep"
        description: "Starts to lock every item"
        CustomToggleStyle { checked: true }
    }
)";

const QList<Reference> references{{"controls", controls},
                                  {"controls_contrast", controls, 1, true},
                                  {"controls_text_1.5", controls, 1.5},
                                  {"controls_mirrored", controls, 1, false, true}};

QImage draw(const Reference &reference)
{
    QQmlEngine engine;
    installDesign(engine);
    FakeDisplayPreferences display;
    display.setValues({.reduceMotion = true,
                       .differentiateWithoutColor = reference.moreContrast,
                       .colorSchemeContrast = reference.moreContrast ? DisplayPreferences::Contrast::Increased
                                                                     : DisplayPreferences::Contrast::Standard,
                       .textScale = reference.textScale});
    followDisplay(engine, display);
    QQmlComponent component(&engine);
    component.setData(QStringLiteral("import QtQuick\nimport QtQuick.Controls.Basic\nimport QtQuick.Layouts\n"
                                     "import Quillhaven.Controls\nimport Quillhaven.Design\n"
                                     "ApplicationWindow {\nwidth: column.width + 32; height: column.height + 32\n"
                                     "visible: true; color: Colors.modalBackground\n"
                                     "LayoutMirroring.enabled: %2; LayoutMirroring.childrenInherit: true\n"
                                     "ColumnLayout { id: column; x: 16; y: 16; spacing: 12\n%1\n} }")
                          .arg(QString::fromUtf8(reference.qml),
                               reference.isMirrored ? QStringLiteral("true") : QStringLiteral("false"))
                          .toUtf8(),
                      QUrl());
    const std::unique_ptr<QQuickWindow> window(qobject_cast<QQuickWindow *>(component.create()));
    EXPECT_TRUE(window) << qUtf8Printable(component.errorString());
    if (!window || !QTest::qWaitForWindowExposed(window.get())) {
        return {};
    }
    // Two equal pictures one after the other: the layouts have settled.
    QImage last;
    EXPECT_TRUE(spinUntil([&] {
        const QImage before = std::exchange(last, window->grabWindow());
        return before == last;
    }));
    last.setDevicePixelRatio(1);
    return last.convertToFormat(QImage::Format_RGB32);
}

bool differs(QRgb first, QRgb second)
{
    return std::max({std::abs(qRed(first) - qRed(second)), std::abs(qGreen(first) - qGreen(second)),
                     std::abs(qBlue(first) - qBlue(second))}) > maxChannelDifference;
}

/// Black where both are alike, red elsewhere.
QImage difference(const QImage &expected, const QImage &actual)
{
    QImage marks(expected.size().expandedTo(actual.size()), QImage::Format_RGB32);
    marks.fill(Qt::red);
    for (int y = 0; y < std::min(expected.height(), actual.height()); ++y) {
        for (int x = 0; x < std::min(expected.width(), actual.width()); ++x) {
            if (!differs(expected.pixel(x, y), actual.pixel(x, y))) {
                marks.setPixel(x, y, qRgb(0, 0, 0));
            }
        }
    }
    return marks;
}

double shareOfMarks(const QImage &marks)
{
    qint64 count = 0;
    for (int y = 0; y < marks.height(); ++y) {
        for (int x = 0; x < marks.width(); ++x) {
            count += qRed(marks.pixel(x, y)) > 0 ? 1 : 0;
        }
    }
    return double(count) / (double(marks.width()) * marks.height());
}

/// Saves expected, actual and difference side by side; returns the file.
QString saveSideBySide(const QString &name, const QList<QImage> &pictures)
{
    int width = 0;
    int height = 0;
    for (const QImage &picture : pictures) {
        width += picture.width();
        height = std::max(height, picture.height());
    }
    QImage all(width, height, QImage::Format_RGB32);
    all.fill(Qt::white);
    QPainter painter(&all);
    int x = 0;
    for (const QImage &picture : pictures) {
        painter.drawImage(x, 0, picture);
        x += picture.width();
    }
    painter.end();
    const QDir folder(qEnvironmentVariable("QUILLHAVEN_DIFFERENCES"));
    const QString file = folder.filePath(name);
    EXPECT_TRUE(folder.mkpath(QStringLiteral(".")) && all.save(file));
    return file;
}

class ReferencePictures : public ::testing::TestWithParam<Reference>
{
};

TEST_P(ReferencePictures, TheControlsLookAsInTheKeptPicture)
{
    ASSERT_EQ(Typography::family(), QStringLiteral("Inter"));
    const QString name =
        QStringLiteral("%1@%2.png").arg(QString::fromUtf8(GetParam().name), qEnvironmentVariable("QT_SCALE_FACTOR"));
    const QString kept = QDir(qEnvironmentVariable("QUILLHAVEN_REFERENCES")).filePath(name);
    const QImage actual = draw(GetParam());
    ASSERT_FALSE(actual.isNull());
    if (qEnvironmentVariableIntValue("QUILLHAVEN_RENEW") == 1) {
        ASSERT_TRUE(actual.save(kept)) << qUtf8Printable(kept);
        return;
    }
    const QImage expected = QImage(kept).convertToFormat(QImage::Format_RGB32);
    ASSERT_FALSE(expected.isNull()) << "missing: " << qUtf8Printable(kept);
    const QImage marks = difference(expected, actual);
    const double share = shareOfMarks(marks);
    if (expected.size() != actual.size() || share > maxShare) {
        ADD_FAILURE() << share * 100 << " % of the pixels differ; expected, actual and difference: "
                      << qUtf8Printable(saveSideBySide(name, {expected, actual, marks}));
    }
}

TEST(PictureDifference, ASmallChangeIsToleratedAndAMovedControlIsNot)
{
    QImage first(100, 100, QImage::Format_RGB32);
    first.fill(Qt::black);
    QImage second = first;
    second.setPixel(5, 5, qRgb(255, 255, 255));
    EXPECT_LT(shareOfMarks(difference(first, second)), maxShare);
    second.fill(qRgb(maxChannelDifference, 0, 0));
    EXPECT_EQ(shareOfMarks(difference(first, second)), 0);
    QPainter(&second).fillRect(0, 0, 20, 20, Qt::white);
    EXPECT_GT(shareOfMarks(difference(first, second)), maxShare);
    EXPECT_GT(shareOfMarks(difference(first, first.copy(0, 0, 100, 90))), maxShare);
}

INSTANTIATE_TEST_SUITE_P(All, ReferencePictures, ::testing::ValuesIn(references), [](const auto &reference) {
    return QString::fromUtf8(reference.param.name).replace(QLatin1Char('.'), QLatin1Char('_')).toStdString();
});

} // namespace
} // namespace quillhaven::test

int main(int argc, char **argv)
{
    return quillhaven::test::runTests<QGuiApplication>(argc, argv);
}
