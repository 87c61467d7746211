#pragma once

#include "PindleMac/platform/linux/x11/XKeyDevices.h"

#include <QTimer>

namespace pindle {

/// Keeps the keys a user holds from the application in front for the time of a keystroke: the
/// modifiers and the key of the hot key are let go, and the modifiers that the user still holds are
/// pressed again afterwards. A key pressed again this way is let go once the user does so, so that
/// none is left down. Main thread.
class HeldKeys {
public:
    /// Both must outlive it.
    HeldKeys(XConnection &connection, XKeyboard &keyboard);
    ~HeldKeys();
    Q_DISABLE_COPY_MOVE(HeldKeys)

    /// Lets go of every modifier, of the hot key and of the keys in `alsoFree`.
    void lift(const KeySet &alsoFree);
    /// Those of the modifiers let go that the user still holds at this moment.
    KeySet stillHeld();
    /// Presses `keys` again, which are what stillHeld() has just told.
    void putBack(const KeySet &keys);

private:
    void press(const KeySet &keys);
    void release(const KeySet &keys);
    void releaseWhatUserLetGo();

    XConnection &connection_;
    XKeyboard &keyboard_;
    XKeyDevices devices_;
    KeySet lifted_;
    KeySet lent_; ///< pressed again in the user's place
    QTimer poll_;
};

} // namespace pindle
