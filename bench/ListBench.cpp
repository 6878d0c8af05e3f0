// SPDX-License-Identifier: GPL-3.0-or-later

// list_bench: how long actions on a list of 10,000 items hold the main thread, in the real window with the software
// renderer, and the same actions on a list of the toolkit whose rows have one text each. For each repetition it prints
//
//     LIST ACTION HELD PROCESSOR FRAME
//
// in milliseconds: the longest turn of the event loop from the action until everything is at rest, drawing included, as
// elapsed and as processor time, and the longest interval between two frames. bench/run.py runs it under a virtual
// display.

#include "BenchWindow.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <ranges>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

constexpr int itemCount = 10'000;
constexpr int restMilliseconds = 250; ///< longer than the animations of the window

double processorMilliseconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

/// Records the longest turn of the event loop.
class Application : public QGuiApplication
{
public:
    using QGuiApplication::QGuiApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (m_depth > 0) {
            return QGuiApplication::notify(receiver, event);
        }
        ++m_depth;
        QElapsedTimer timer;
        timer.start();
        const double processor = processorMilliseconds();
        const bool result = QGuiApplication::notify(receiver, event);
        const double turn = double(timer.nsecsElapsed()) / 1e6;
        if (turn > held) {
            held = turn;
            heldProcessor = processorMilliseconds() - processor;
        }
        --m_depth;
        return result;
    }

    double held = 0;
    double heldProcessor = 0; ///< of the same turn

private:
    int m_depth = 0;
};

/// A list and the ways to act on it.
struct Subject
{
    const char *name;
    QQuickWindow &window;

    /// Performs the action in a turn of its own and prints what it took until everything was at rest.
    void measure(const char *action, const std::function<void()> &act) const
    {
        QTest::qWait(restMilliseconds);
        auto &application = *static_cast<Application *>(QCoreApplication::instance());
        QElapsedTimer frames;
        double longestFrame = 0;
        const auto counting = QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&] {
            longestFrame = std::max(longestFrame, frames.isValid() ? double(frames.nsecsElapsed()) / 1e6 : 0);
            frames.start();
        });
        // The wait runs inside no other turn.
        QMetaObject::invokeMethod(&window, act, Qt::QueuedConnection);
        application.held = 0;
        QTest::qWait(restMilliseconds);
        QObject::disconnect(counting);
        std::printf("%s %s %.3f %.3f %.3f\n", name, action, application.held, application.heldProcessor, longestFrame);
        std::fflush(stdout);
    }

    /// QTest::keyClick would process other events in the same turn, and so draw the next frame in it.
    void press(const char *action, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
               const QString &text = {}) const
    {
        measure(action, [&] {
            for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
                QKeyEvent event(type, key, modifiers, text);
                QCoreApplication::sendEvent(&window, &event);
            }
        });
    }

    void wheel(const QPointF &place) const
    {
        measure("wheel", [&] {
            QWheelEvent event(place, window.mapToGlobal(place), {}, QPoint(0, -360), Qt::NoButton, Qt::NoModifier,
                              Qt::NoScrollPhase, false);
            event.setTimestamp(quint64(QDateTime::currentMSecsSinceEpoch())); // it gives the speed
            QCoreApplication::sendEvent(&window, &event);
        });
    }
};

QString nameOf(int number)
{
    static const QStringList words{QStringLiteral("invoice"), QStringLiteral("Letter"),   QStringLiteral("passport"),
                                   QStringLiteral("Tax"),     QStringLiteral("contract"), QStringLiteral("écriture"),
                                   QStringLiteral("Photo")};
    const int shuffled = int(qint64(number) * 7919 % itemCount);
    return QStringLiteral("%1 %2.pdf").arg(words[shuffled % words.size()]).arg(shuffled);
}

constexpr std::string_view searched = "invoice 12";
constexpr int repetitions = 10;

void measureDashboard()
{
    QList<ProtectedItem> items;
    for (int number = 0; number < itemCount; ++number) {
        items.append(namedItem(nameOf(number), number % 2 == 1));
    }
    BenchWindow bench(items);
    const Subject list{"dashboard", *bench.window.window()};
    SearchFilterBarModel &filters = *bench.harness.dashboard.filters();
    ItemCatalogue &catalogue = bench.harness.manager.catalogue();
    const auto change = [&](int number) {
        catalogue.updateUnsaved(items[number].id, [](ProtectedItem &item) { item.isMounted = !item.isMounted; });
    };
    QTest::qWait(1000);
    QTest::keyClick(&list.window, Qt::Key_F, Qt::ControlModifier);
    for (int round = 0; round < 2; ++round) {
        for (const char letter : searched) {
            const QLatin1Char typed(letter);
            list.press("type", Qt::Key(QChar(typed).toUpper().unicode()), Qt::NoModifier, QString(typed));
        }
        for (qsizetype i = 0; i < qsizetype(searched.size()); ++i) {
            list.press("delete", Qt::Key_Backspace);
        }
        list.measure("paste", [&] { filters.setSearchText(QStringLiteral("777")); });
        list.measure("clear", [&] { filters.clearAllFilters(); });
    }
    QTest::keyClick(&list.window, Qt::Key_Down);
    using Filters = SearchFilterBarModel;
    for (int i = 0; i < repetitions; ++i) {
        list.measure("sort",
                     [&] { filters.setSortOption(i % 2 ? Filters::SortOption::name : Filters::SortOption::status); });
        list.measure("filter", [&] {
            filters.setStatusFilter(i % 2 ? Filters::StatusFilter::all : Filters::StatusFilter::locked);
        });
    }
    for (int i = 0; i < repetitions; ++i) {
        list.press("down", Qt::Key_Down);
        list.press("page-down", Qt::Key_PageDown);
    }
    for (int i = 0; i < repetitions; ++i) {
        list.wheel(QPointF(list.window.width() / 2.0, list.window.height() * 0.6));
    }
    for (int i = 0; i < repetitions; ++i) {
        list.press("end", Qt::Key_End);
        list.press("home", Qt::Key_Home);
    }
    for (int i = 0; i < repetitions; ++i) {
        list.measure("change", [&] { change(i); });
    }
    for (int i = 0; i < repetitions; ++i) {
        list.measure("100-changes", [&] { std::ranges::for_each(std::views::iota(0, 100), change); });
    }
    for (int i = 0; i < repetitions; ++i) {
        list.press("select-all", Qt::Key_A, Qt::ControlModifier);
        list.measure("100-changes-selected", [&] { std::ranges::for_each(std::views::iota(0, 100), change); });
        list.press("deselect", Qt::Key_Escape);
    }
    filters.setSortOption(Filters::SortOption::status);
    filters.setStatusFilter(Filters::StatusFilter::locked);
    for (int i = 0; i < repetitions; ++i) {
        list.measure("100-moves", [&] { std::ranges::for_each(std::views::iota(0, 100), change); });
    }
}

void measurePlainList()
{
    QStandardItemModel source;
    for (int number = 0; number < itemCount; ++number) {
        source.appendRow(new QStandardItem(nameOf(number)));
    }
    QSortFilterProxyModel shown;
    shown.setFilterCaseSensitivity(Qt::CaseInsensitive);
    shown.setSortCaseSensitivity(Qt::CaseInsensitive);
    shown.setSortLocaleAware(true);
    shown.setSourceModel(&source);
    shown.sort(0);
    QQmlEngine engine;
    engine.rootContext()->setContextProperty(QStringLiteral("shown"), &shown);
    QQmlComponent component(&engine);
    component.setData(R"(
import QtQuick
Window {
    width: 1200; height: 900; visible: true
    ListView {
        anchors.fill: parent
        model: shown
        focus: true
        highlightMoveDuration: 0
        boundsBehavior: Flickable.StopAtBounds
        delegate: Text { required property string display; height: 60; text: display }
        Keys.onPressed: (event) => {
            const targets = { [Qt.Key_Home]: 0, [Qt.Key_End]: count - 1, [Qt.Key_PageDown]: currentIndex + 10 }
            if (event.key in targets)
                currentIndex = Math.min(count - 1, targets[event.key])
        }
    }
})",
                      QUrl());
    const std::unique_ptr<QObject> root(component.create());
    if (!root) {
        qFatal("%s", qUtf8Printable(component.errorString()));
    }
    const Subject list{"plain", *qobject_cast<QQuickWindow *>(root.get())};
    list.window.requestActivate();
    const auto change = [&](int number) { source.item(number)->setText(nameOf(number)); };
    QTest::qWait(1000);
    for (int round = 0; round < 2; ++round) {
        const QString text = QLatin1String(searched);
        for (int length = 1; length <= text.size(); ++length) {
            list.measure("type", [&] { shown.setFilterFixedString(text.left(length)); });
        }
        for (qsizetype length = text.size() - 1; length >= 0; --length) {
            list.measure("delete", [&] { shown.setFilterFixedString(text.left(length)); });
        }
        list.measure("paste", [&] { shown.setFilterFixedString(QStringLiteral("777")); });
        list.measure("clear", [&] { shown.setFilterFixedString({}); });
    }
    for (int i = 0; i < repetitions; ++i) {
        list.measure("sort", [&] { shown.sort(0, i % 2 ? Qt::AscendingOrder : Qt::DescendingOrder); });
        list.measure("filter", [&] { shown.setFilterFixedString(i % 2 ? QString() : QStringLiteral("5")); });
    }
    for (int i = 0; i < repetitions; ++i) {
        list.press("down", Qt::Key_Down);
        list.press("page-down", Qt::Key_PageDown);
    }
    for (int i = 0; i < repetitions; ++i) {
        list.wheel(QPointF(600, 450));
    }
    for (int i = 0; i < repetitions; ++i) {
        list.press("end", Qt::Key_End);
        list.press("home", Qt::Key_Home);
    }
    for (int i = 0; i < repetitions; ++i) {
        list.measure("change", [&] { change(i); });
    }
    for (int i = 0; i < repetitions; ++i) {
        list.measure("100-changes", [&] { std::ranges::for_each(std::views::iota(0, 100), change); });
    }
}

} // namespace

int main(int argc, char **argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    Application application(argc, argv);
    measureDashboard();
    measurePlainList();
    return 0;
}
