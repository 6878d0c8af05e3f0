// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/widgets/OpenPanelDialog.h"
#include "platform/widgets/QtFilePanels.h"
#include "support/RunTask.h"
#include "support/TemporaryHome.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

#include <optional>

namespace quillhaven::testing {

/// A real panel with real folders, driven by key presses and clicks like those of the window system.
class PanelFixture : public ::testing::Test
{
protected:
    using Opened = RunningTask<std::optional<QString>>;

    [[nodiscard]] OpenPanelRequest request(bool files, bool folders, const QString &preselected = {}) const
    {
        return {.canChooseFiles = files,
                .canChooseDirectories = folders,
                .message = QStringLiteral("Please grant access to the selected item"),
                .prompt = QStringLiteral("Grant Access"),
                .directory = home.path(QStringLiteral("work")),
                .preselected = preselected};
    }

    /// Opens the panel and waits until it has the keyboard focus.
    [[nodiscard]] Opened open(const OpenPanelRequest &asked)
    {
        Opened opened(panels.open(asked));
        panel = nullptr;
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (auto *dialog = qobject_cast<OpenPanelDialog *>(widget); dialog && dialog->isVisible()) {
                panel = dialog;
            }
        }
        if (!panel) {
            throw std::runtime_error("no panel on the screen");
        }
        EXPECT_TRUE(spinUntil([this] { return panel->isActiveWindow() && QApplication::focusWidget(); }));
        return opened;
    }

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(panel->windowHandle(), key, modifiers);
    }

    /// Replaces the name in the field, key by key.
    void type(const QString &text) const
    {
        QTest::keyClick(panel->windowHandle(), Qt::Key_A, Qt::ControlModifier);
        for (const QChar character : text) {
            QTest::keyClick(panel->windowHandle(), character.toLatin1());
        }
        EXPECT_EQ(name()->text(), text);
    }

    [[nodiscard]] QLineEdit *name() const { return panel->findChild<QLineEdit *>(QStringLiteral("fileNameEdit")); }
    [[nodiscard]] QAbstractItemView *view() const
    {
        for (const QLatin1String part : {QLatin1String("listView"), QLatin1String("treeView")}) {
            if (auto *found = panel->findChild<QAbstractItemView *>(part); found->isVisible()) {
                return found;
            }
        }
        return nullptr;
    }
    [[nodiscard]] QPushButton *confirmButton() const
    {
        for (QPushButton *button : panel->findChildren<QPushButton *>()) {
            if (button->isDefault()) {
                return button;
            }
        }
        return nullptr;
    }

    /// The row of a name in the current folder, when it is listed.
    [[nodiscard]] QModelIndex row(const QString &named) const
    {
        QModelIndex found;
        const auto isListed = [&] {
            const QAbstractItemModel *model = view()->model();
            const QModelIndex root = view()->rootIndex();
            for (int i = 0; i < model->rowCount(root); ++i) {
                const QModelIndex index = model->index(i, 0, root);
                if (index.data(QFileSystemModel::FileNameRole).toString() == named) {
                    found = index;
                }
            }
            return found.isValid() && !view()->visualRect(found).isEmpty();
        };
        EXPECT_TRUE(spinUntil(isListed, 10'000)) << "not listed: " << qUtf8Printable(named);
        return found;
    }
    void click(const QString &named) const
    {
        QTest::mouseClick(view()->viewport(), Qt::LeftButton, {}, view()->visualRect(row(named)).center());
    }
    void doubleClick(const QString &named) const
    {
        const QPoint place = view()->visualRect(row(named)).center();
        QTest::mouseClick(view()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(view()->viewport(), Qt::LeftButton, {}, place);
    }
    void clickConfirm() const { QTest::mouseClick(confirmButton(), Qt::LeftButton); }

    /// The result of the panel; nothing if it is still open.
    [[nodiscard]] static QString chosen(const Opened &opened)
    {
        if (!spinUntil([&] { return opened.isFinished(); }, 10'000)) {
            ADD_FAILURE() << "the panel is still open";
            return {};
        }
        return opened.wait().value_or(QStringLiteral("(declined)"));
    }

    ~PanelFixture() override
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<OpenPanelDialog *>(widget)) {
                widget->close();
            }
        }
        spinOnce();
    }

    TemporaryHome home;
    QtFilePanels panels;
    OpenPanelDialog *panel = nullptr;
};

} // namespace quillhaven::testing
