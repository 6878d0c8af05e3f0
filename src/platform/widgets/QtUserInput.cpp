// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/QtUserInput.h"

#include "platform/GlobalInput.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QWindow>

namespace quillhaven {

namespace {

/// The input that an event of the toolkit is, if any.
InputEvents inputOf(const QEvent &event)
{
    if (event.type() == QEvent::KeyPress) {
        return InputEvent::KeyDown;
    }
    if (event.type() != QEvent::MouseButtonPress && event.type() != QEvent::MouseMove) {
        return {};
    }
    const auto &mouse = static_cast<const QMouseEvent &>(event);
    if (event.type() == QEvent::MouseMove) {
        return mouse.buttons() == Qt::NoButton ? InputEvents(InputEvent::MouseMoved) : InputEvents();
    }
    if (mouse.button() == Qt::LeftButton) {
        return InputEvent::LeftMouseDown;
    }
    return mouse.button() == Qt::RightButton ? InputEvents(InputEvent::RightMouseDown) : InputEvents();
}

class LocalMonitor : public QObject, public UserInput::Monitor
{
public:
    LocalMonitor(InputEvents events, UserInput::Handler handler) : m_events(events), m_handler(std::move(handler))
    {
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // A window gets each input once, before the items or widgets in it do.
        if (watched->isWindowType() && (inputOf(*event) & m_events)) {
            m_handler();
        }
        return false;
    }

private:
    InputEvents m_events;
    UserInput::Handler m_handler;
};

} // namespace

std::unique_ptr<UserInput::Monitor> QtUserInput::addGlobalMonitor(InputEvents events, Handler handler)
{
    return m_global.addMonitor(events, std::move(handler));
}

std::unique_ptr<UserInput::Monitor> QtUserInput::addLocalMonitor(InputEvents events, Handler handler)
{
    return std::make_unique<LocalMonitor>(events, std::move(handler));
}

} // namespace quillhaven
