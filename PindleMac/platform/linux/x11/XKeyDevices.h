#pragma once

#include "PindleMac/platform/linux/x11/XKeyboard.h"

#include <optional>
#include <vector>

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
    /// A key let go, and whether a real keyboard told it: one of those the last `physicallyDown()`
    /// found.
    struct Release {
        xcb_keycode_t key = 0;
        bool real = false;
        xcb_timestamp_t time = 0;
    };
    /// The release `event` tells, if it tells one.
    std::optional<Release> release(const xcb_generic_event_t &event) const;

private:
    void findKeyboards();

    XConnection &connection_;
    std::vector<uint16_t> keyboards_; ///< the real ones, as last found
    uint8_t opcode_ = 0;
};

} // namespace pindle
