#pragma once

#include <QtGlobal>
#include <optional>

namespace pindle {

using CGKeyCode = quint16;
using CGEventFlags = quint64;

inline constexpr CGKeyCode kVK_ANSI_C = 8;
inline constexpr CGEventFlags kCGEventFlagMaskCommand = 0x100000;

enum class CGEventSourceStateID { kCGEventSourceStateHIDSystemState = 1 };
enum class CGEventTapLocation { kCGHIDEventTap = 0 };

struct CGEventSource {
    quint64 id = 0;
};

/// One synthetic key event; `flags` is the whole modifier state its receiver sees.
struct CGEvent {
    CGKeyCode virtualKey = 0;
    bool keyDown = false;
    CGEventFlags flags = 0;
};

/// Synthetic keystrokes for the application in front. Called on the main thread; nothing waits.
class EventPosting {
public:
    virtual ~EventPosting() = default;

    /// Absent when the desktop lets no program send keystrokes.
    virtual std::optional<CGEventSource> CGEventSourceCreate(CGEventSourceStateID state) = 0;

    /// Absent when the key cannot be produced.
    virtual std::optional<CGEvent>
    CGEventCreateKeyboardEvent(const CGEventSource &source, CGKeyCode virtualKey, bool keyDown) = 0;

    virtual void CGEventSetFlags(CGEvent &event, CGEventFlags flags) = 0;

    /// Fire and forget. Command+C is the copy chord of the application in front, whatever that is
    /// there; modifiers the user holds are kept from it and are back afterwards. A terminal never
    /// receives an interrupt, and one that knows no copy chord receives nothing.
    virtual void CGEventPost(CGEventTapLocation tap, const CGEvent &event) = 0;
};

} // namespace pindle
