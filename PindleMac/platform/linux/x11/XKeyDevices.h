#pragma once

#include "PindleMac/platform/linux/x11/XKeyboard.h"

#include <functional>

namespace pindle {

/// The keyboards behind the one that applications see: what real devices report, apart from keys
/// pressed by programs (X Input 2). Main thread.
class XKeyDevices {
public:
    /// `connection` must outlive it.
    explicit XKeyDevices(XConnection &connection);

    /// The keys a user holds: those a keyboard reports down that is not the one of XTEST. Empty
    /// where the server has no X Input 2.
    KeySet physicallyDown();
    /// The keys applications see as down.
    KeySet down();

    /// Whether releases can be watched.
    bool canWatch() const { return opcode_ != 0; }
    /// Asks for the releases of all keys, whoever has the keyboard; off unless asked for.
    void watchReleases(bool on);
    /// The key whose release `event` tells, or zero.
    xcb_keycode_t releasedKey(const xcb_generic_event_t &event) const;

private:
    XConnection &connection_;
    uint8_t opcode_ = 0;
};

} // namespace pindle
