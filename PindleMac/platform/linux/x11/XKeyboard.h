#pragma once

#include <QObject>
#include <QTimer>
#include <bitset>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <vector>
#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

namespace pindle {

class XConnection;

/// A set of X key codes.
using KeySet = std::bitset<256>;

/// The lower-case letter printed on a key of the ANSI layout, by its kVK_ANSI_* code.
std::optional<char> letterOfAnsiKey(quint32 keyCode);

/// How the keys of the X keyboard are mapped at the moment. It follows layout and group changes.
/// Main thread.
class XKeyboard : public QObject {
public:
    /// Modifier bits that are locked or latched rather than held, as an X modifier mask.
    struct Locks {
        uint8_t locked = 0;
        uint8_t latched = 0;
    };

    /// `connection` must outlive it.
    explicit XKeyboard(XConnection &connection);
    ~XKeyboard() override;

    /// The keys that yield `letter` ('a' to 'z') in the active layout; when none does, those of the
    /// user's other layouts; when no layout has it, the key where the ANSI keyboard has it.
    std::vector<xcb_keycode_t> keysOfLetter(char letter) const;
    /// Whether one of the user's layouts has the letter.
    bool hasLetter(char letter) const;
    /// The keys that yield `symbol` without modifiers, in any layout.
    std::vector<xcb_keycode_t> keysOfSymbol(xkb_keysym_t symbol) const;

    /// The X modifier bit of a key that yields one of the symbols; zero when there is none.
    uint16_t modifierOf(std::initializer_list<xkb_keysym_t> symbols) const;
    /// The bits of Caps Lock and Num Lock.
    uint16_t lockModifiers() const;
    /// Every key that acts as a modifier, without the locks.
    const KeySet &modifierKeys() const { return modifierKeys_; }

    /// Frees the keyboard of locked and latched modifiers other than Num Lock; returns what was
    /// set.
    Locks takeLocks();
    /// Locks again what takeLocks() returned.
    void putLocksBack(const Locks &locks);

    /// `changed` is called after the mapping or the active layout has changed; a burst of changes
    /// counts once.
    void observe(std::function<void()> changed);

    /// Whether a key that repeats is told as presses alone, so that a release says it is up
    /// (detectable auto-repeat of the X Keyboard Extension).
    bool releasesAreReal() const { return releasesAreReal_; }

    /// The key that fired a hot key and has not been seen released since; zero when there is none.
    xcb_keycode_t trigger() const { return trigger_; }
    void setTrigger(xcb_keycode_t key) { trigger_ = key; }

private:
    void selectEvents();
    void askForPressesOnly();
    void handle(const xcb_generic_event_t &event);
    void reload();
    void readModifiers();
    void notify();
    std::vector<xcb_keycode_t> keysInGroup(xkb_layout_index_t group, xkb_keysym_t symbol) const;
    bool yields(xcb_keycode_t key, xkb_keysym_t symbol) const;

    XConnection &connection_;
    std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context_;
    std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap_;
    std::vector<std::vector<xcb_keycode_t>> modifierMap_; ///< keys of each of the eight modifiers
    KeySet modifierKeys_;
    xkb_layout_index_t group_ = 0;
    uint8_t firstEvent_ = 0;
    bool releasesAreReal_ = false;
    xcb_keycode_t trigger_ = 0;
    QTimer settling_;
    std::vector<std::function<void()>> observers_;
};

} // namespace pindle
