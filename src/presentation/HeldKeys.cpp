// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/HeldKeys.h"

#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickWindow>

namespace quillhaven {

namespace {

bool actsOnce(int key, const QQuickItem *focused)
{
    const bool isTyping = focused && focused->flags().testFlag(QQuickItem::ItemAcceptsInputMethod);
    return key == Qt::Key_Return || key == Qt::Key_Enter ||
           (!isTyping && (key == Qt::Key_Space || key == Qt::Key_Delete));
}

class HeldKeys : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) {
            return false;
        }
        const auto *key = static_cast<QKeyEvent *>(event);
        const auto *window = qobject_cast<QQuickWindow *>(watched);
        return key->isAutoRepeat() && window && actsOnce(key->key(), window->activeFocusItem());
    }
};

} // namespace

void ignoreHeldKeys(QQuickWindow &window)
{
    window.installEventFilter(new HeldKeys(&window));
}

} // namespace quillhaven
