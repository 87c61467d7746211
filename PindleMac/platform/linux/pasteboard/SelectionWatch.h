#pragma once

#include <QObject>
#include <QtGlobal>
#include <tuple>
#include <xcb/xcb.h>

namespace pindle {

/// Counts the changes of one selection and tells the server's time. It has a connection of its own:
/// its answers hold at the moment of the call, which means reading the events that are under way,
/// and nobody else's events may be delivered in the middle of such a call. Main thread.
class SelectionWatch : public QObject {
public:
    explicit SelectionWatch(const char *selection);
    ~SelectionWatch() override;

    /// Changes since construction (XFixes SelectionNotify): a new owner, the owner's window
    /// destroyed, its client gone. One round trip.
    qint64 changeCount();

    /// The server's current time (ICCCM 2.1: a zero-length append to a property), or
    /// XCB_CURRENT_TIME when the server cannot be asked. One round trip.
    xcb_timestamp_t serverTime();

private:
    using Change = std::tuple<uint8_t, xcb_window_t, xcb_timestamp_t>;

    xcb_atom_t intern(const char *name);
    void watch(const char *selection);
    void catchUp();
    void drain();
    void note(const xcb_generic_event_t &event);

    xcb_connection_t *connection_;
    xcb_window_t window_ = XCB_NONE;
    xcb_atom_t timeProperty_ = XCB_ATOM_NONE;
    uint8_t selectionNotify_ = 0; ///< 0 where the server has no XFixes
    qint64 count_ = 0;
    Change last_{};
    xcb_timestamp_t time_ = XCB_CURRENT_TIME;
};

} // namespace pindle
