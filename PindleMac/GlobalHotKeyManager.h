#pragma once

#include "PindleMac/AppSettingsStore.h"
#include "PindleMac/platform/HotKeys.h"

#include <functional>
#include <optional>

namespace pindle {

/// The one system-wide combination, Command + Shift + a letter. Main thread only.
class GlobalHotKeyManager {
public:
    using Handler = std::function<void()>;

    static GlobalHotKeyManager &shared();

    /// Makes the letter the active combination, in place of any earlier one, and `handler` what a
    /// press runs. A combination that another program holds stays without effect, silently.
    void registerHotKey(ShortcutKey shortcutKey, Handler handler);

private:
    friend struct TestAccess;
    explicit GlobalHotKeyManager(HotKeys &hotKeys)
        : hotKeys_(hotKeys) {}

    void unregisterCurrentHotKey();
    static OSStatus hotKeyPressed(void *userData);

    HotKeys &hotKeys_;
    std::optional<EventHotKeyRef> hotKeyRef_;
    std::optional<EventHandlerRef> eventHandler_; ///< installed once, never removed
    Handler handler_;
    ShortcutKey currentShortcutKey_ = ShortcutKey::e; ///< the letter last registered
};

} // namespace pindle
