#include "PindleMac/platform/linux/windowserver/X11WindowServer.h"

#include "PindleMac/platform/linux/x11/XConnection.h"

#include <QByteArray>
#include <QGuiApplication>
#include <array>
#include <utility>
#include <xcb/xfixes.h>

namespace pindle {
namespace {

constexpr uint32_t everyDesktop = 0xFFFFFFFF; ///< _NET_WM_DESKTOP
constexpr uint32_t addState = 1;              ///< _NET_WM_STATE_ADD
constexpr uint32_t fromApplication = 1;       ///< source indication
constexpr uint32_t fromUser = 2;              ///< source indication: a direct action of the user
constexpr char clockProperty[] = "_PINDLE_CLOCK";

void tellManager(xcb_connection_t *xcb, xcb_window_t root, xcb_window_t window, xcb_atom_t type,
                 const std::array<uint32_t, 5> &data) {
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(xcb, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
}

/// The toolkit's connection, on which the window was mapped: what is sent on it arrives after that.
xcb_connection_t *toolkitConnection() {
    const auto *x11 = qGuiApp == nullptr
                          ? nullptr
                          : qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

int screenNumber(const XConnection &connection) {
    auto it = xcb_setup_roots_iterator(xcb_get_setup(connection.xcb()));
    for (int number = 0; it.rem > 0; xcb_screen_next(&it), ++number) {
        if (it.data->root == connection.root())
            return number;
    }
    return 0;
}

} // namespace

X11WindowServer::X11WindowServer(XConnection &connection, const SystemQuestions &questions)
    : connection_(connection)
    , questions_(questions) {
    connection_.addHandler([this](const xcb_generic_event_t &event) {
        if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
            return;
        const auto &notify = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (notify.window == connection_.window() && notify.atom == connection_.atom(clockProperty))
            activateAt(notify.time);
    });
    const QByteArray name = "_NET_WM_CM_S" + QByteArray::number(screenNumber(connection_));
    manager_ = connection_.atom(name.constData());
    xcb_connection_t *xcb = connection_.xcb();
    const auto *extension = xcb_get_extension_data(xcb, &xcb_xfixes_id);
    if (extension == nullptr || extension->present == 0)
        return;
    selectionEvent_ = static_cast<uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    // The version has to be agreed upon before any other request.
    xcb_discard_reply(xcb, xcb_xfixes_query_version(xcb, 5, 0).sequence);
    xcb_xfixes_select_selection_input(xcb, connection_.window(), manager_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(xcb);
    wasActive_ = managerPresent();
    connection_.addHandler([this](const xcb_generic_event_t &event) {
        if ((event.response_type & 0x7f) != selectionEvent_)
            return;
        const auto &notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
        if (notify.selection == manager_)
            compositorMayHaveChanged();
    });
}

void X11WindowServer::floatOnAllSpaces(quintptr window) {
    xcb_connection_t *toolkit = toolkitConnection();
    xcb_connection_t *xcb = toolkit == nullptr ? connection_.xcb() : toolkit;
    const auto id = static_cast<xcb_window_t>(window);
    const xcb_window_t root = connection_.root();
    const xcb_atom_t state = connection_.atom("_NET_WM_STATE");
    tellManager(xcb, root, id, connection_.atom("_NET_WM_DESKTOP"),
                {everyDesktop, fromApplication, 0, 0, 0});
    tellManager(xcb, root, id, state,
                {addState, connection_.atom("_NET_WM_STATE_ABOVE"), 0, fromApplication, 0});
    tellManager(xcb, root, id, state,
                {addState, connection_.atom("_NET_WM_STATE_SKIP_TASKBAR"),
                 connection_.atom("_NET_WM_STATE_SKIP_PAGER"), fromApplication, 0});
    xcb_flush(xcb);
}

void X11WindowServer::activateIgnoringOtherApps(quintptr window) {
    toActivate_ = static_cast<xcb_window_t>(window);
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_APPEND, connection_.window(),
                        connection_.atom(clockProperty), XCB_ATOM_INTEGER, 32, 0, nullptr);
    xcb_flush(connection_.xcb());
}

void X11WindowServer::activateAt(xcb_timestamp_t time) {
    const xcb_window_t window = std::exchange(toActivate_, XCB_NONE);
    if (window == XCB_NONE)
        return;
    xcb_connection_t *toolkit = toolkitConnection();
    xcb_connection_t *xcb = toolkit == nullptr ? connection_.xcb() : toolkit;
    const xcb_window_t root = connection_.root();
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, connection_.atom("_NET_WM_USER_TIME"),
                        XCB_ATOM_CARDINAL, 32, 1, &time);
    if (const auto desktop = connection_.cardinal(root, "_NET_CURRENT_DESKTOP")) {
        tellManager(xcb, root, window, connection_.atom("_NET_WM_DESKTOP"),
                    {*desktop, fromUser, 0, 0, 0});
    }
    tellManager(xcb, root, window, connection_.atom("_NET_ACTIVE_WINDOW"),
                {fromUser, time, 0, 0, 0});
    xcb_flush(xcb);
}

bool X11WindowServer::compositingActive() {
    // The server tells of changes where it can, so that a press need not wait for an answer.
    return selectionEvent_ != 0 ? wasActive_ : managerPresent();
}

bool X11WindowServer::managerPresent() const {
    xcb_connection_t *xcb = connection_.xcb();
    const auto owner = xcbReply(
        xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, manager_), nullptr));
    return owner && owner->owner != XCB_NONE;
}

void X11WindowServer::observeCompositing(std::function<void()> changed) {
    observers_.push_back(std::move(changed));
}

void X11WindowServer::compositorMayHaveChanged() {
    const bool active = managerPresent();
    if (active == wasActive_)
        return;
    wasActive_ = active;
    for (const auto &observer : observers_)
        observer();
}

bool X11WindowServer::systemQuestionShown() {
    return questions_.shown > 0;
}

} // namespace pindle
