// SPDX-License-Identifier: GPL-3.0-or-later

// How wide the sheets are with few words, with many, and with one that is wider than any sheet.

#include "DialogScene.h"

#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/PasswordInputDialogModel.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/DeleteConfirmationModel.h"
#include "presentation/dialogs/ErrorDialogManager.h"
#include "presentation/dialogs/ErrorDialogSheetModel.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/dialogs/RemoveProtectionDialogManager.h"
#include "presentation/dialogs/ShredConfirmationDialogModel.h"
#include "presentation/tokens/Metrics.h"
#include "presentation/tokens/Spacing.h"
#include "support/TestPlatform.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

const QString fewWords = QStringLiteral("a");
const QString manyWords = QStringLiteral("a sheet with a good many words ").repeated(10);
const QString wideWord = QString(300, QLatin1Char('w'));

/// A sheet with a field is never narrower than this, which is more than its minimum.
constexpr int widthOfFields = Metrics::sheetFieldWidth + 2 * Spacing::modalPadding;

/// Whether everything that is seen of the item and in it lies within the sheet, from left to right.
void expectWithin(const QQuickItem &sheet, QQuickItem *item)
{
    for (QQuickItem *child : item->childItems()) {
        if (!child->isVisible()) {
            continue;
        }
        if (!child->property("text").toString().isEmpty()) {
            const QRectF place = child->mapRectToItem(&sheet, child->boundingRect());
            EXPECT_GE(place.left(), 0) << qUtf8Printable(child->property("text").toString());
            EXPECT_LE(place.right(), sheet.width()) << qUtf8Printable(child->property("text").toString());
        }
        expectWithin(sheet, child);
    }
}

/// The widths of one dialog with each of the texts, in whole pixels. `present` shows it with the text that it is given.
class SheetWidths
{
public:
    SheetWidths(const QString &dialog, DialogModel &manager, const QVariantMap &furtherModels = {})
        : m_manager(manager), m_scene(dialog, modelsWith(manager, furtherModels))
    {
    }

    template <typename Present>
    int with(const QString &text, Present present)
    {
        present(text);
        EXPECT_TRUE(spinUntil([this] { return m_scene.sheet() && m_scene.sheet()->opacity() == 1; }));
        if (!m_scene.sheet()) {
            return 0;
        }
        QQuickItem &sheet = *m_scene.sheet();
        m_scene.window()->grabWindow(); // which lays everything out
        expectWithin(sheet, &sheet);
        const int width = qRound(sheet.width());
        m_manager.setIsPresented(false);
        EXPECT_TRUE(spinUntil([&sheet] { return !sheet.isVisible(); }));
        return width;
    }
    template <typename Present>
    QList<int> withEach(Present present)
    {
        return {with(fewWords, present), with(manyWords, present), with(wideWord, present)};
    }

private:
    static QVariantMap modelsWith(DialogModel &manager, QVariantMap models)
    {
        models.insert(QStringLiteral("manager"), QVariant::fromValue(&manager));
        return models;
    }

    DialogModel &m_manager;
    DialogScene m_scene;
};

TEST(SheetWidths, ConfirmationDialogIs350To500)
{
    ConfirmationDialogManager manager;
    SheetWidths widths(QStringLiteral("ConfirmationDialog { manager: scene.manager }"), manager);
    EXPECT_EQ(widths.withEach([&](const QString &text) { manager.show({.title = text, .message = text}); }),
              (QList<int>{350, 500, 500}));
    const auto showTitles = [&](const QString &text) {
        manager.show({.title = fewWords, .message = fewWords, .confirmTitle = text, .cancelTitle = text});
    };
    const int width = widths.with(QStringLiteral("Restore every setting"), showTitles);
    EXPECT_GT(width, 350) << "the buttons widen the sheet";
    EXPECT_LE(width, 500);
}

TEST(SheetWidths, ProtectionMethodDialogIs400To500)
{
    ProtectionMethodDialogManager manager;
    SheetWidths widths(QStringLiteral("ProtectionMethodDialog { manager: scene.manager }"), manager);
    EXPECT_EQ(widths.withEach([&](const QString &text) { (void)manager.ask(text); }), (QList<int>{400, 500, 500}));
}

TEST(SheetWidths, PasswordInputDialogIs350To500)
{
    TestPlatform services;
    PasswordInputDialogManager manager;
    PasswordInputDialogModel state{manager, services.defaults.standard()};
    SheetWidths widths(QStringLiteral("PasswordInputDialog { manager: scene.manager; dialog: scene.state }"), manager,
                       {{QStringLiteral("state"), QVariant::fromValue(&state)}});
    for (const bool requiresConfirmation : {false, true}) {
        EXPECT_EQ(widths.withEach([&](const QString &text) {
            manager.show({.title = text, .message = text, .requiresConfirmation = requiresConfirmation}, {}, {});
        }),
                  (QList<int>{widthOfFields, 500, 500}));
    }
}

TEST(SheetWidths, RemoveProtectionDialogIs400To500)
{
    RemoveProtectionDialogManager manager;
    SheetWidths widths(QStringLiteral("RemoveProtectionDialog { manager: scene.manager }"), manager);
    EXPECT_EQ(widths.withEach([&](const QString &text) { manager.show(text, {}, {}); }), (QList<int>{500, 500, 500}));
}

TEST(SheetWidths, ErrorDialogIs400To500)
{
    ErrorDialogManager manager;
    SheetWidths widths(QStringLiteral("ErrorDialog { manager: scene.manager }"), manager);
    EXPECT_EQ(widths.withEach([&](const QString &text) { manager.showErrorWithAutoTroubleshooting(text, text); }),
              (QList<int>{400, 500, 500}));
}

TEST(SheetWidths, ErrorDialogSheetIs350To500)
{
    ErrorDialogSheetModel manager;
    SheetWidths widths(QStringLiteral("ErrorDialogSheet { manager: scene.manager }"), manager);
    EXPECT_EQ(widths.withEach([&](const QString &text) { manager.show(text); }), (QList<int>{350, 500, 500}));
}

TEST(SheetWidths, DeleteConfirmationSheetIsAlways400)
{
    DeleteConfirmationModel manager;
    SheetWidths widths(QStringLiteral("DeleteConfirmationSheet { dialog: scene.manager }"), manager);
    EXPECT_EQ(widths.withEach([&](const QString &text) { manager.show(text, true); }), (QList<int>{400, 400, 400}));
}

TEST(SheetWidths, ShredConfirmationDialogIs450To500)
{
    ShredConfirmationDialogModel manager;
    SheetWidths widths(QStringLiteral("ShredConfirmationDialog { dialog: scene.manager }"), manager);
    for (const int width : widths.withEach([&](const QString &text) { manager.show({text}); })) {
        EXPECT_GE(width, 450);
        EXPECT_LE(width, 500);
    }
}

TEST(SheetWidths, MasterPasswordDialogIs400To500)
{
    MasterPasswordDialogManager manager;
    SheetWidths widths(QStringLiteral("MasterPasswordDialog { manager: scene.manager }"), manager);
    const auto show = [&](const QString &text) { manager.show({.title = text, .message = text}, {}); };
    EXPECT_EQ(widths.withEach(show), (QList<int>{widthOfFields, 500, 500}));
    const auto showError = [&](const QString &text) {
        show(fewWords);
        manager.showError(text);
    };
    EXPECT_LE(widths.with(manyWords, showError), 500);
}

} // namespace
