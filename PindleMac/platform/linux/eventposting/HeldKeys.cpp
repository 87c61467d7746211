#include "PindleMac/platform/linux/eventposting/HeldKeys.h"

#include "PindleMac/platform/linux/x11/XConnection.h"

#include <chrono>
#include <xcb/xtest.h>

namespace pindle {
namespace {

using namespace std::chrono_literals;

/// How often the real keyboards are asked whether a key pressed in the user's place is still held.
/// Applications see the release at once; this only clears what the server remembers.
constexpr auto pollInterval = 50ms;

} // namespace

HeldKeys::HeldKeys(XConnection &connection, XKeyboard &keyboard)
    : connection_(connection)
    , keyboard_(keyboard)
    , devices_(connection) {
    poll_.setInterval(pollInterval);
    QObject::connect(&poll_, &QTimer::timeout, &poll_, [this] { releaseWhatUserLetGo(); });
}

HeldKeys::~HeldKeys() {
    release(lent_);
    xcb_flush(connection_.xcb());
}

void HeldKeys::lift(const KeySet &alsoFree) {
    KeySet wanted = keyboard_.modifierKeys() | alsoFree;
    wanted.set(keyboard_.trigger(), keyboard_.trigger() != 0);
    const KeySet held = devices_.down() & wanted;
    release(held | lent_);
    lifted_ |= held & keyboard_.modifierKeys();
    lent_.reset();
}

KeySet HeldKeys::stillHeld() {
    return lifted_.any() ? lifted_ & devices_.physicallyDown() : KeySet();
}

void HeldKeys::putBack(const KeySet &keys) {
    lifted_.reset();
    lent_ |= keys;
    press(keys);
    if (lent_.any())
        poll_.start();
}

void HeldKeys::releaseWhatUserLetGo() {
    const KeySet gone = lent_ & ~devices_.physicallyDown();
    release(gone);
    lent_ &= ~gone;
    if (lent_.none())
        poll_.stop();
    xcb_flush(connection_.xcb());
}

void HeldKeys::press(const KeySet &keys) {
    for (std::size_t key = 0; key < keys.size(); ++key) {
        if (keys[key])
            xcb_test_fake_input(connection_.xcb(), XCB_KEY_PRESS, static_cast<uint8_t>(key), 0,
                                XCB_NONE, 0, 0, 0);
    }
}

void HeldKeys::release(const KeySet &keys) {
    for (std::size_t key = 0; key < keys.size(); ++key) {
        if (keys[key])
            xcb_test_fake_input(connection_.xcb(), XCB_KEY_RELEASE, static_cast<uint8_t>(key), 0,
                                XCB_NONE, 0, 0, 0);
    }
}

} // namespace pindle
