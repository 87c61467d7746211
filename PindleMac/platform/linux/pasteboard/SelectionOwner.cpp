#include "PindleMac/platform/linux/pasteboard/SelectionOwner.h"

#include "PindleMac/platform/linux/x11/XConnection.h"

#include <QPointer>
#include <algorithm>
#include <cstring>

namespace pindle {

namespace {

/// Longest list of targets answered in one MULTIPLE request.
constexpr std::size_t kMultipleLimit = 64;

bool isLatin1(const QString &text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() <= 0xFF; });
}

template<class T> QByteArray bytesOf(const T *values, std::size_t count) {
    return {reinterpret_cast<const char *>(values), static_cast<qsizetype>(count * sizeof(T))};
}

} // namespace

SelectionOwner::SelectionOwner(XConnection &connection, xcb_atom_t selection)
    : connection_(connection)
    , sender_(connection)
    , selection_(selection)
    , window_(xcb_generate_id(connection.xcb())) {
    xcb_create_window(connection.xcb(), 0, window_, connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    connection.addHandler([self = QPointer(this)](const xcb_generic_event_t &event) {
        if (self)
            self->handle(event);
    });
}

bool SelectionOwner::own(const QString &text, xcb_timestamp_t time) {
    text_ = text;
    since_ = time;
    if (!takeOver(window_, time))
        text_.reset();
    return text_.has_value();
}

void SelectionOwner::clear(xcb_timestamp_t time) {
    if (takeOver(XCB_NONE, time))
        text_.reset();
}

bool SelectionOwner::takeOver(xcb_window_t owner, xcb_timestamp_t time) {
    xcb_set_selection_owner(connection_.xcb(), owner, selection_, time);
    return owner == XCB_NONE ? !isOwner() : isOwner();
}

bool SelectionOwner::isOwner() {
    const auto cookie = xcb_get_selection_owner(connection_.xcb(), selection_);
    const auto reply = xcbReply(xcb_get_selection_owner_reply(connection_.xcb(), cookie, nullptr));
    return reply && reply->owner == window_;
}

void SelectionOwner::handle(const xcb_generic_event_t &event) {
    const int type = event.response_type & ~0x80;
    if (type == XCB_SELECTION_REQUEST) {
        const auto &request = reinterpret_cast<const xcb_selection_request_event_t &>(event);
        if (request.owner == window_ && request.selection == selection_)
            answer(request);
    } else if (type == XCB_SELECTION_CLEAR) {
        const auto &clear = reinterpret_cast<const xcb_selection_clear_event_t &>(event);
        // It may tell of an ownership before the present one.
        if (clear.owner == window_ && clear.selection == selection_ && !isOwner())
            text_.reset();
    }
}

void SelectionOwner::answer(const xcb_selection_request_event_t &request) {
    // Clients from before ICCCM name no property and expect the target's name there.
    xcb_atom_t property = request.property == XCB_ATOM_NONE ? request.target : request.property;
    const bool isStale = request.time != XCB_CURRENT_TIME && request.time < since_;
    bool isDone = false;
    if (text_ && !isStale) {
        isDone = request.target == connection_.atom("MULTIPLE")
                     ? request.property != XCB_ATOM_NONE && putEach(request.requestor, property)
                     : put(request.requestor, property, request.target);
    }
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = isDone ? property : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    char event[32] = {}; // the server reads all 32 bytes
    std::memcpy(event, &notify, sizeof notify);
    xcb_send_event(connection_.xcb(), 0, request.requestor, 0, event);
    xcb_flush(connection_.xcb());
}

bool SelectionOwner::put(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t target) {
    const auto found = content(target);
    if (!found)
        return false;
    if (found->bytes.size() > kSelectionPiece) {
        sender_.start(requestor, property, found->type, found->bytes);
        return true;
    }
    const auto count = static_cast<uint32_t>(found->bytes.size() / (found->format / 8));
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, requestor, property, found->type,
                        found->format, count, found->bytes.constData());
    return true;
}

/// MULTIPLE: the property lists pairs of target and property; a target that cannot be served gets
/// its property replaced by None.
bool SelectionOwner::putEach(xcb_window_t requestor, xcb_atom_t property) {
    const auto cookie =
        xcb_get_property(connection_.xcb(), 0, requestor, property, XCB_GET_PROPERTY_TYPE_ANY, 0,
                         static_cast<uint32_t>(2 * kMultipleLimit));
    const auto reply = xcbReply(xcb_get_property_reply(connection_.xcb(), cookie, nullptr));
    if (!reply || reply->format != 32)
        return false;
    std::vector<xcb_atom_t> pairs(reply->value_len);
    if (pairs.size() < 2 || pairs.size() % 2 != 0)
        return false;
    std::memcpy(pairs.data(), xcb_get_property_value(reply.get()), pairs.size() * sizeof pairs[0]);
    const xcb_atom_t multiple = connection_.atom("MULTIPLE");
    for (std::size_t i = 0; i < pairs.size(); i += 2) {
        if (pairs[i] == multiple || pairs[i + 1] == XCB_ATOM_NONE ||
            !put(requestor, pairs[i + 1], pairs[i]))
            pairs[i + 1] = XCB_ATOM_NONE;
    }
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, requestor, property, reply->type,
                        32, static_cast<uint32_t>(pairs.size()), pairs.data());
    return true;
}

std::optional<SelectionOwner::Content> SelectionOwner::content(xcb_atom_t target) {
    if (target == connection_.atom("TARGETS"))
        return targets();
    if (target == connection_.atom("TIMESTAMP"))
        return Content{XCB_ATOM_INTEGER, 32, bytesOf(&since_, 1)};
    if (target == XCB_ATOM_STRING && isLatin1(*text_))
        return Content{target, 8, text_->toLatin1()};
    for (const char *name : {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain"}) {
        if (target == connection_.atom(name))
            return Content{target, 8, text_->toUtf8()};
    }
    return std::nullopt;
}

SelectionOwner::Content SelectionOwner::targets() {
    std::vector<xcb_atom_t> atoms;
    for (const char *name : {"TARGETS", "TIMESTAMP", "MULTIPLE", "UTF8_STRING",
                             "text/plain;charset=utf-8", "text/plain"})
        atoms.push_back(connection_.atom(name));
    if (isLatin1(*text_))
        atoms.push_back(XCB_ATOM_STRING);
    return {XCB_ATOM_ATOM, 32, bytesOf(atoms.data(), atoms.size())};
}

} // namespace pindle
