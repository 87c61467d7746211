#include "PindleMac/platform/linux/accessibility/ActiveApplication.h"

#include "PindleMac/platform/linux/x11/XConnection.h"

#include <cstring>
#include <xcb/res.h>

namespace pindle {

namespace {

/// Process of the client that made a window, by the server's own knowledge; 0 when it has none.
pid_t clientProcess(XConnection &connection, xcb_window_t window) {
    const auto *extension = xcb_get_extension_data(connection.xcb(), &xcb_res_id);
    if (!extension || !extension->present)
        return 0;
    const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto cookie = xcb_res_query_client_ids(connection.xcb(), 1, &spec);
    const auto reply = xcbReply(xcb_res_query_client_ids_reply(connection.xcb(), cookie, nullptr));
    if (!reply)
        return 0;
    for (auto it = xcb_res_query_client_ids_ids_iterator(reply.get()); it.rem > 0;
         xcb_res_client_id_value_next(&it)) {
        if ((it.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0 &&
            xcb_res_client_id_value_value_length(it.data) > 0)
            return static_cast<pid_t>(*xcb_res_client_id_value_value(it.data));
    }
    return 0;
}

pid_t namedProcess(XConnection &connection, xcb_window_t window) {
    const auto cookie = xcb_get_property(connection.xcb(), 0, window,
                                         connection.atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 0, 1);
    const auto reply = xcbReply(xcb_get_property_reply(connection.xcb(), cookie, nullptr));
    uint32_t process = 0;
    if (reply && xcb_get_property_value_length(reply.get()) == int(sizeof process))
        std::memcpy(&process, xcb_get_property_value(reply.get()), sizeof process);
    return static_cast<pid_t>(process);
}

/// A window manager may still name a window that is gone, and the server gives the numbers of a
/// client that is gone to the next one.
bool exists(XConnection &connection, xcb_window_t window) {
    const auto cookie = xcb_get_geometry(connection.xcb(), window);
    return xcbReply(xcb_get_geometry_reply(connection.xcb(), cookie, nullptr)) != nullptr;
}

xcb_window_t selectionOwner(XConnection &connection, xcb_atom_t selection) {
    const auto cookie = xcb_get_selection_owner(connection.xcb(), selection);
    const auto reply = xcbReply(xcb_get_selection_owner_reply(connection.xcb(), cookie, nullptr));
    return reply ? reply->owner : static_cast<xcb_window_t>(XCB_NONE);
}

} // namespace

ActiveApplication activeApplication(XConnection &connection) {
    ActiveApplication active;
    active.window = connection.activeWindow();
    if (active.window == XCB_NONE || !exists(connection, active.window))
        return {};
    const pid_t client = clientProcess(connection, active.window);
    active.process = client != 0 ? client : namedProcess(connection, active.window);

    const xcb_window_t owner = selectionOwner(connection, XCB_ATOM_PRIMARY);
    if (owner != XCB_NONE)
        // One application may have several connections.
        active.ownsPrimary = connection.sameClient(owner, active.window) ||
                             (client != 0 && client == clientProcess(connection, owner));
    return active;
}

} // namespace pindle
