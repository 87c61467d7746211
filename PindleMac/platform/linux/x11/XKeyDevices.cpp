#include "PindleMac/platform/linux/x11/XKeyDevices.h"

#include "PindleMac/platform/linux/x11/XConnection.h"

#include <algorithm>
#include <string_view>
#include <vector>
#include <xcb/xinput.h>

namespace pindle {
namespace {

constexpr std::size_t bitsPerByte = 8;
constexpr std::size_t keymapBytes = 32;

/// What the server calls the devices through which programs press keys.
constexpr std::string_view xtestSuffix = "XTEST keyboard";

KeySet keySet(const uint8_t *bytes) {
    KeySet set;
    for (std::size_t key = 0; key < keymapBytes * bitsPerByte; ++key)
        set[key] = (unsigned{bytes[key / bitsPerByte]} >> (key % bitsPerByte) & 1U) != 0;
    return set;
}

bool isRealKeyboard(xcb_input_xi_device_info_t *device) {
    const std::string_view name(
        xcb_input_xi_device_info_name(device),
        static_cast<std::size_t>(xcb_input_xi_device_info_name_length(device)));
    return device->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD && device->enabled != 0 &&
           !name.ends_with(xtestSuffix);
}

KeySet keysOf(xcb_input_query_device_state_reply_t *state) {
    KeySet keys;
    auto classes = xcb_input_query_device_state_classes_iterator(state);
    for (; classes.rem > 0; xcb_input_input_state_next(&classes)) {
        if (classes.data->class_id != XCB_INPUT_INPUT_CLASS_KEY)
            continue;
        const auto *key = reinterpret_cast<const xcb_input_key_state_t *>(classes.data);
        keys |= keySet(key->keys);
    }
    return keys;
}

} // namespace

XKeyDevices::XKeyDevices(XConnection &connection)
    : connection_(connection) {
    xcb_connection_t *xcb = connection_.xcb();
    const auto *extension = xcb_get_extension_data(xcb, &xcb_input_id);
    if (extension == nullptr || extension->present == 0)
        return;
    // From 2.1 on, raw events arrive whoever has grabbed the keyboard.
    const auto version = xcbReply(
        xcb_input_xi_query_version_reply(xcb, xcb_input_xi_query_version(xcb, 2, 2), nullptr));
    if (version && (version->major_version > 2 || version->minor_version >= 1))
        opcode_ = extension->major_opcode;
}

void XKeyDevices::findKeyboards() {
    keyboards_.clear();
    if (opcode_ == 0)
        return;
    xcb_connection_t *xcb = connection_.xcb();
    const auto devices = xcbReply(xcb_input_xi_query_device_reply(
        xcb, xcb_input_xi_query_device(xcb, XCB_INPUT_DEVICE_ALL), nullptr));
    if (!devices)
        return;
    auto device = xcb_input_xi_query_device_infos_iterator(devices.get());
    for (; device.rem > 0; xcb_input_xi_device_info_next(&device)) {
        if (isRealKeyboard(device.data))
            keyboards_.push_back(device.data->deviceid);
    }
}

KeySet XKeyDevices::physicallyDown() {
    findKeyboards();
    xcb_connection_t *xcb = connection_.xcb();
    std::vector<xcb_input_query_device_state_cookie_t> cookies;
    for (const uint16_t keyboard : keyboards_)
        cookies.push_back(xcb_input_query_device_state(xcb, static_cast<uint8_t>(keyboard)));
    KeySet keys;
    for (const auto cookie : cookies) {
        if (const auto state = xcbReply(xcb_input_query_device_state_reply(xcb, cookie, nullptr)))
            keys |= keysOf(state.get());
    }
    return keys;
}

KeySet XKeyDevices::down() {
    xcb_connection_t *xcb = connection_.xcb();
    const auto keymap = xcbReply(xcb_query_keymap_reply(xcb, xcb_query_keymap(xcb), nullptr));
    return keymap ? keySet(keymap->keys) : KeySet();
}

void XKeyDevices::watchReleases(bool on) {
    if (opcode_ == 0)
        return;
    struct {
        xcb_input_event_mask_t head;
        uint32_t mask;
    } selection = {{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                   on ? uint32_t(XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE) : 0U};
    xcb_input_xi_select_events(connection_.xcb(), connection_.root(), 1, &selection.head);
    xcb_flush(connection_.xcb());
}

std::optional<XKeyDevices::Release> XKeyDevices::release(const xcb_generic_event_t &event) const {
    if (opcode_ == 0 || (event.response_type & 0x7f) != XCB_GE_GENERIC)
        return std::nullopt;
    const auto &generic = reinterpret_cast<const xcb_ge_generic_event_t &>(event);
    if (generic.extension != opcode_ || generic.event_type != XCB_INPUT_RAW_KEY_RELEASE)
        return std::nullopt;
    const auto &raw = reinterpret_cast<const xcb_input_raw_key_release_event_t &>(event);
    const bool real =
        std::find(keyboards_.begin(), keyboards_.end(), raw.sourceid) != keyboards_.end();
    return Release{static_cast<xcb_keycode_t>(raw.detail), real, raw.time};
}

} // namespace pindle
