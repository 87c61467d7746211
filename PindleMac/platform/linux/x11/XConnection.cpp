#include "PindleMac/platform/linux/x11/XConnection.h"

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>
#include <cstring>

namespace pindle {

std::unique_ptr<XConnection> XConnection::open() {
    int screenNumber = 0;
    xcb_connection_t *connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<XConnection>(new XConnection(connection, screenNumber));
}

XConnection::XConnection(xcb_connection_t *connection, int screenNumber)
    : connection_(connection) {
    auto it = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    for (; screenNumber > 0 && it.rem > 1; --screenNumber)
        xcb_screen_next(&it);
    screen_ = it.data;

    window_ = xcb_generate_id(connection_);
    const uint32_t events[] = {XCB_EVENT_MASK_PROPERTY_CHANGE};
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen_->root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      events);
    xcb_flush(connection_);

    notifier_ =
        new QSocketNotifier(xcb_get_file_descriptor(connection_), QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [this] { dispatch(); });
    // Waiting for a reply moves events from the socket into xcb's queue, where the notifier no
    // longer sees them; so the queue is looked at before each sleep of the event loop.
    if (auto *dispatcher = QAbstractEventDispatcher::instance()) {
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, [this] {
            dispatch();
            xcb_flush(connection_);
        });
    }
}

XConnection::~XConnection() {
    delete notifier_;
    xcb_disconnect(connection_);
}

xcb_atom_t XConnection::atom(const char *name) {
    const QByteArray key(name);
    if (const auto found = atoms_.constFind(key); found != atoms_.cend())
        return *found;
    const auto cookie = xcb_intern_atom(connection_, 0, static_cast<uint16_t>(key.size()), name);
    const auto reply = xcbReply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    const xcb_atom_t atom = reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    if (atom != XCB_ATOM_NONE)
        atoms_.insert(key, atom);
    return atom;
}

void XConnection::addHandler(Handler handler) {
    handlers_.push_back(std::move(handler));
}

xcb_window_t XConnection::activeWindow() {
    const auto cookie =
        xcb_get_property(connection_, 0, root(), atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 0, 1);
    const auto reply = xcbReply(xcb_get_property_reply(connection_, cookie, nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) < int(sizeof(xcb_window_t)))
        return XCB_NONE;
    xcb_window_t window = XCB_NONE;
    std::memcpy(&window, xcb_get_property_value(reply.get()), sizeof window);
    return window;
}

std::optional<quint32> XConnection::cardinal(xcb_window_t window, const char *name) {
    const auto cookie =
        xcb_get_property(connection_, 0, window, atom(name), XCB_ATOM_CARDINAL, 0, 1);
    const auto reply = xcbReply(xcb_get_property_reply(connection_, cookie, nullptr));
    quint32 number = 0;
    if (!reply || xcb_get_property_value_length(reply.get()) < int(sizeof number))
        return std::nullopt;
    std::memcpy(&number, xcb_get_property_value(reply.get()), sizeof number);
    return number;
}

bool XConnection::sameClient(quint32 a, quint32 b) const {
    const uint32_t client = ~xcb_get_setup(connection_)->resource_id_mask;
    return a != XCB_NONE && b != XCB_NONE && (a & client) == (b & client);
}

void XConnection::dispatch() {
    while (const auto event = xcbReply(xcb_poll_for_event(connection_))) {
        // A handler may add handlers; those see the next event.
        const std::size_t count = handlers_.size();
        for (std::size_t i = 0; i < count; ++i)
            handlers_[i](*event);
    }
    if (xcb_connection_has_error(connection_))
        notifier_->setEnabled(false);
}

} // namespace pindle
