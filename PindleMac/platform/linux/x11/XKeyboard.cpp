#include "PindleMac/platform/linux/x11/XKeyboard.h"

#include "PindleMac/platform/linux/x11/XConnection.h"

#include <array>
#include <chrono>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

// One of the header's members bears the name of a keyword.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace pindle {
namespace {

using namespace std::chrono_literals;

/// A layout change comes as a burst of events within a few milliseconds.
constexpr auto settlingTime = 50ms;

constexpr int modifierCount = 8;

struct AnsiKey {
    quint32 keyCode; ///< kVK_ANSI_*
    char letter;
    const char *position; ///< XKB's name of the position
};

constexpr std::array<AnsiKey, 26> ansiKeys = {{
    {0, 'a', "AC01"},  {1, 's', "AC02"},  {2, 'd', "AC03"},  {3, 'f', "AC04"},  {4, 'h', "AC06"},
    {5, 'g', "AC05"},  {6, 'z', "AB01"},  {7, 'x', "AB02"},  {8, 'c', "AB03"},  {9, 'v', "AB04"},
    {11, 'b', "AB05"}, {12, 'q', "AD01"}, {13, 'w', "AD02"}, {14, 'e', "AD03"}, {15, 'r', "AD04"},
    {16, 'y', "AD06"}, {17, 't', "AD05"}, {31, 'o', "AD09"}, {32, 'u', "AD07"}, {34, 'i', "AD08"},
    {35, 'p', "AD10"}, {37, 'l', "AC09"}, {38, 'j', "AC07"}, {40, 'k', "AC08"}, {45, 'n', "AB06"},
    {46, 'm', "AB07"},
}};

/// Latin letters are their own symbols.
constexpr xkb_keysym_t symbolOf(char letter) {
    return static_cast<unsigned char>(letter);
}

constexpr xcb_xkb_device_spec_t coreKeyboard = XCB_XKB_ID_USE_CORE_KBD;

} // namespace

std::optional<char> letterOfAnsiKey(quint32 keyCode) {
    for (const AnsiKey &key : ansiKeys) {
        if (key.keyCode == keyCode)
            return key.letter;
    }
    return std::nullopt;
}

XKeyboard::XKeyboard(XConnection &connection)
    : connection_(connection)
    , context_(xkb_context_new(static_cast<xkb_context_flags>(XKB_CONTEXT_NO_DEFAULT_INCLUDES |
                                                              XKB_CONTEXT_NO_ENVIRONMENT_NAMES)),
               &xkb_context_unref)
    , keymap_(nullptr, &xkb_keymap_unref) {
    if (!xkb_x11_setup_xkb_extension(
            connection_.xcb(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent_, nullptr))
        return;
    settling_.setSingleShot(true);
    settling_.setInterval(settlingTime);
    connect(&settling_, &QTimer::timeout, this, [this] {
        reload();
        notify();
    });
    selectEvents();
    askForPressesOnly();
    connection_.addHandler([this](const xcb_generic_event_t &event) { handle(event); });
    reload();
}

XKeyboard::~XKeyboard() = default;

void XKeyboard::selectEvents() {
    constexpr uint16_t mapParts =
        XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    constexpr uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY |
                                XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    xcb_xkb_select_events_details_t details = {};
    details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    // Modifiers change with every key; only the group is of interest.
    details.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
    details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    xcb_xkb_select_events_aux(connection_.xcb(), coreKeyboard, events, 0, 0, mapParts, mapParts,
                              &details);
    xcb_flush(connection_.xcb());
}

void XKeyboard::askForPressesOnly() {
    constexpr uint32_t flag = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    xcb_connection_t *xcb = connection_.xcb();
    const auto flags = xcbReply(xcb_xkb_per_client_flags_reply(
        xcb, xcb_xkb_per_client_flags(xcb, coreKeyboard, flag, flag, 0, 0, 0), nullptr));
    releasesAreReal_ = flags && (flags->value & flag) != 0;
}

void XKeyboard::handle(const xcb_generic_event_t &event) {
    if ((event.response_type & 0x7f) != firstEvent_)
        return;
    // The second byte of every XKB event tells its kind.
    if (event.pad0 != XCB_XKB_STATE_NOTIFY) {
        settling_.start();
        return;
    }
    const auto &state = reinterpret_cast<const xcb_xkb_state_notify_event_t &>(event);
    if (state.group == group_)
        return;
    group_ = state.group;
    notify();
}

void XKeyboard::reload() {
    xcb_connection_t *xcb = connection_.xcb();
    const int32_t device = xkb_x11_get_core_keyboard_device_id(xcb);
    keymap_.reset(device < 0 ? nullptr
                             : xkb_x11_keymap_new_from_device(context_.get(), xcb, device,
                                                              XKB_KEYMAP_COMPILE_NO_FLAGS));
    const auto state =
        xcbReply(xcb_xkb_get_state_reply(xcb, xcb_xkb_get_state(xcb, coreKeyboard), nullptr));
    group_ = state ? state->group : 0;
    readModifiers();
}

void XKeyboard::readModifiers() {
    xcb_connection_t *xcb = connection_.xcb();
    modifierMap_.assign(modifierCount, {});
    const auto map =
        xcbReply(xcb_get_modifier_mapping_reply(xcb, xcb_get_modifier_mapping(xcb), nullptr));
    if (map) {
        const xcb_keycode_t *keys = xcb_get_modifier_mapping_keycodes(map.get());
        for (std::size_t modifier = 0; modifier < modifierCount; ++modifier) {
            for (int i = 0; i < map->keycodes_per_modifier; ++i, ++keys) {
                if (*keys != 0)
                    modifierMap_[modifier].push_back(*keys);
            }
        }
    }
    modifierKeys_.reset();
    for (std::size_t modifier = 0; modifier < modifierCount; ++modifier) {
        if ((lockModifiers() & (1U << modifier)) != 0)
            continue;
        for (const xcb_keycode_t key : modifierMap_[modifier])
            modifierKeys_.set(key);
    }
}

std::vector<xcb_keycode_t> XKeyboard::keysInGroup(xkb_layout_index_t group,
                                                  xkb_keysym_t symbol) const {
    std::vector<xcb_keycode_t> found;
    const xkb_keycode_t last = xkb_keymap_max_keycode(keymap_.get());
    for (xkb_keycode_t key = xkb_keymap_min_keycode(keymap_.get()); key <= last && key < 256;
         ++key) {
        const xkb_layout_index_t groups = xkb_keymap_num_layouts_for_key(keymap_.get(), key);
        if (groups == 0)
            continue;
        const xkb_keysym_t *symbols = nullptr;
        const int count =
            xkb_keymap_key_get_syms_by_level(keymap_.get(), key, group % groups, 0, &symbols);
        if (count == 1 && symbols[0] == symbol)
            found.push_back(static_cast<xcb_keycode_t>(key));
    }
    return found;
}

std::vector<xcb_keycode_t> XKeyboard::keysOfLetter(char letter) const {
    if (!keymap_)
        return {};
    const auto symbol = symbolOf(letter);
    auto keys = keysInGroup(group_, symbol);
    if (keys.empty())
        keys = keysOfSymbol(symbol);
    for (const AnsiKey &key : ansiKeys) {
        if (!keys.empty() || key.letter != letter)
            continue;
        const xkb_keycode_t code = xkb_keymap_key_by_name(keymap_.get(), key.position);
        if (code != XKB_KEYCODE_INVALID && code < 256)
            keys.push_back(static_cast<xcb_keycode_t>(code));
    }
    return keys;
}

bool XKeyboard::hasLetter(char letter) const {
    return !keysOfSymbol(symbolOf(letter)).empty();
}

std::vector<xcb_keycode_t> XKeyboard::keysOfSymbol(xkb_keysym_t symbol) const {
    const xkb_layout_index_t groups = keymap_ ? xkb_keymap_num_layouts(keymap_.get()) : 0;
    for (xkb_layout_index_t group = 0; group < groups; ++group) {
        if (auto keys = keysInGroup(group, symbol); !keys.empty())
            return keys;
    }
    return {};
}

bool XKeyboard::yields(xcb_keycode_t key, xkb_keysym_t symbol) const {
    const xkb_layout_index_t groups = xkb_keymap_num_layouts_for_key(keymap_.get(), key);
    for (xkb_layout_index_t group = 0; group < groups; ++group) {
        const xkb_keysym_t *symbols = nullptr;
        const int count = xkb_keymap_key_get_syms_by_level(keymap_.get(), key, group, 0, &symbols);
        if (count == 1 && symbols[0] == symbol)
            return true;
    }
    return false;
}

uint16_t XKeyboard::modifierOf(std::initializer_list<xkb_keysym_t> symbols) const {
    if (!keymap_)
        return 0;
    for (std::size_t modifier = 0; modifier < modifierMap_.size(); ++modifier) {
        for (const xcb_keycode_t key : modifierMap_[modifier]) {
            for (const xkb_keysym_t symbol : symbols) {
                if (yields(key, symbol))
                    return static_cast<uint16_t>(1U << modifier);
            }
        }
    }
    return 0;
}

uint16_t XKeyboard::lockModifiers() const {
    return static_cast<uint16_t>(XCB_MOD_MASK_LOCK | modifierOf({XKB_KEY_Num_Lock}));
}

XKeyboard::Locks XKeyboard::takeLocks() {
    xcb_connection_t *xcb = connection_.xcb();
    const auto state =
        xcbReply(xcb_xkb_get_state_reply(xcb, xcb_xkb_get_state(xcb, coreKeyboard), nullptr));
    if (!state)
        return {};
    const auto kept = static_cast<uint8_t>(modifierOf({XKB_KEY_Num_Lock}));
    const Locks locks{static_cast<uint8_t>(state->lockedMods & ~kept),
                      static_cast<uint8_t>(state->latchedMods & ~kept)};
    if (locks.locked != 0 || locks.latched != 0)
        xcb_xkb_latch_lock_state(xcb, coreKeyboard, locks.locked, 0, 0, 0, locks.latched, 0, 0);
    return locks;
}

void XKeyboard::putLocksBack(const Locks &locks) {
    // A latch was meant for one key, and the hot key was that key.
    if (locks.locked != 0)
        xcb_xkb_latch_lock_state(connection_.xcb(), coreKeyboard, locks.locked, locks.locked, 0, 0,
                                 0, 0, 0);
}

void XKeyboard::observe(std::function<void()> changed) {
    observers_.push_back(std::move(changed));
}

void XKeyboard::notify() {
    for (const auto &observer : observers_)
        observer();
}

} // namespace pindle
