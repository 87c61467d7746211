#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

class QTimer;

namespace pindle {

class XConnection;

/// An owner that says nothing for this long is given up on.
inline constexpr std::chrono::milliseconds kSelectionSilence{250};
/// A transfer in pieces (INCR) is given up on after this, however lively it is.
inline constexpr std::chrono::milliseconds kSelectionTransferLimit{1000};
/// Longest text the program is prepared to read, in bytes.
inline constexpr qsizetype kSelectionSizeLimit = qsizetype{4} * 1024 * 1024;

/// Reads the text of selections (ICCCM 2.4) without waiting for their owners. Every read has a
/// requestor window of its own, so that an answer, however late, cannot be taken for another's.
/// Main thread.
class SelectionReader : public QObject {
public:
    using Completion = std::function<void(std::optional<QString>)>;

    explicit SelectionReader(XConnection &connection);
    ~SelectionReader() override;

    /// Asks for UTF-8, then for Latin-1. Completes once, from the event loop: absent when there is
    /// no owner or no text, when the text is too long, or after `silence` without an answer.
    void read(xcb_atom_t selection, std::chrono::milliseconds silence, Completion completion);

private:
    struct Request;
    using Requests = std::map<xcb_window_t, std::unique_ptr<Request>>;

    xcb_window_t takeWindow();
    void setAside(xcb_window_t window);
    void ask(xcb_window_t window, const Request &request);
    void handle(const xcb_generic_event_t &event);
    void answered(const xcb_selection_notify_event_t &event);
    void arrived(xcb_window_t window);
    void take(Requests::iterator request);
    void refused(Requests::iterator request);
    void finish(Requests::iterator request, std::optional<QString> text, bool windowIsFree);
    void dropLateAnswer(const xcb_selection_notify_event_t &event);
    std::optional<QString> decoded(xcb_atom_t type, const QByteArray &bytes);

    XConnection &connection_;
    xcb_atom_t property_;
    std::vector<xcb_atom_t> targets_;
    Requests requests_;
    std::vector<xcb_window_t> freeWindows_;
    std::vector<xcb_window_t> lateWindows_; ///< given up on, an answer may still come
};

} // namespace pindle
