#include "PindleMac/GlobalHotKeyManager.h"

#include "PindleMac/platform/Platform.h"

namespace pindle {

namespace {

constexpr EventHotKeyID hotKeyIdentity{fourCharCode("PNDL"), 1};
constexpr quint32 hotKeyModifiers = cmdKey | shiftKey;
constexpr quint32 noOptions = 0;

} // namespace

GlobalHotKeyManager &GlobalHotKeyManager::shared() {
    // Never destroyed: the installed callback refers to it until the process ends.
    static auto *manager = new GlobalHotKeyManager(Platform::shared().hotKeys);
    return *manager;
}

void GlobalHotKeyManager::registerHotKey(ShortcutKey shortcutKey, Handler handler) {
    handler_ = std::move(handler);
    currentShortcutKey_ = shortcutKey;
    unregisterCurrentHotKey();
    const auto target = hotKeys_.GetApplicationEventTarget();
    hotKeys_.RegisterEventHotKey(carbonKeyCode(shortcutKey), hotKeyModifiers, hotKeyIdentity,
                                 target, noOptions, hotKeyRef_);
    if (!eventHandler_) {
        hotKeys_.InstallEventHandler(target, &hotKeyPressed,
                                     {{kEventClassKeyboard, kEventHotKeyPressed}}, this,
                                     eventHandler_);
    }
}

void GlobalHotKeyManager::unregisterCurrentHotKey() {
    if (!hotKeyRef_)
        return;
    hotKeys_.UnregisterEventHotKey(*hotKeyRef_);
    hotKeyRef_.reset();
}

OSStatus GlobalHotKeyManager::hotKeyPressed(void *userData) {
    if (!userData)
        qFatal("a press of the hot key came without its manager");
    // A copy, so that the action survives a registration made by itself.
    const Handler handler = static_cast<GlobalHotKeyManager *>(userData)->handler_;
    if (handler)
        handler();
    return noErr;
}

} // namespace pindle
