#include "bench/KeyPresses.h"

#include <cstdio>
#include <cstdlib>
#include <xcb/xtest.h>

namespace pindle::bench {

namespace {

constexpr xcb_keysym_t superKey = 0xffeb; ///< XK_Super_L
constexpr xcb_keysym_t shiftKey = 0xffe1; ///< XK_Shift_L

} // namespace

KeyPresses::KeyPresses()
    : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_)) {
        std::fputs("bench: no display\n", stderr);
        std::exit(EXIT_FAILURE);
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    super_ = keyFor(superKey);
    shift_ = keyFor(shiftKey);
}

KeyPresses::~KeyPresses() {
    xcb_disconnect(connection_);
}

Instant KeyPresses::pressShortcut(char letter) {
    letter_ = keyFor(static_cast<xcb_keysym_t>(letter)); // Latin-1 characters are their own symbols
    fake(XCB_KEY_PRESS, super_);
    fake(XCB_KEY_PRESS, shift_);
    sync();
    fake(XCB_KEY_PRESS, letter_);
    const Instant pressed = now();
    xcb_flush(connection_);
    return pressed;
}

void KeyPresses::releaseShortcut() {
    for (const xcb_keycode_t key : {letter_, shift_, super_})
        fake(XCB_KEY_RELEASE, key);
    sync();
}

void KeyPresses::movePointer(int x, int y) {
    fake(XCB_MOTION_NOTIFY, 0, x, y);
    sync();
}

void KeyPresses::click() {
    constexpr std::uint8_t leftButton = 1;
    fake(XCB_BUTTON_PRESS, leftButton);
    fake(XCB_BUTTON_RELEASE, leftButton);
    sync();
}

xcb_keycode_t KeyPresses::keyFor(xcb_keysym_t symbol) const {
    const xcb_setup_t *setup = xcb_get_setup(connection_);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    auto *reply = xcb_get_keyboard_mapping_reply(
        connection_, xcb_get_keyboard_mapping(connection_, setup->min_keycode, count), nullptr);
    int found = -1;
    for (int i = 0; reply && found < 0 && i < count; ++i) {
        if (xcb_get_keyboard_mapping_keysyms(reply)[i * reply->keysyms_per_keycode] == symbol)
            found = setup->min_keycode + i;
    }
    std::free(reply);
    if (found < 0) {
        std::fputs("bench: the keyboard lacks a key\n", stderr);
        std::exit(EXIT_FAILURE);
    }
    return static_cast<xcb_keycode_t>(found);
}

void KeyPresses::fake(std::uint8_t type, std::uint8_t detail, int x, int y) {
    xcb_test_fake_input(connection_, type, detail, XCB_CURRENT_TIME, XCB_NONE,
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
}

void KeyPresses::sync() {
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

} // namespace pindle::bench
