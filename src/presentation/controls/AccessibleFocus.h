// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAccessible>
#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// Reports to screen readers where the keyboard focus is when one item represents another. The toolkit reports only the
/// item that has the focus, even if it is ignored on the accessibility bus.
class AccessibleFocus : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Reports from the event loop that the focus is on this item, if it is still there.
    Q_INVOKABLE void reportLater(QObject *item)
    {
        const auto report = [item = QPointer(item)] {
            if (item) {
                QAccessibleEvent event(item, QAccessible::Focus);
                QAccessible::updateAccessibility(&event);
            }
        };
        QMetaObject::invokeMethod(this, report, Qt::QueuedConnection);
    }
};

} // namespace quillhaven
