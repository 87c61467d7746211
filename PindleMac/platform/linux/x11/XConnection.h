#pragma once

#include <QHash>
#include <QObject>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <xcb/xcb.h>

class QSocketNotifier;

namespace pindle {

/// The program's own connection to the X server, apart from the toolkit's, so that what it grabs,
/// watches and owns does not depend on which toolkit draws the windows. Events are delivered on the
/// thread that made it, from its event loop. Requests may be sent from any thread.
class XConnection : public QObject {
public:
    using Handler = std::function<void(const xcb_generic_event_t &event)>;

    /// Connects to the display named by DISPLAY; null when there is none.
    static std::unique_ptr<XConnection> open();
    ~XConnection() override;

    xcb_connection_t *xcb() const { return connection_; }
    xcb_window_t root() const { return screen_->root; }
    const xcb_screen_t &screen() const { return *screen_; }
    /// An unmapped window of this connection: requestor and owner of selections.
    xcb_window_t window() const { return window_; }

    /// The atom of that name, interned at first use.
    xcb_atom_t atom(const char *name);

    /// Every handler sees every event, in the order they were added.
    void addHandler(Handler handler);

    /// The window named by _NET_ACTIVE_WINDOW (EWMH), or XCB_NONE.
    xcb_window_t activeWindow();

    /// The first number of a property of that name and of type CARDINAL; absent where it is not
    /// set.
    std::optional<quint32> cardinal(xcb_window_t window, const char *name);

    /// Whether two resources belong to one client of the X server.
    bool sameClient(quint32 a, quint32 b) const;

private:
    XConnection(xcb_connection_t *connection, int screenNumber);
    void dispatch();

    xcb_connection_t *connection_;
    const xcb_screen_t *screen_ = nullptr;
    xcb_window_t window_ = XCB_NONE;
    QSocketNotifier *notifier_ = nullptr;
    QHash<QByteArray, xcb_atom_t> atoms_;
    std::deque<Handler> handlers_; ///< a deque: one may be added while another runs
};

/// Owner for what xcb's functions return and expect to be freed.
template<class T> using XcbReply = std::unique_ptr<T, decltype(&std::free)>;
template<class T> XcbReply<T> xcbReply(T *reply) {
    return XcbReply<T>(reply, &std::free);
}

} // namespace pindle
