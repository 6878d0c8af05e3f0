// SPDX-License-Identifier: GPL-3.0-or-later

// Pictures of the main window in its states.

#include "Picture.h"
#include "presentation/dashboard/DashboardWindowFixture.h"
#include "presentation/dashboard/OfferedUpdate.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class DashboardPictures : public DashboardWindow
{
protected:
    void draw(const QString &name) { drawInBothSizes(*shown().window(), name); }
};

TEST_F(DashboardPictures, EmptyCatalogue)
{
    draw(QStringLiteral("empty"));
}

TEST_F(DashboardPictures, ThreeItemsWithTheKeyboardOnOne)
{
    storeThree();
    shown();
    ASSERT_TRUE(tabToList());
    press(Qt::Key_Down);
    started().dashboard.rowActions()->copyPathToClipboard(QStringLiteral("ID-alpha.txt"));
    started().dashboard.rows().setBusy({QStringLiteral("ID-charlie")}, true);
    draw(QStringLiteral("three"));
}

TEST_F(DashboardPictures, NamesThatDeceive)
{
    QList<ProtectedItem> items;
    for (const QString &name : {QString(QChar(0x202E)) + QStringLiteral("gnp.exe"), QStringLiteral("two\nlines.txt"),
                                QStringLiteral("שלום.pdf"), QStringLiteral("plain.txt")}) {
        items.append(namedItem(name));
    }
    storeCatalogue(services, items);
    draw(QStringLiteral("deceiving-names"));
}

TEST_F(DashboardPictures, TwoThousandItems)
{
    const QStringList endings{QStringLiteral("pdf"), QStringLiteral("png"), QStringLiteral("zip"), QString()};
    QList<ProtectedItem> items;
    for (int number = 0; number < 2000; ++number) {
        ProtectedItem item = namedItem(QStringLiteral("Contract %1").arg(number, 4, 10, QLatin1Char('0')));
        item.isFolder = number % 4 == 3;
        item.originalName += item.isFolder ? QString() : QLatin1Char('.') + endings.at(number % 4);
        if (number == 2) {
            item.originalName = QStringLiteral("Contract 0002 ") + QStringLiteral("with a very long name ").repeated(8);
        }
        item.isMounted = number % 5 == 1;
        item.useTouchID = number % 3 == 0;
        items.append(item);
    }
    storeCatalogue(services, items);
    draw(QStringLiteral("many"));
    started().dashboard.filters()->setSearchText(QStringLiteral("12"));
    draw(QStringLiteral("filtered"));
    started().dashboard.filters()->setSearchText(QStringLiteral("nothing"));
    draw(QStringLiteral("no-results"));
}

TEST_F(DashboardPictures, ProtectingAndTheMethods)
{
    storeThree();
    shown();
    started().dashboard.protecting()->showProtectionDialog(services.home.write(QStringLiteral("papers/will.pdf")));
    DashboardHarness::settle();
    draw(QStringLiteral("method"));
}

TEST_F(DashboardPictures, UpdateAvailable)
{
    storeThree();
    shown();
    offerUpdate(services, QStringLiteral("9.0"), QStringLiteral("https://downloads.example/"));
    runTask(started().updates.performUpdateCheck(true));
    draw(QStringLiteral("update-available"));
}

TEST_F(DashboardPictures, Notices)
{
    storeThree();
    shown();
    NoticesModel &notices = *started().dashboard.notices();
    notices.show({.id = QStringLiteral("waiting"),
                  .text = QStringLiteral("Waiting for the keyring to answer."),
                  .isWaiting = true});
    notices.show({.id = QStringLiteral("found"),
                  .text = QStringLiteral("3 items were found in private storage that are not in the list. They can be "
                                         "given back or taken into the list again."),
                  .actionTitle = QStringLiteral("Show"),
                  .isDismissible = true});
    DashboardHarness::settle();
    draw(QStringLiteral("notices"));
}

TEST_F(DashboardPictures, LostItems)
{
    const QString path = services.home.write(QStringLiteral("papers/will.pdf"), QByteArray(123456, 'x'));
    services.home.write(QStringLiteral("papers/photos/summer.jpg"), QByteArray(1234567, 'x'));
    shown();
    QuillhavenManager &engine = started().manager;
    for (const QString &each : {path, services.home.path(QStringLiteral("papers/photos"))}) {
        runTask(engine.protectItem(each, QStringLiteral("Abcdefg1"), false));
        engine.removeFromProtectedItems(engine.protectedItems().constLast().id);
    }
    services.home.write(QStringLiteral(".local/share/quillhaven/3F2504E0-4F89-41D3-9A0C-0305E82C3301_original"), "x");
    started().dashboard.rescue()->show();
    spinUntil([this] { return started().dashboard.rescue()->dialog()->count() == 3; });
    DashboardHarness::settle();
    draw(QStringLiteral("lost-items"));
}

TEST_F(DashboardPictures, ThreeSelected)
{
    storeThree();
    shown();
    ASSERT_TRUE(tabToList());
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    draw(QStringLiteral("selected"));
}

TEST_F(DashboardPictures, Preferences)
{
    QDir().mkpath(services.home.path(QStringLiteral(".local/share/cloud/iCloud~com~tarnwick~quillhaven")));
    storeThree();
    shown();
    PreferencesModel &model = preferences().model;
    model.show();
    draw(QStringLiteral("preferences-general"));
    model.setSelectedSection(PreferencesSectionType::Security);
    draw(QStringLiteral("preferences-security"));
    model.setSelectedSection(PreferencesSectionType::Backup);
    draw(QStringLiteral("preferences-backup"));
}

} // namespace
