#include "PindleMac/platform/linux/eventposting/X11EventPosting.h"

#include "PindleMac/platform/linux/eventposting/FrontApplication.h"
#include "PindleMac/platform/linux/x11/XConnection.h"

#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace pindle {

X11EventPosting::X11EventPosting(XConnection &connection, XKeyboard &keyboard)
    : connection_(connection)
    , keyboard_(keyboard)
    , held_(connection, keyboard) {
    const auto *extension = xcb_get_extension_data(connection_.xcb(), &xcb_test_id);
    available_ = extension != nullptr && extension->present != 0;
}

X11EventPosting::~X11EventPosting() {
    releaseChord();
}

std::optional<CGEventSource> X11EventPosting::CGEventSourceCreate(CGEventSourceStateID) {
    if (!available_)
        return std::nullopt;
    return CGEventSource{1};
}

std::optional<CGEvent> X11EventPosting::CGEventCreateKeyboardEvent(const CGEventSource &,
                                                                   CGKeyCode virtualKey,
                                                                   bool keyDown) {
    if (!available_ || virtualKey != kVK_ANSI_C || !chordKeys(CopyChord::controlC))
        return std::nullopt;
    return CGEvent{virtualKey, keyDown, 0};
}

void X11EventPosting::CGEventSetFlags(CGEvent &event, CGEventFlags flags) {
    event.flags = flags;
}

void X11EventPosting::CGEventPost(CGEventTapLocation, const CGEvent &event) {
    if (!available_ || event.virtualKey != kVK_ANSI_C || event.flags != kCGEventFlagMaskCommand)
        return;
    if (event.keyDown)
        pressChord();
    else
        releaseChord();
}

std::optional<X11EventPosting::Chord> X11EventPosting::chordKeys(CopyChord chord) const {
    if (chord == CopyChord::none)
        return std::nullopt;
    // Where no layout has a C, editors do not take the key in its place for one, but all know
    // Control+Insert.
    const bool letter = chord == CopyChord::controlC && keyboard_.hasLetter('c');
    const auto modifiers = keyboard_.keysOfSymbol(XKB_KEY_Control_L);
    const auto keys = letter ? keyboard_.keysOfLetter('c') : keyboard_.keysOfSymbol(XKB_KEY_Insert);
    if (modifiers.empty() || keys.empty())
        return std::nullopt;
    return Chord{modifiers.front(), keys.front(), {}};
}

void X11EventPosting::pressChord() {
    if (pressed_)
        return;
    auto chord = chordKeys(frontCopyChord(connection_));
    if (!chord)
        return;
    // While a hot key is held the keyboard can still be this connection's own.
    xcb_ungrab_keyboard(connection_.xcb(), XCB_CURRENT_TIME);
    chord->locks = keyboard_.takeLocks();
    // From here on nothing waits for the server: no other key finds the modifiers lifted without
    // Control being down.
    KeySet keys;
    keys.set(chord->key);
    held_.lift(keys);
    fake(XCB_KEY_PRESS, chord->modifier);
    fake(XCB_KEY_PRESS, chord->key);
    xcb_flush(connection_.xcb());
    pressed_ = chord;
}

void X11EventPosting::releaseChord() {
    if (!pressed_)
        return;
    // Pressing a key that nobody holds any more would leave it stuck, so this is asked last.
    const KeySet stillHeld = held_.stillHeld();
    fake(XCB_KEY_RELEASE, pressed_->key);
    fake(XCB_KEY_RELEASE, pressed_->modifier);
    keyboard_.putLocksBack(pressed_->locks);
    pressed_.reset();
    held_.putBack(stillHeld);
    xcb_flush(connection_.xcb());
}

void X11EventPosting::fake(uint8_t type, xcb_keycode_t key) {
    xcb_test_fake_input(connection_.xcb(), type, key, 0, XCB_NONE, 0, 0, 0);
}

} // namespace pindle
