#pragma once

#include "PindleMac/platform/linux/x11/XKeyDevices.h"

#include <QTimer>
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
    void released(const XKeyDevices::Release &release);
    bool isRepetition(const xcb_key_press_event_t &press) const;
    void begin(xcb_keycode_t key);
    void end();
    void setWatching(bool on);

    XKeyboard &keyboard_;
    XKeyDevices devices_;
    xcb_keycode_t key_ = 0;      ///< of the last press
    bool pressedByUser_ = false; ///< that key, on a real keyboard
    xcb_timestamp_t lastPress_ = 0;
    std::optional<XKeyDevices::Release> lastRelease_; ///< by a real keyboard, since the last press
    bool watching_ = false;
    QTimer linger_;
};

} // namespace pindle
