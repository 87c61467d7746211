#pragma once

#include "bench/KeyPresses.h"

#include <functional>
#include <optional>

namespace pindle::bench {

/// What a run over a window does.
struct WindowPlan {
    xcb_window_t window = XCB_NONE; ///< of the program under test, which keeps it while hidden
    char letter = 0;                ///< Super+Shift+letter shows it
    int presses = 0;
    /// Where to click to hide it, in the window; absent when the shortcut hides it too.
    std::optional<std::pair<int, int>> closeButton;
};

/// Shows and hides another program's window by its global shortcut and takes the time until the
/// server has mapped it ("mapped") and until it has been drawn into ("painted").
class WindowWatch {
public:
    WindowWatch(const WindowPlan &plan, Samples &samples);

    /// False, with a line on stderr, when something did not happen in time.
    bool run();

private:
    bool show();
    bool hide();
    void clickCloseButton();
    bool waitFor(const std::function<bool(const xcb_generic_event_t &)> &wanted, const char *what);

    WindowPlan plan_;
    Samples &samples_;
    KeyPresses keys_;
    std::uint8_t damageNotify_ = 0;
};

} // namespace pindle::bench
