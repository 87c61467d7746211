#pragma once

#include "PindleMac/platform/linux/eventposting/TerminalKinds.h"

namespace pindle {

/// The keystroke that copies in the application the keyboard goes to; none when that application
/// is not known for certain. Looks at the active window and at the window with the keyboard, which
/// may belong to a program embedded in it. Takes a few milliseconds at most.
CopyChord frontCopyChord(XConnection &connection);

} // namespace pindle
