#include "PindleMac/platform/linux/pasteboard/SelectionWatch.h"

#include "PindleMac/platform/linux/x11/XConnection.h"

#include <QSocketNotifier>
#include <cstring>
#include <xcb/xfixes.h>

namespace pindle {

SelectionWatch::SelectionWatch(const char *selection)
    : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_))
        return;
    window_ = xcb_generate_id(connection_);
    const uint32_t events[] = {XCB_EVENT_MASK_PROPERTY_CHANGE};
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    xcb_create_window(connection_, 0, window_, root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, events);
    timeProperty_ = intern("PINDLE_TIME");
    watch(selection);

    // Counting needs no wake-up; this only keeps events from piling up in the server.
    auto *notifier =
        new QSocketNotifier(xcb_get_file_descriptor(connection_), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        drain();
        if (xcb_connection_has_error(connection_))
            notifier->setEnabled(false);
    });
}

SelectionWatch::~SelectionWatch() {
    qDeleteAll(children());
    xcb_disconnect(connection_);
}

xcb_atom_t SelectionWatch::intern(const char *name) {
    const auto cookie =
        xcb_intern_atom(connection_, 0, static_cast<uint16_t>(std::strlen(name)), name);
    const auto reply = xcbReply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

void SelectionWatch::watch(const char *selection) {
    const auto *extension = xcb_get_extension_data(connection_, &xcb_xfixes_id);
    if (!extension || !extension->present)
        return;
    // The server serves no XFixes request before the versions have been exchanged.
    const auto version = xcbReply(xcb_xfixes_query_version_reply(
        connection_, xcb_xfixes_query_version(connection_, 1, 0), nullptr));
    if (!version)
        return;
    selectionNotify_ = static_cast<uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    xcb_xfixes_select_selection_input(connection_, window_, intern(selection),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    catchUp();
}

qint64 SelectionWatch::changeCount() {
    catchUp();
    return count_;
}

xcb_timestamp_t SelectionWatch::serverTime() {
    time_ = XCB_CURRENT_TIME;
    xcb_change_property(connection_, XCB_PROP_MODE_APPEND, window_, timeProperty_, XCB_ATOM_INTEGER,
                        32, 0, nullptr);
    catchUp();
    return time_;
}

/// Events are sent in order: whatever happened before the reply precedes it.
void SelectionWatch::catchUp() {
    xcbReply(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    drain();
}

void SelectionWatch::drain() {
    while (const auto event = xcbReply(xcb_poll_for_event(connection_)))
        note(*event);
}

void SelectionWatch::note(const xcb_generic_event_t &event) {
    const auto type = static_cast<uint8_t>(event.response_type & ~0x80);
    if (type == XCB_PROPERTY_NOTIFY) {
        time_ = reinterpret_cast<const xcb_property_notify_event_t &>(event).time;
    } else if (selectionNotify_ != 0 && type == selectionNotify_) {
        const auto &notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
        const Change change{notify.subtype, notify.owner, notify.selection_timestamp};
        if (change != last_)
            ++count_;
        last_ = change;
    }
}

} // namespace pindle
