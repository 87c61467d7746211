#include "PindleMac/platform/linux/pasteboard/SelectionReader.h"

#include "PindleMac/platform/linux/x11/XConnection.h"

#include <QPointer>
#include <QTimer>
#include <algorithm>

namespace pindle {

namespace {
/// Requestors whose owner never answered; the oldest are destroyed beyond this number.
constexpr std::size_t kLateWindowLimit = 32;
} // namespace

struct SelectionReader::Request {
    xcb_atom_t selection;
    std::chrono::milliseconds silence;
    Completion completion;
    std::size_t target = 0; ///< index of the one asked for
    bool inPieces = false;
    QByteArray bytes;
    QTimer *silent = nullptr;
    QTimer *limit = nullptr;
};

SelectionReader::SelectionReader(XConnection &connection)
    : connection_(connection)
    , property_(connection.atom("PINDLE_SELECTION"))
    , targets_{connection.atom("UTF8_STRING"), connection.atom("text/plain;charset=utf-8"),
               XCB_ATOM_STRING} {
    connection.addHandler([self = QPointer(this)](const xcb_generic_event_t &event) {
        if (self)
            self->handle(event);
    });
}

SelectionReader::~SelectionReader() = default;

void SelectionReader::read(xcb_atom_t selection, std::chrono::milliseconds silence,
                           Completion completion) {
    const xcb_window_t window = takeWindow();
    auto request = std::make_unique<Request>();
    request->selection = selection;
    request->silence = silence;
    request->completion = std::move(completion);
    const auto giveUp = [this, window] {
        if (const auto found = requests_.find(window); found != requests_.end())
            finish(found, std::nullopt, false);
    };
    const auto startTimer = [this, giveUp](std::chrono::milliseconds time) {
        auto *timer = new QTimer(this);
        timer->setTimerType(Qt::PreciseTimer);
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, giveUp);
        timer->start(time);
        return timer;
    };
    request->silent = startTimer(silence);
    request->limit = startTimer(std::max(silence, kSelectionTransferLimit));
    ask(window, *request);
    requests_.emplace(window, std::move(request));
}

xcb_window_t SelectionReader::takeWindow() {
    if (!freeWindows_.empty()) {
        const xcb_window_t window = freeWindows_.back();
        freeWindows_.pop_back();
        return window;
    }
    const xcb_window_t window = xcb_generate_id(connection_.xcb());
    const uint32_t events[] = {XCB_EVENT_MASK_PROPERTY_CHANGE};
    xcb_create_window(connection_.xcb(), 0, window, connection_.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, events);
    return window;
}

/// The window stays, since many programs end when the requestor of a transfer has vanished.
void SelectionReader::setAside(xcb_window_t window) {
    lateWindows_.push_back(window);
    if (lateWindows_.size() <= kLateWindowLimit)
        return;
    xcb_destroy_window(connection_.xcb(), lateWindows_.front());
    lateWindows_.erase(lateWindows_.begin());
}

void SelectionReader::ask(xcb_window_t window, const Request &request) {
    xcb_convert_selection(connection_.xcb(), window, request.selection, targets_[request.target],
                          property_, XCB_CURRENT_TIME);
    xcb_flush(connection_.xcb());
}

void SelectionReader::handle(const xcb_generic_event_t &event) {
    const int type = event.response_type & ~0x80;
    if (type == XCB_SELECTION_NOTIFY) {
        answered(reinterpret_cast<const xcb_selection_notify_event_t &>(event));
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto &notify = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (notify.atom == property_ && notify.state == XCB_PROPERTY_NEW_VALUE)
            arrived(notify.window);
    }
}

void SelectionReader::answered(const xcb_selection_notify_event_t &event) {
    const auto request = requests_.find(event.requestor);
    if (request == requests_.end())
        dropLateAnswer(event);
    else if (event.property == XCB_ATOM_NONE)
        refused(request);
    else if (!request->second->inPieces)
        take(request);
}

void SelectionReader::arrived(xcb_window_t window) {
    // Outside a transfer in pieces the property is read when the owner says that it is complete.
    const auto request = requests_.find(window);
    if (request != requests_.end() && request->second->inPieces)
        take(request);
}

/// Reads what the owner has put into the property; deleting it asks for the next piece.
void SelectionReader::take(Requests::iterator request) {
    Request &record = *request->second;
    const auto cookie =
        xcb_get_property(connection_.xcb(), 1, request->first, property_, XCB_GET_PROPERTY_TYPE_ANY,
                         0, static_cast<uint32_t>(kSelectionSizeLimit / 4));
    const auto reply = xcbReply(xcb_get_property_reply(connection_.xcb(), cookie, nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE)
        return record.inPieces ? void() : refused(request);
    if (reply->bytes_after > 0) {
        xcb_delete_property(connection_.xcb(), request->first, property_);
        return finish(request, std::nullopt, !record.inPieces);
    }
    if (!record.inPieces && reply->type == connection_.atom("INCR")) {
        record.inPieces = true;
        record.silent->start(record.silence);
        xcb_flush(connection_.xcb());
        return;
    }
    const int length = xcb_get_property_value_length(reply.get());
    record.bytes.append(static_cast<const char *>(xcb_get_property_value(reply.get())), length);
    if (record.bytes.size() > kSelectionSizeLimit)
        return finish(request, std::nullopt, false);
    if (record.inPieces && length > 0) {
        record.silent->start(record.silence);
        xcb_flush(connection_.xcb());
        return;
    }
    if (const auto text = decoded(reply->type, record.bytes))
        finish(request, text, true);
    else
        refused(request);
}

/// The time the owner has to say something is not granted anew for the next target.
void SelectionReader::refused(Requests::iterator request) {
    Request &record = *request->second;
    if (++record.target == targets_.size())
        return finish(request, std::nullopt, true);
    record.inPieces = false;
    record.bytes.clear();
    ask(request->first, record);
}

void SelectionReader::finish(Requests::iterator request, std::optional<QString> text,
                             bool windowIsFree) {
    const xcb_window_t window = request->first;
    const auto record = std::move(request->second);
    requests_.erase(request);
    if (windowIsFree)
        freeWindows_.push_back(window);
    else
        setAside(window);
    // One of them may be what called.
    for (QTimer *timer : {record->silent, record->limit}) {
        timer->stop();
        timer->deleteLater();
    }
    record->completion(std::move(text));
}

void SelectionReader::dropLateAnswer(const xcb_selection_notify_event_t &event) {
    const auto late = std::find(lateWindows_.begin(), lateWindows_.end(), event.requestor);
    if (late == lateWindows_.end())
        return;
    // A transfer in pieces is not taken up: its owner would send all of it for nothing.
    const auto cookie =
        xcb_get_property(connection_.xcb(), 0, *late, property_, XCB_GET_PROPERTY_TYPE_ANY, 0, 0);
    const auto reply = xcbReply(xcb_get_property_reply(connection_.xcb(), cookie, nullptr));
    if (reply && reply->type == connection_.atom("INCR"))
        return;
    xcb_delete_property(connection_.xcb(), *late, property_);
    freeWindows_.push_back(*late);
    lateWindows_.erase(late);
}

std::optional<QString> SelectionReader::decoded(xcb_atom_t type, const QByteArray &bytes) {
    // Some toolkits count the terminator in.
    QByteArray text = bytes;
    while (text.endsWith('\0'))
        text.chop(1);
    if (type == targets_[0] || type == targets_[1] || type == connection_.atom("text/plain"))
        return QString::fromUtf8(text);
    if (type == XCB_ATOM_STRING)
        return QString::fromLatin1(text);
    return std::nullopt;
}

} // namespace pindle
