#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

namespace pindle {

class XConnection;

/// The application in front, as the X server knows it.
struct ActiveApplication {
    xcb_window_t window = XCB_NONE; ///< its active window
    pid_t process = 0;              ///< 0 where it is not known
    bool ownsPrimary = false;       ///< the PRIMARY selection is this application's
};

/// Asks the X server (a few round trips). The process is that of the window's client (X-Resource
/// 1.2), else the one the window names (_NET_WM_PID). Main thread.
ActiveApplication activeApplication(XConnection &connection);

} // namespace pindle
