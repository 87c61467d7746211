#include "PindleMac/platform/linux/x11/XClients.h"

#include "PindleMac/platform/linux/x11/XConnection.h"

#include <QSysInfo>
#include <cstring>
#include <xcb/res.h>

namespace pindle {
namespace {

/// Levels of windows looked through for a class; window managers add two or three.
constexpr int deepestClimb = 8;

/// Longest text property read, in units of four bytes.
constexpr uint32_t longestText = 64;

QByteArray textProperty(XConnection &connection, xcb_window_t window, xcb_atom_t property) {
    const auto cookie = xcb_get_property(connection.xcb(), 0, window, property,
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, longestText);
    const auto reply = xcbReply(xcb_get_property_reply(connection.xcb(), cookie, nullptr));
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

xcb_window_t parentOf(XConnection &connection, xcb_window_t window) {
    const auto reply = xcbReply(
        xcb_query_tree_reply(connection.xcb(), xcb_query_tree(connection.xcb(), window), nullptr));
    return reply ? reply->parent : xcb_window_t(XCB_NONE);
}

/// Process ids of one client, or of all with XCB_NONE.
QSet<qint64> processesOf(XConnection &connection, quint32 resource) {
    QSet<qint64> pids;
    const auto *extension = xcb_get_extension_data(connection.xcb(), &xcb_res_id);
    if (extension == nullptr || extension->present == 0)
        return pids;
    const xcb_res_client_id_spec_t spec = {resource, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto reply = xcbReply(xcb_res_query_client_ids_reply(
        connection.xcb(), xcb_res_query_client_ids(connection.xcb(), 1, &spec), nullptr));
    if (!reply)
        return pids;
    auto value = xcb_res_query_client_ids_ids_iterator(reply.get());
    for (; value.rem > 0; xcb_res_client_id_value_next(&value)) {
        if (xcb_res_client_id_value_value_length(value.data) == 1)
            pids.insert(*xcb_res_client_id_value_value(value.data));
    }
    return pids;
}

std::optional<qint64> namedProcess(XConnection &connection, xcb_window_t window) {
    const auto cookie = xcb_get_property(connection.xcb(), 0, window,
                                         connection.atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 0, 1);
    const auto reply = xcbReply(xcb_get_property_reply(connection.xcb(), cookie, nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) != int(sizeof(quint32)))
        return std::nullopt;
    quint32 pid = 0;
    std::memcpy(&pid, xcb_get_property_value(reply.get()), sizeof pid);
    return pid;
}

QByteArray hostPart(const QByteArray &name) {
    const qsizetype end = name.indexOf('\0');
    const QByteArray host = end < 0 ? name : name.left(end);
    return host.split('.').constFirst().toLower();
}

} // namespace

std::optional<XWindowClass> windowClass(XConnection &connection, xcb_window_t window) {
    for (int level = 0; level < deepestClimb && window != XCB_NONE && window != connection.root();
         ++level) {
        const QByteArray text = textProperty(connection, window, XCB_ATOM_WM_CLASS);
        if (const auto parts = text.split('\0'); parts.size() >= 2)
            return XWindowClass{parts[0], parts[1]};
        window = parentOf(connection, window);
    }
    return std::nullopt;
}

std::optional<qint64> windowProcess(XConnection &connection, xcb_window_t window) {
    const auto pids = processesOf(connection, window);
    if (!pids.isEmpty() && *pids.cbegin() > 0)
        return *pids.cbegin();
    return namedProcess(connection, window);
}

QSet<qint64> clientProcesses(XConnection &connection) {
    return processesOf(connection, XCB_NONE);
}

bool runsElsewhere(XConnection &connection, xcb_window_t window) {
    const QByteArray machine = textProperty(connection, window, XCB_ATOM_WM_CLIENT_MACHINE);
    return !machine.isEmpty() &&
           hostPart(machine) != hostPart(QSysInfo::machineHostName().toUtf8());
}

} // namespace pindle
