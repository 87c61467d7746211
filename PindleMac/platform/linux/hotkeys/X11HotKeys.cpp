#include "PindleMac/platform/linux/hotkeys/X11HotKeys.h"

#include "PindleMac/platform/linux/x11/XConnection.h"
#include "PindleMac/platform/linux/x11/XKeyboard.h"

#include <algorithm>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace pindle {
namespace {

constexpr EventTypeSpec hotKeyPressed{kEventClassKeyboard, kEventHotKeyPressed};

} // namespace

X11HotKeys::X11HotKeys(XConnection &connection, XKeyboard &keyboard)
    : connection_(connection)
    , keyboard_(keyboard)
    , trigger_(connection, keyboard) {
    connection_.addHandler([this](const xcb_generic_event_t &event) {
        if ((event.response_type & 0x7f) == XCB_KEY_PRESS)
            pressed(reinterpret_cast<const xcb_key_press_event_t &>(event));
    });
    keyboard_.observe([this] { follow(); });
}

X11HotKeys::~X11HotKeys() {
    for (const Registration &registration : registrations_)
        ungrab(registration.grabs);
}

EventTargetRef X11HotKeys::GetApplicationEventTarget() {
    return EventTargetRef{1};
}

OSStatus X11HotKeys::RegisterEventHotKey(quint32 keyCode, quint32 modifiers, EventHotKeyID,
                                         EventTargetRef, quint32,
                                         std::optional<EventHotKeyRef> &ref) {
    ref.reset();
    for (const Registration &other : registrations_) {
        if (other.keyCode == keyCode && other.modifiers == modifiers)
            return eventHotKeyExistsErr;
    }
    auto grabs = grabsFor(keyCode, modifiers);
    if (grabs.empty())
        return eventInternalErr;
    if (!grab(grabs))
        return eventHotKeyExistsErr;
    ref = EventHotKeyRef{++lastId_};
    registrations_.push_back({*ref, keyCode, modifiers, std::move(grabs)});
    return noErr;
}

OSStatus X11HotKeys::UnregisterEventHotKey(EventHotKeyRef ref) {
    const auto found = std::find_if(registrations_.begin(), registrations_.end(),
                                    [&](const Registration &r) { return r.ref == ref; });
    if (found == registrations_.end())
        return eventInternalErr;
    ungrab(found->grabs);
    registrations_.erase(found);
    return noErr;
}

OSStatus X11HotKeys::InstallEventHandler(EventTargetRef, EventHandlerCallback callback,
                                         const QList<EventTypeSpec> &types, void *userData,
                                         std::optional<EventHandlerRef> &ref) {
    ref.reset();
    if (callback == nullptr || !types.contains(hotKeyPressed))
        return eventInternalErr;
    handlers_.push_back({callback, userData});
    ref = EventHandlerRef{++lastId_};
    return noErr;
}

void X11HotKeys::pressed(const xcb_key_press_event_t &press) {
    // The server has given this connection the keyboard with the press; as long as it keeps it,
    // neither a menu nor a keystroke sent to the application in front would get through.
    xcb_ungrab_keyboard(connection_.xcb(), XCB_CURRENT_TIME);
    xcb_flush(connection_.xcb());
    const bool ours = std::any_of(
        registrations_.begin(), registrations_.end(), [&](const Registration &registration) {
            return std::any_of(registration.grabs.begin(), registration.grabs.end(),
                               [&](const Grab &grab) { return grab.key == press.detail; });
        });
    if (!ours || trigger_.repeats(press))
        return;
    // A handler may install another or change the registrations.
    const auto handlers = handlers_;
    for (const Handler &handler : handlers)
        handler.callback(handler.userData);
}

void X11HotKeys::follow() {
    for (Registration &registration : registrations_) {
        auto wanted = grabsFor(registration.keyCode, registration.modifiers);
        if (wanted == registration.grabs)
            continue;
        ungrab(registration.grabs);
        if (!grab(wanted))
            wanted.clear();
        registration.grabs = std::move(wanted);
    }
}

std::vector<X11HotKeys::Grab> X11HotKeys::grabsFor(quint32 keyCode, quint32 modifiers) const {
    const auto letter = letterOfAnsiKey(keyCode);
    const uint16_t super = keyboard_.modifierOf({XKB_KEY_Super_L, XKB_KEY_Super_R});
    if (!letter || (modifiers & ~(cmdKey | shiftKey)) != 0 || ((modifiers & cmdKey) && super == 0))
        return {};
    uint16_t mask = 0;
    if (modifiers & cmdKey)
        mask = static_cast<uint16_t>(mask | super);
    if (modifiers & shiftKey)
        mask = static_cast<uint16_t>(mask | XCB_MOD_MASK_SHIFT);
    const auto locks = keyboard_.lockModifiers();
    const auto numLock = static_cast<uint16_t>(locks & ~XCB_MOD_MASK_LOCK);
    std::vector<uint16_t> variants{mask, static_cast<uint16_t>(mask | XCB_MOD_MASK_LOCK)};
    if (numLock != 0) {
        variants.push_back(static_cast<uint16_t>(mask | numLock));
        variants.push_back(static_cast<uint16_t>(mask | locks));
    }
    std::vector<Grab> grabs;
    for (const xcb_keycode_t key : keyboard_.keysOfLetter(*letter)) {
        for (const uint16_t variant : variants)
            grabs.push_back({key, variant});
    }
    return grabs;
}

bool X11HotKeys::grab(const std::vector<Grab> &grabs) {
    std::vector<xcb_void_cookie_t> cookies;
    cookies.reserve(grabs.size());
    for (const Grab &one : grabs) {
        cookies.push_back(xcb_grab_key_checked(connection_.xcb(), 1, connection_.root(),
                                               one.modifiers, one.key, XCB_GRAB_MODE_ASYNC,
                                               XCB_GRAB_MODE_ASYNC));
    }
    bool granted = true;
    for (const auto cookie : cookies) {
        // BadAccess: another program has it.
        if (xcbReply(xcb_request_check(connection_.xcb(), cookie)))
            granted = false;
    }
    if (!granted)
        ungrab(grabs);
    return granted;
}

void X11HotKeys::ungrab(const std::vector<Grab> &grabs) {
    for (const Grab &one : grabs)
        xcb_ungrab_key(connection_.xcb(), one.key, connection_.root(), one.modifiers);
    xcb_flush(connection_.xcb());
}

} // namespace pindle
