// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/widgets/OpenPanelDialog.h"
#include "support/RunTask.h"

#include <QApplication>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeView>
#include <QWindow>

#include <gtest/gtest.h>

namespace quillhaven::test {

/// A user of a real panel, whose key presses and clicks are like those of the window system.
class PanelUser
{
public:
    /// The panel of this kind that is on the screen, or null.
    template <typename Panel>
    [[nodiscard]] static Panel *onScreen()
    {
        Panel *found = nullptr;
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (auto *dialog = qobject_cast<Panel *>(widget); dialog && dialog->isVisible()) {
                found = dialog;
            }
        }
        return found;
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

    [[nodiscard]] QLineEdit *name() const { return panel->findChild<QLineEdit *>(); }
    [[nodiscard]] QTreeView *view() const { return panel->findChild<QTreeView *>(); }
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
        EXPECT_TRUE(spinUntil(isListed)) << "not listed: " << qUtf8Printable(named);
        return found;
    }
    void click(const QString &named, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::mouseClick(view()->viewport(), Qt::LeftButton, modifiers, view()->visualRect(row(named)).center());
    }
    void doubleClick(const QString &named) const
    {
        const QPoint place = view()->visualRect(row(named)).center();
        QTest::mouseClick(view()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(view()->viewport(), Qt::LeftButton, {}, place);
    }
    void clickConfirm() const { QTest::mouseClick(confirmButton(), Qt::LeftButton); }

    OpenPanelDialog *panel = nullptr; ///< the one in use
};

} // namespace quillhaven::test
