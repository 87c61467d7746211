#pragma once

#include <QByteArray>
#include <QSet>
#include <optional>
#include <xcb/xcb.h>

namespace pindle {

class XConnection;

/// The WM_CLASS of a window (ICCCM 4.1.2.5).
struct XWindowClass {
    QByteArray instance;
    QByteArray name;
    bool operator==(const XWindowClass &) const = default;
};

/// The class of `window` or of the nearest window around it that has one.
std::optional<XWindowClass> windowClass(XConnection &connection, xcb_window_t window);

/// The process that made `window`: the one the X server talks to (X-Resource 1.2), else the one the
/// window names itself (_NET_WM_PID, EWMH). Absent when neither is known.
std::optional<qint64> windowProcess(XConnection &connection, xcb_window_t window);

/// Every process with a connection to the X server; empty where the server does not tell.
QSet<qint64> clientProcesses(XConnection &connection);

/// Whether the window says that its program runs on another machine (WM_CLIENT_MACHINE).
bool runsElsewhere(XConnection &connection, xcb_window_t window);

} // namespace pindle
