#pragma once

#include "PindleMac/platform/HotKeys.h"
#include "PindleMac/platform/linux/hotkeys/TriggerWatch.h"

#include <vector>
#include <xcb/xcb.h>

namespace pindle {

class XConnection;
class XKeyboard;

/// Hot keys as passive key grabs on the root window. They follow layout changes; a combination that
/// the new layout puts where another program has it stays silent until the next change.
class X11HotKeys : public HotKeys {
public:
    /// Both must outlive it.
    X11HotKeys(XConnection &connection, XKeyboard &keyboard);
    ~X11HotKeys() override;
    Q_DISABLE_COPY_MOVE(X11HotKeys)

    EventTargetRef GetApplicationEventTarget() override;
    /// Besides, eventHotKeyExistsErr when this object already holds the combination and
    /// eventInternalErr when the keyboard has no such key or modifier, or the key is no letter.
    OSStatus RegisterEventHotKey(quint32 keyCode, quint32 modifiers, EventHotKeyID identity,
                                 EventTargetRef target, quint32 options,
                                 std::optional<EventHotKeyRef> &ref) override;
    OSStatus UnregisterEventHotKey(EventHotKeyRef ref) override;
    OSStatus InstallEventHandler(EventTargetRef target, EventHandlerCallback callback,
                                 const QList<EventTypeSpec> &types, void *userData,
                                 std::optional<EventHandlerRef> &ref) override;

private:
    struct Grab {
        xcb_keycode_t key = 0;
        uint16_t modifiers = 0;
        bool operator==(const Grab &) const = default;
    };
    struct Registration {
        EventHotKeyRef ref;
        quint32 keyCode = 0;
        quint32 modifiers = 0;
        std::vector<Grab> grabs;
    };
    struct Handler {
        EventHandlerCallback callback = nullptr;
        void *userData = nullptr;
    };

    void pressed(const xcb_key_press_event_t &press);
    void follow();
    std::vector<Grab> grabsFor(quint32 keyCode, quint32 modifiers) const;
    bool grab(const std::vector<Grab> &grabs);
    void ungrab(const std::vector<Grab> &grabs);

    XConnection &connection_;
    XKeyboard &keyboard_;
    TriggerWatch trigger_;
    std::vector<Registration> registrations_;
    std::vector<Handler> handlers_;
    quint64 lastId_ = 0;
};

} // namespace pindle
