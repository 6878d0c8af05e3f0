// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/XInputSource.h"

#include "platform/Clock.h"

#include <xcb/xcbext.h>
#include <xcb/xinput.h>

#include <span>
#include <utility>

namespace quillhaven {

namespace {

constexpr uint32_t leftButton = 1;
constexpr uint32_t rightButton = 3;
/// The first two axes are the pointer's place; a wheel or a touchpad scrolls by the further ones.
constexpr uint32_t placeAxes = 0b11;

std::optional<uint8_t> findXInput(xcb_connection_t *server)
{
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(server, &xcb_input_id);
    if (extension == nullptr || extension->present == 0) {
        return {};
    }
    const auto question = xcb_input_xi_query_version(server, 2, 2);
    const XOwned<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(server, question, nullptr));
    if (!version || std::pair(version->major_version, version->minor_version) < std::pair<uint16_t, uint16_t>(2, 2)) {
        return {};
    }
    return extension->major_opcode;
}

bool isMoved(const xcb_input_raw_motion_event_t &event)
{
    const std::span axes(xcb_input_raw_button_press_valuator_mask(&event),
                         static_cast<size_t>(xcb_input_raw_button_press_valuator_mask_length(&event)));
    return !axes.empty() && (axes.front() & placeAxes) != 0;
}

bool isScrolling(uint32_t button)
{
    return button >= 4 && button <= 7;
}

bool hasPressedButton(const xcb_query_pointer_reply_t &pointer)
{
    constexpr uint16_t buttons = XCB_KEY_BUT_MASK_BUTTON_1 | XCB_KEY_BUT_MASK_BUTTON_2 | XCB_KEY_BUT_MASK_BUTTON_3;
    return (pointer.mask & buttons) != 0;
}

} // namespace

QCoro::Task<std::unique_ptr<XConnection>> XInputSource::connectTo(QThreadPool &pool)
{
    return XConnection::open(pool, findXInput);
}

XInputSource::XInputSource(std::unique_ptr<XConnection> server, Clock &clock, InputEvents events,
                           std::chrono::milliseconds period)
    : m_server(std::move(server)), m_clock(clock), m_events(events), m_period(period)
{
    connect(m_server.get(), &XConnection::eventReceived, this, &XInputSource::onEvent);
    connect(m_server.get(), &XConnection::allRead, this, &XInputSource::readButtons);
    connect(m_server.get(), &XConnection::lost, this, &GlobalInputSource::lost);
    startWatching();
}

XInputSource::~XInputSource() = default;

QString XInputSource::sentence() const
{
    return QStringLiteral("Keyboard and pointer are watched through XInput 2.");
}

void XInputSource::startWatching()
{
    if (!m_events.testFlag(InputEvent::MouseMoved)) {
        return enter(Phase::Watching);
    }
    dropQuestion();
    // Asked after the buttons are selected, so that none is pressed or released unnoticed.
    enter(Phase::AskingForButtons);
    m_question = xcb_query_pointer(m_server->get(), m_server->root()).sequence;
    m_server->send();
}

uint32_t XInputSource::selection() const
{
    if (m_phase == Phase::Quiet) {
        return 0;
    }
    uint32_t mask = 0;
    if (m_events.testFlag(InputEvent::KeyDown)) {
        mask |= XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS;
    }
    if (m_events.testFlag(InputEvent::LeftMouseDown) || m_events.testFlag(InputEvent::RightMouseDown)) {
        mask |= XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS;
    }
    if (m_events.testFlag(InputEvent::MouseMoved)) {
        mask |= XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;
        mask |= m_phase == Phase::Watching ? XCB_INPUT_XI_EVENT_MASK_RAW_MOTION : 0;
    }
    return mask;
}

void XInputSource::enter(Phase phase)
{
    m_phase = phase;
    struct
    {
        xcb_input_event_mask_t header;
        uint32_t mask;
    } const selected{.header = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1}, .mask = selection()};
    xcb_input_xi_select_events(m_server->get(), m_server->root(), 1, &selected.header);
    m_server->send();
}

void XInputSource::onEvent(const xcb_generic_event_t *event)
{
    const auto *generic = reinterpret_cast<const xcb_ge_generic_event_t *>(event);
    if ((event->response_type & 0x7f) != XCB_GE_GENERIC || generic->extension != m_server->extension() ||
        m_phase == Phase::Quiet) {
        return;
    }
    // All raw events have one form.
    const auto *raw = reinterpret_cast<const xcb_input_raw_motion_event_t *>(event);
    switch (raw->event_type) {
    case XCB_INPUT_RAW_KEY_PRESS:
        return report();
    case XCB_INPUT_RAW_BUTTON_PRESS:
        return onPress(raw->detail);
    case XCB_INPUT_RAW_BUTTON_RELEASE:
        return onRelease(raw->detail);
    case XCB_INPUT_RAW_MOTION:
        return m_phase == Phase::Watching && isMoved(*raw) ? report() : void();
    default:
        return;
    }
}

void XInputSource::onPress(uint32_t button)
{
    if ((button == leftButton && m_events.testFlag(InputEvent::LeftMouseDown)) ||
        (button == rightButton && m_events.testFlag(InputEvent::RightMouseDown))) {
        report();
    } else if (m_events.testFlag(InputEvent::MouseMoved) && !isScrolling(button)) {
        dropQuestion();
        enter(Phase::Dragging);
    }
}

void XInputSource::onRelease(uint32_t button)
{
    if (!isScrolling(button)) {
        startWatching(); // another button may still be held
    }
}

void XInputSource::readButtons()
{
    void *answer = nullptr;
    xcb_generic_error_t *failure = nullptr;
    if (!m_question || xcb_poll_for_reply(m_server->get(), *m_question, &answer, &failure) == 0) {
        return;
    }
    m_question.reset();
    const XOwned<xcb_query_pointer_reply_t> pointer(static_cast<xcb_query_pointer_reply_t *>(answer));
    const XOwned<xcb_generic_error_t> error(failure);
    enter(pointer && hasPressedButton(*pointer) ? Phase::Dragging : Phase::Watching);
}

void XInputSource::dropQuestion()
{
    if (m_question) {
        xcb_discard_reply(m_server->get(), *m_question);
        m_question.reset();
    }
}

void XInputSource::report()
{
    dropQuestion();
    enter(Phase::Quiet);
    m_untilWatching = m_clock.startOneShot(m_period, [this] { startWatching(); });
    Q_EMIT inputSeen();
}

} // namespace quillhaven
