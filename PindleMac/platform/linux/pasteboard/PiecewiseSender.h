#pragma once

#include <QByteArray>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <map>
#include <utility>
#include <xcb/xcb.h>

namespace pindle {

class XConnection;

/// Text longer than this is sent in pieces of this size, in bytes.
inline constexpr qsizetype kSelectionPiece = qsizetype{128} * 1024;
/// A requestor that fetches no piece for this long has lost interest.
inline constexpr std::chrono::seconds kSelectionPatience{5};

/// Sends long content into other clients' properties piece by piece (ICCCM 2.7.2, INCR): the next
/// piece follows when the requestor has deleted the one before. Main thread.
class PiecewiseSender : public QObject {
public:
    explicit PiecewiseSender(XConnection &connection);

    void start(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
               const QByteArray &bytes);

private:
    struct Transfer {
        xcb_atom_t type = XCB_ATOM_NONE;
        QByteArray bytes;
        qsizetype sent = 0;
        std::chrono::steady_clock::time_point lastSign;
    };
    using Target = std::pair<xcb_window_t, xcb_atom_t>;

    void sendNext(const Target &target, Transfer &transfer);
    void forget(const Target &target);
    void forgetSilent();
    void listenTo(xcb_window_t requestor, bool listen);

    XConnection &connection_;
    std::map<Target, Transfer> transfers_;
    QTimer sweep_;
};

} // namespace pindle
