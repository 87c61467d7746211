#pragma once

#include "PindleMac/platform/EventPosting.h"
#include "PindleMac/platform/linux/eventposting/HeldKeys.h"
#include "PindleMac/platform/linux/eventposting/TerminalKinds.h"

#include <optional>

namespace pindle {

/// Keystrokes through XTEST. The one keystroke it can produce is Command+C, the copy chord of the
/// application in front; an event with another key is refused and one with other flags does
/// nothing. No flag but those of the event reaches the application: held and locked modifiers are
/// taken away for the time of the chord.
class X11EventPosting : public EventPosting {
public:
    /// Both must outlive it.
    X11EventPosting(XConnection &connection, XKeyboard &keyboard);
    ~X11EventPosting() override;
    Q_DISABLE_COPY_MOVE(X11EventPosting)

    std::optional<CGEventSource> CGEventSourceCreate(CGEventSourceStateID state) override;
    std::optional<CGEvent> CGEventCreateKeyboardEvent(const CGEventSource &source,
                                                      CGKeyCode virtualKey, bool keyDown) override;
    void CGEventSetFlags(CGEvent &event, CGEventFlags flags) override;
    void CGEventPost(CGEventTapLocation tap, const CGEvent &event) override;

private:
    struct Chord {
        xcb_keycode_t modifier = 0;
        xcb_keycode_t key = 0;
        XKeyboard::Locks locks;
    };

    std::optional<Chord> chordKeys(CopyChord chord) const;
    void pressChord();
    void releaseChord();
    void fake(uint8_t type, xcb_keycode_t key);

    XConnection &connection_;
    XKeyboard &keyboard_;
    HeldKeys held_;
    bool available_ = false;
    std::optional<Chord> pressed_;
};

} // namespace pindle
