#pragma once

#include <QList>
#include <QtGlobal>
#include <optional>

namespace pindle {

using OSStatus = int;
inline constexpr OSStatus noErr = 0;
inline constexpr OSStatus eventHotKeyExistsErr = -9878;
inline constexpr OSStatus eventInternalErr = -9868;

inline constexpr quint32 cmdKey = 0x100;
inline constexpr quint32 shiftKey = 0x200;

/// Four characters as a big-endian 32-bit code.
constexpr quint32 fourCharCode(const char (&c)[5]) {
    return quint32(quint8(c[0])) << 24 | quint32(quint8(c[1])) << 16 | quint32(quint8(c[2])) << 8 |
           quint32(quint8(c[3]));
}
inline constexpr quint32 kEventClassKeyboard = fourCharCode("keyb");
inline constexpr quint32 kEventHotKeyPressed = 5;

struct EventHotKeyID {
    quint32 signature = 0;
    quint32 id = 0;
    bool operator==(const EventHotKeyID &) const = default;
};
struct EventTypeSpec {
    quint32 eventClass = 0;
    quint32 eventKind = 0;
    bool operator==(const EventTypeSpec &) const = default;
};
/// Handles; zero is never given out for the last two.
struct EventTargetRef {
    quint64 id = 0;
};
struct EventHotKeyRef {
    quint64 id = 0;
    bool operator==(const EventHotKeyRef &) const = default;
};
struct EventHandlerRef {
    quint64 id = 0;
};
using EventHandlerCallback = OSStatus (*)(void *userData);

/// System-wide key combinations. All calls and all callbacks on the main thread.
class HotKeys {
public:
    virtual ~HotKeys() = default;

    virtual EventTargetRef GetApplicationEventTarget() = 0;

    /// `keyCode` is a position of the ANSI layout (kVK_ANSI_*), taken as the letter printed there:
    /// the combination follows that letter through layout changes. `cmdKey` is the Super key.
    /// Fills `ref` on success; leaves it absent when another program holds the combination.
    virtual OSStatus RegisterEventHotKey(quint32 keyCode, quint32 modifiers, EventHotKeyID identity,
                                         EventTargetRef target, quint32 options,
                                         std::optional<EventHotKeyRef> &ref) = 0;

    virtual OSStatus UnregisterEventHotKey(EventHotKeyRef ref) = 0;

    /// `callback` runs at each press of any registered combination; no keyboard grab is then held.
    virtual OSStatus InstallEventHandler(EventTargetRef target, EventHandlerCallback callback,
                                         const QList<EventTypeSpec> &types, void *userData,
                                         std::optional<EventHandlerRef> &ref) = 0;
};

} // namespace pindle
