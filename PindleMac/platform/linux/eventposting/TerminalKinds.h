#pragma once

#include "PindleMac/platform/linux/x11/XClients.h"

#include <optional>

namespace pindle {

/// The keystroke that copies, from the most cautious to the most usual.
enum class CopyChord {
    none,          ///< the program knows none, or a keystroke could do harm
    controlInsert, ///< terminals built on VTE: Ctrl+C would interrupt the program in them
    controlC,
};

/// The chord of programs known by their window class, compared without regard to case; absent for
/// all others.
std::optional<CopyChord> knownCopyChord(const XWindowClass &windowClass);

} // namespace pindle
