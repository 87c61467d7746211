#pragma once

#include "PindleMac/platform/linux/x11/XKeyDevices.h"

#include <xcb/xcb.h>

namespace pindle {

/// Tells a new press of a hot key from the repetitions of one that is held. Once the keyboard grab
/// is given up, the release goes to another application, so it is watched for. Main thread.
class TriggerWatch {
public:
    /// Both must outlive it.
    TriggerWatch(XConnection &connection, XKeyboard &keyboard);

    /// Whether `press` repeats the last one that was accepted; otherwise it is accepted.
    bool repeats(const xcb_key_press_event_t &press);

private:
    void begin(xcb_keycode_t key);
    void end();

    XKeyboard &keyboard_;
    XKeyDevices devices_;
    xcb_timestamp_t lastPress_ = 0;
};

} // namespace pindle
