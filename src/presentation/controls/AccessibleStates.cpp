// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/controls/AccessibleStates.h"

#include <QAccessible>
#include <QPointer>
#include <QQuickItem>

namespace quillhaven {

namespace {

/// The toolkit's interface of a control, except for its state. Both are owned by the toolkit's cache, which deletes
/// them in any order when the control is destroyed or the program ends.
class ControlInterface : public QAccessibleInterface
{
public:
    ControlInterface(QAccessibleInterface &toolkits, QQuickItem &control) : m_toolkits(toolkits), m_control(&control)
    {
        QObject::connect(&control, &QQuickItem::enabledChanged, &m_connection, [&control] {
            QAccessible::State changed;
            changed.disabled = true;
            QAccessibleStateChangeEvent event(&control, changed);
            QAccessible::updateAccessibility(&event);
        });
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = m_toolkits.state();
        state.disabled = !m_control->isEnabled();
        return state;
    }

    [[nodiscard]] bool isValid() const override { return m_control; }
    [[nodiscard]] QObject *object() const override { return m_control; }
    [[nodiscard]] QWindow *window() const override { return m_toolkits.window(); }
    [[nodiscard]] QList<QPair<QAccessibleInterface *, QAccessible::Relation>>
    relations(QAccessible::Relation match) const override
    {
        return m_toolkits.relations(match);
    }
    [[nodiscard]] QAccessibleInterface *focusChild() const override { return m_toolkits.focusChild(); }
    [[nodiscard]] QAccessibleInterface *childAt(int x, int y) const override { return m_toolkits.childAt(x, y); }
    [[nodiscard]] QAccessibleInterface *parent() const override { return m_toolkits.parent(); }
    [[nodiscard]] QAccessibleInterface *child(int index) const override { return m_toolkits.child(index); }
    [[nodiscard]] int childCount() const override { return m_toolkits.childCount(); }
    int indexOfChild(const QAccessibleInterface *child) const override { return m_toolkits.indexOfChild(child); }
    [[nodiscard]] QString text(QAccessible::Text kind) const override { return m_toolkits.text(kind); }
    void setText(QAccessible::Text kind, const QString &text) override { m_toolkits.setText(kind, text); }
    [[nodiscard]] QRect rect() const override { return m_toolkits.rect(); }
    [[nodiscard]] QAccessible::Role role() const override { return m_toolkits.role(); }
    [[nodiscard]] QColor foregroundColor() const override { return m_toolkits.foregroundColor(); }
    [[nodiscard]] QColor backgroundColor() const override { return m_toolkits.backgroundColor(); }
    void *interface_cast(QAccessible::InterfaceType type) override { return m_toolkits.interface_cast(type); }

private:
    QAccessibleInterface &m_toolkits;
    QPointer<QQuickItem> m_control;
    QObject m_connection; ///< its context
};

/// Called for each class of an object, the most derived one first, until there is an interface.
QAccessibleInterface *makeInterface(const QString &className, QObject *object)
{
    static const QObject *beingMade = nullptr;
    const bool isControl = className == QLatin1String("QQuickControl") || className == QLatin1String("QQuickTextInput");
    auto *control = isControl && object != beingMade ? qobject_cast<QQuickItem *>(object) : nullptr;
    if (!control) {
        return nullptr;
    }
    beingMade = object;
    QAccessibleInterface *toolkits = QAccessible::queryAccessibleInterface(object);
    beingMade = nullptr;
    return toolkits ? new ControlInterface(*toolkits, *control) : nullptr;
}

} // namespace

void reportDisabledControls()
{
    QAccessible::installFactory(makeInterface);
}

} // namespace quillhaven
