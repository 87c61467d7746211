#pragma once

#include "PindleMac/platform/WindowServer.h"
#include "PindleMac/platform/linux/SystemQuestions.h"

#include <vector>
#include <xcb/xcb.h>

namespace pindle {

class XConnection;

/// Window states through the window manager (EWMH) and the compositing manager's selection.
class X11WindowServer : public WindowServer {
public:
    /// Both must outlive it.
    X11WindowServer(XConnection &connection, const SystemQuestions &questions);

    void floatOnAllSpaces(quintptr window) override;
    /// Asks for the server's time and for the activation once it has come: a window manager refuses
    /// the keyboard to whoever asks with an old time.
    void activateIgnoringOtherApps(quintptr window) override;
    bool compositingActive() override;
    void observeCompositing(std::function<void()> changed) override;
    bool systemQuestionShown() override;

private:
    bool managerPresent() const;
    void compositorMayHaveChanged();
    void activateAt(xcb_timestamp_t time);

    XConnection &connection_;
    const SystemQuestions &questions_;
    xcb_atom_t manager_ = XCB_ATOM_NONE; ///< the selection a compositing manager owns
    uint8_t selectionEvent_ = 0;
    bool wasActive_ = false;
    xcb_window_t toActivate_ = XCB_NONE; ///< waits for the server's time
    std::vector<std::function<void()>> observers_;
};

} // namespace pindle
