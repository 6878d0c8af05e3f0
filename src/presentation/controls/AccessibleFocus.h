// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAccessible>
#include <QObject>
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

    /// Does nothing for null.
    Q_INVOKABLE void report(QObject *item) const
    {
        if (item) {
            QAccessibleEvent event(item, QAccessible::Focus);
            QAccessible::updateAccessibility(&event);
        }
    }
};

} // namespace quillhaven
