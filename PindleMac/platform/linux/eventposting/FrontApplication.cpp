#include "PindleMac/platform/linux/eventposting/FrontApplication.h"

#include "PindleMac/platform/linux/eventposting/PtyHolders.h"
#include "PindleMac/platform/linux/x11/XConnection.h"

#include <algorithm>

namespace pindle {
namespace {

using namespace std::chrono_literals;

/// Time for looking through the processes of an unknown program; beyond it, it gets no keys.
constexpr auto searchBudget = 50ms;

CopyChord chordOf(XConnection &connection, xcb_window_t window) {
    const auto type = windowClass(connection, window);
    if (type) {
        if (const auto chord = knownCopyChord(*type))
            return *chord;
    }
    if (runsElsewhere(connection, window))
        return CopyChord::none;
    const auto process = windowProcess(connection, window);
    if (!process)
        return CopyChord::none;
    QSet<qint64> others = clientProcesses(connection);
    others.remove(*process);
    return mayShowTerminal(*process, others, searchBudget) ? CopyChord::none : CopyChord::controlC;
}

/// The window with the keyboard, or XCB_NONE when it is no window of an application.
xcb_window_t focusWindow(XConnection &connection) {
    const auto reply = xcbReply(xcb_get_input_focus_reply(
        connection.xcb(), xcb_get_input_focus(connection.xcb()), nullptr));
    if (!reply || reply->focus == XCB_INPUT_FOCUS_POINTER_ROOT || reply->focus == connection.root())
        return XCB_NONE;
    return reply->focus;
}

} // namespace

CopyChord frontCopyChord(XConnection &connection) {
    const xcb_window_t active = connection.activeWindow();
    const xcb_window_t focus = focusWindow(connection);
    if (active == XCB_NONE || focus == XCB_NONE)
        return CopyChord::none;
    const CopyChord chord = chordOf(connection, active);
    if (chord == CopyChord::none || connection.sameClient(active, focus))
        return chord;
    return std::min(chord, chordOf(connection, focus));
}

} // namespace pindle
