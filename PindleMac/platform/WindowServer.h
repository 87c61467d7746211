#pragma once

#include <QtGlobal>
#include <functional>

namespace pindle {

/// What the toolkit cannot ask of the window system itself. Called on the main thread.
class WindowServer {
public:
    virtual ~WindowServer() = default;

    /// Shows a mapped window on every workspace, above others, outside task bars and pagers.
    /// `window` is the toolkit's native identifier.
    virtual void floatOnAllSpaces(quintptr window) = 0;

    /// Makes a shown window of this program the key window, in front of all programs' windows, on
    /// the present workspace and not minimized. To be used where the user has just asked for it.
    virtual void activateIgnoringOtherApps(quintptr window) = 0;

    /// Whether translucent pixels show what lies below them (a compositor runs).
    virtual bool compositingActive() = 0;

    /// `changed` is called when that answer changes.
    virtual void observeCompositing(std::function<void()> changed) = 0;

    /// Whether one of the system's own questions has the keyboard. A window that loses the
    /// keyboard to such a question still counts as the key window.
    virtual bool systemQuestionShown() = 0;
};

} // namespace pindle
