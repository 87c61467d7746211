#pragma once

#include "bench/Samples.h"

#include <xcb/xcb.h>

namespace pindle::bench {

/// The user's hands: keys and pointer, as XTest events on a connection of their own. One thread.
class KeyPresses {
public:
    /// Stops the program when there is no display.
    KeyPresses();
    ~KeyPresses();
    KeyPresses(const KeyPresses &) = delete;
    KeyPresses &operator=(const KeyPresses &) = delete;

    /// Presses Super, Shift and then a letter. The instant is that just before the letter's press
    /// is sent; the other two are down by then, as with a hand.
    Instant pressShortcut(char letter);
    /// Lifts what pressShortcut() pressed.
    void releaseShortcut();

    void movePointer(int x, int y);
    void click();

    xcb_connection_t *xcb() const { return connection_; }
    xcb_window_t root() const { return root_; }

private:
    xcb_keycode_t keyFor(xcb_keysym_t symbol) const;
    void fake(std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0);
    void sync();

    xcb_connection_t *connection_;
    xcb_window_t root_;
    xcb_keycode_t super_;
    xcb_keycode_t shift_;
    xcb_keycode_t letter_ = 0;
};

} // namespace pindle::bench
