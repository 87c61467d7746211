#include "PindleMac/platform/linux/hotkeys/TriggerWatch.h"

#include "PindleMac/platform/linux/x11/XConnection.h"

namespace pindle {
namespace {

/// Repetitions come closer together than this, in milliseconds; a press after a longer silence is a
/// new one, should a release ever have gone unseen.
constexpr xcb_timestamp_t longestRepeatGap = 3000;

} // namespace

TriggerWatch::TriggerWatch(XConnection &connection, XKeyboard &keyboard)
    : keyboard_(keyboard)
    , devices_(connection) {
    connection.addHandler([this](const xcb_generic_event_t &event) {
        const xcb_keycode_t key = devices_.releasedKey(event);
        // Posting a keystroke lifts the key for the applications while the user still holds it.
        if (key != 0 && key == keyboard_.trigger() && !devices_.physicallyDown().test(key))
            end();
    });
}

bool TriggerWatch::repeats(const xcb_key_press_event_t &press) {
    const bool held =
        keyboard_.trigger() == press.detail && press.time - lastPress_ < longestRepeatGap;
    lastPress_ = press.time;
    if (!held)
        begin(press.detail);
    return held;
}

void TriggerWatch::begin(xcb_keycode_t key) {
    if (!devices_.canWatch())
        return;
    keyboard_.setTrigger(key);
    devices_.watchReleases(true);
    // The key may have been up again before the server began to watch.
    if (!devices_.down().test(key))
        end();
}

void TriggerWatch::end() {
    keyboard_.setTrigger(0);
    devices_.watchReleases(false);
}

} // namespace pindle
