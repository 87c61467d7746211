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
    bool compositingActive() override;
    void observeCompositing(std::function<void()> changed) override;
    bool systemQuestionShown() override;

private:
    bool managerPresent() const;
    void compositorMayHaveChanged();

    XConnection &connection_;
    const SystemQuestions &questions_;
    xcb_atom_t manager_ = XCB_ATOM_NONE; ///< the selection a compositing manager owns
    uint8_t selectionEvent_ = 0;
    bool wasActive_ = false;
    std::vector<std::function<void()>> observers_;
};

} // namespace pindle
