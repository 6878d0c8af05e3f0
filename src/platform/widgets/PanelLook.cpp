// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/PanelLook.h"

#include <QDialog>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillhaven {

namespace {

constexpr const char *look = R"(
    QLabel, QCheckBox { color: @text; }
    QPushButton {
        background: @button; color: @text; border: 2px solid @button; border-radius: 8px; padding: 7px 18px;
    }
    QPushButton:default { background: @highlight; border-color: @highlight; }
    QPushButton:disabled { background: @button; color: @disabled; border-color: @button; }
    QPushButton:focus { border-color: @text; }
    QLineEdit, QAbstractItemView, QLabel#path {
        background: @base; color: @text; selection-background-color: @highlight; selection-color: @text;
        border: 2px solid @button; border-radius: 8px; padding: 6px;
    }
    QLineEdit:focus, QAbstractItemView:focus { border-color: @link; }
    QAbstractItemView { outline: none; }
    QAbstractItemView::item { padding: 4px; border: 1px solid transparent; }
    QAbstractItemView::item:selected { background: @highlight; color: @text; }
    QAbstractItemView::item:focus { border-color: @link; }
    QAbstractItemView::indicator:unchecked {
        width: 10px; height: 10px; border: 2px solid @disabled; border-radius: 4px; background: @base;
    }
    QHeaderView { border: none; border-radius: 0; padding: 0; }
    QHeaderView::section { background: @base; color: @text; border: none; padding: 4px; }
    QCheckBox:focus { text-decoration: underline; }
    QToolTip { background: @window; color: @text; }
)";

/// The rules with the names of the palette's roles replaced by their colours: a rule's own `palette()` knows only the
/// colours of the application.
QString inColours(QString rules, const QPalette &palette)
{
    const std::pair<const char *, QPalette::ColorRole> roles[] = {
        {"@window", QPalette::Window},       {"@base", QPalette::Base}, {"@button", QPalette::Button},
        {"@highlight", QPalette::Highlight}, {"@link", QPalette::Link}, {"@text", QPalette::WindowText},
    };
    for (const auto &[name, role] : roles) {
        rules.replace(QLatin1String(name), palette.color(role).name());
    }
    return rules.replace(QLatin1String("@disabled"), palette.color(QPalette::Disabled, QPalette::WindowText).name());
}

} // namespace

QVBoxLayout *newPanelRows(QDialog &panel, const QPalette &palette)
{
    constexpr int margin = 22;
    constexpr int spacing = 14;
    panel.setPalette(palette);
    auto *content = new QWidget(&panel);
    auto *whole = new QVBoxLayout(&panel);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(content);
    content->setStyleSheet(inColours(QLatin1String(look), palette));
    auto *rows = new QVBoxLayout(content);
    rows->setContentsMargins(margin, margin, margin, margin);
    rows->setSpacing(spacing);
    return rows;
}

QLabel *newTextLabel(const QString &text, QWidget *parent, bool isHeading)
{
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    if (isHeading) {
        constexpr double headingScale = 1.15;
        QFont font = label->font();
        font.setBold(true);
        if (font.pixelSize() > 0) {
            font.setPixelSize(qRound(font.pixelSize() * headingScale));
        } else {
            font.setPointSizeF(font.pointSizeF() * headingScale);
        }
        label->setFont(font);
    }
    return label;
}

QHBoxLayout *newButtonRow(QDialog &panel, QWidget *first, QPushButton *confirm)
{
    auto *cancel = new QPushButton(QStringLiteral("Cancel"), &panel);
    cancel->setAutoDefault(false);
    confirm->setDefault(true);
    QObject::connect(cancel, &QPushButton::clicked, &panel, &QDialog::reject);
    QObject::connect(confirm, &QPushButton::clicked, &panel, &QDialog::accept);
    auto *row = new QHBoxLayout;
    row->addWidget(first);
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(confirm);
    return row;
}

} // namespace quillhaven
