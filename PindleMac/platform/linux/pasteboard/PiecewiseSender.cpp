#include "PindleMac/platform/linux/pasteboard/PiecewiseSender.h"

#include "PindleMac/platform/linux/x11/XConnection.h"

#include <QPointer>
#include <algorithm>
#include <vector>

namespace pindle {

PiecewiseSender::PiecewiseSender(XConnection &connection)
    : connection_(connection) {
    sweep_.setInterval(kSelectionPatience);
    connect(&sweep_, &QTimer::timeout, this, [this] { forgetSilent(); });
    connection.addHandler([self = QPointer(this)](const xcb_generic_event_t &event) {
        if (!self || (event.response_type & ~0x80) != XCB_PROPERTY_NOTIFY)
            return;
        const auto &notify = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        const auto found = self->transfers_.find({notify.window, notify.atom});
        if (notify.state == XCB_PROPERTY_DELETE && found != self->transfers_.end())
            self->sendNext(found->first, found->second);
    });
}

void PiecewiseSender::start(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                            const QByteArray &bytes) {
    listenTo(requestor, true);
    transfers_[{requestor, property}] = {type, bytes, 0, std::chrono::steady_clock::now()};
    const auto size = static_cast<uint32_t>(bytes.size());
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, requestor, property,
                        connection_.atom("INCR"), 32, 1, &size);
    sweep_.start();
}

/// A piece without bytes ends the transfer.
void PiecewiseSender::sendNext(const Target &target, Transfer &transfer) {
    const qsizetype length = std::min(kSelectionPiece, transfer.bytes.size() - transfer.sent);
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, target.first, target.second,
                        transfer.type, 8, static_cast<uint32_t>(length),
                        transfer.bytes.constData() + transfer.sent);
    transfer.sent += length;
    transfer.lastSign = std::chrono::steady_clock::now();
    if (length == 0)
        forget(target);
    xcb_flush(connection_.xcb());
}

void PiecewiseSender::forget(const Target &target) {
    const xcb_window_t requestor = target.first;
    transfers_.erase(target);
    const bool hasOthers =
        std::any_of(transfers_.begin(), transfers_.end(),
                    [&](const auto &other) { return other.first.first == requestor; });
    if (!hasOthers)
        listenTo(requestor, false);
    if (transfers_.empty())
        sweep_.stop();
}

void PiecewiseSender::forgetSilent() {
    const auto limit = std::chrono::steady_clock::now() - kSelectionPatience;
    std::vector<Target> silent;
    for (const auto &[target, transfer] : transfers_) {
        if (transfer.lastSign < limit)
            silent.push_back(target);
    }
    for (const Target &target : silent)
        forget(target);
    xcb_flush(connection_.xcb());
}

void PiecewiseSender::listenTo(xcb_window_t requestor, bool listen) {
    // A window of this very connection listens for itself, and this would replace what it chose.
    if (connection_.sameClient(requestor, connection_.window()))
        return;
    const uint32_t events[] = {listen ? static_cast<uint32_t>(XCB_EVENT_MASK_PROPERTY_CHANGE) : 0u};
    xcb_change_window_attributes(connection_.xcb(), requestor, XCB_CW_EVENT_MASK, events);
}

} // namespace pindle
