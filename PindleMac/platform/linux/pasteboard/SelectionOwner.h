#pragma once

#include "PindleMac/platform/linux/pasteboard/PiecewiseSender.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

namespace pindle {

class XConnection;

/// Owns one selection and serves plain text from it (ICCCM 2): TARGETS, TIMESTAMP, MULTIPLE, the
/// UTF-8 targets, and STRING where the text is Latin-1. Main thread.
class SelectionOwner : public QObject {
public:
    SelectionOwner(XConnection &connection, xcb_atom_t selection);

    /// Takes the selection as of `time`, a time of the server; false when another client has taken
    /// it at a later time.
    bool own(const QString &text, xcb_timestamp_t time);

    /// Leaves the selection without an owner as of `time`, whoever has it.
    void clear(xcb_timestamp_t time);

private:
    /// A selection's content for one target, as a property of the requestor.
    struct Content {
        xcb_atom_t type;
        uint8_t format;
        QByteArray bytes;
    };

    bool takeOver(xcb_window_t owner, xcb_timestamp_t time);
    bool isOwner();
    void handle(const xcb_generic_event_t &event);
    void answer(const xcb_selection_request_event_t &request);
    bool put(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t target);
    bool putEach(xcb_window_t requestor, xcb_atom_t property);
    std::optional<Content> content(xcb_atom_t target);
    Content targets();

    XConnection &connection_;
    PiecewiseSender sender_;
    xcb_atom_t selection_;
    xcb_window_t window_;
    xcb_timestamp_t since_ = XCB_CURRENT_TIME;
    std::optional<QString> text_; ///< what is served; absent when the selection is not ours
};

} // namespace pindle
