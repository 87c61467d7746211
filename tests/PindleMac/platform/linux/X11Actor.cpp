#include "X11Actor.h"

#include "PindleMac/platform/linux/x11/XClients.h"
#include "PindleMac/platform/linux/x11/XConnection.h"

#include <QTest>
#include <algorithm>
#include <cstring>
#include <xcb/xtest.h>

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace pindle::test {

bool waitUntil(const std::function<bool()> &done, int milliseconds) {
    return QTest::qWaitFor(done, milliseconds);
}

void settle(int milliseconds) {
    QTest::qWait(milliseconds);
}

bool run(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(program, arguments);
    return process.waitForFinished(10000) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

Actor::Actor(const char *display) {
    int number = 0;
    connection_ = xcb_connect(display, &number);
    if (xcb_connection_has_error(connection_))
        qFatal("no display for another program");
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    xcbReply(xcb_xkb_use_extension_reply(connection_, xcb_xkb_use_extension(connection_, 1, 0),
                                         nullptr));
}

Actor::~Actor() {
    xcb_disconnect(connection_);
}

void Actor::sync() {
    xcbReply(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

void Actor::press(xcb_keycode_t key) {
    xcb_test_fake_input(connection_, XCB_KEY_PRESS, key, 0, XCB_NONE, 0, 0, 0);
    sync();
}

void Actor::release(xcb_keycode_t key) {
    xcb_test_fake_input(connection_, XCB_KEY_RELEASE, key, 0, XCB_NONE, 0, 0, 0);
    sync();
}

void Actor::tap(xcb_keycode_t key) {
    press(key);
    release(key);
}

void Actor::chord(const std::vector<xcb_keycode_t> &keys) {
    for (const auto key : keys)
        press(key);
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        release(*key);
}

void Actor::movePointer(int x, int y) {
    xcb_test_fake_input(connection_, XCB_MOTION_NOTIFY, 0, 0, root_, int16_t(x), int16_t(y), 0);
    sync();
}

void Actor::click(int x, int y) {
    movePointer(x, y);
    xcb_test_fake_input(connection_, XCB_BUTTON_PRESS, 1, 0, XCB_NONE, 0, 0, 0);
    xcb_test_fake_input(connection_, XCB_BUTTON_RELEASE, 1, 0, XCB_NONE, 0, 0, 0);
    sync();
}

bool Actor::grabKey(uint16_t modifiers, xcb_keycode_t key) {
    const auto cookie = xcb_grab_key_checked(connection_, 1, root_, modifiers, key,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    return !xcbReply(xcb_request_check(connection_, cookie));
}

bool Actor::grabKeyboard() {
    const auto reply = xcbReply(
        xcb_grab_keyboard_reply(connection_,
                                xcb_grab_keyboard(connection_, 0, root_, XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void Actor::ungrabKeyboard() {
    xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
    sync();
}

std::vector<int> Actor::keysDown() {
    std::vector<int> down;
    const auto reply =
        xcbReply(xcb_query_keymap_reply(connection_, xcb_query_keymap(connection_), nullptr));
    for (int key = 0; reply && key < 256; ++key) {
        if (reply->keys[key / 8] >> (key % 8) & 1)
            down.push_back(key);
    }
    return down;
}

uint8_t Actor::lockedModifiers() {
    const auto reply = xcbReply(xcb_xkb_get_state_reply(
        connection_, xcb_xkb_get_state(connection_, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    return reply ? reply->lockedMods : 0;
}

void Actor::lockGroup(uint8_t group) {
    xcb_xkb_latch_lock_state(connection_, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
    sync();
}

xcb_atom_t Actor::atom(const char *name) {
    const auto reply = xcbReply(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, uint16_t(std::strlen(name)), name), nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

xcb_window_t Actor::showWindow(const QByteArray &instance, const QByteArray &name) {
    const xcb_window_t window = xcb_generate_id(connection_);
    const uint32_t events[] = {XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE};
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root_, 50, 50, 300, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      events);
    if (!name.isEmpty()) {
        const QByteArray text = instance + '\0' + name + '\0';
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS,
                            XCB_ATOM_STRING, 8, uint32_t(text.size()), text.constData());
    }
    xcb_map_window(connection_, window);
    sync();
    const auto focused = [&] {
        const auto focus = xcbReply(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
        return activeWindow() == window && focus && focus->focus == window;
    };
    if (waitUntil(focused, 500))
        return window;
    // The window manager may have taken the window for one that steals the keyboard.
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = 2; // as a pager does
    xcb_send_event(connection_, 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    sync();
    return waitUntil(focused) ? window : xcb_window_t(XCB_NONE);
}

void Actor::setProperty(xcb_window_t window, const char *property, xcb_atom_t type,
                        const std::vector<uint32_t> &values) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), type, 32,
                        uint32_t(values.size()), values.data());
    sync();
}

void Actor::read() {
    sync();
    while (const auto event = xcbReply(xcb_poll_for_event(connection_))) {
        const auto type = event->response_type & 0x7f;
        if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE)
            continue;
        const auto *key = reinterpret_cast<const xcb_key_press_event_t *>(event.get());
        keys_.push_back({type == XCB_KEY_PRESS, key->detail, key->state});
    }
}

std::vector<Actor::Key> Actor::keys() {
    read();
    return keys_;
}

void Actor::forgetKeys() {
    read();
    keys_.clear();
}

xcb_window_t activeWindow() {
    const auto connection = XConnection::open();
    return connection->activeWindow();
}

Program::Program(const QString &name, const QStringList &arguments) {
    process_.setStandardOutputFile(QProcess::nullDevice());
    process_.setStandardErrorFile(QProcess::nullDevice());
    process_.start(name, arguments);
    process_.waitForStarted();
}

Program::~Program() {
    process_.terminate();
    if (!process_.waitForFinished(2000)) {
        process_.kill();
        process_.waitForFinished(2000);
    }
}

bool Program::waitActive(const QString &wanted) {
    return waitUntil(
        [&] {
            const auto connection = XConnection::open();
            const auto window = connection->activeWindow();
            const auto type = windowClass(*connection, window);
            return type && QString::fromUtf8(type->name) == wanted;
        },
        10000);
}

} // namespace pindle::test
