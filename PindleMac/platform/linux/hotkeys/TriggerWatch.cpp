#include "PindleMac/platform/linux/hotkeys/TriggerWatch.h"

#include "PindleMac/platform/linux/x11/XConnection.h"

#include <chrono>

namespace pindle {
namespace {

using namespace std::chrono_literals;

/// Repetitions come closer together than this, in milliseconds; a press after a longer silence is a
/// new one, should a release ever have gone unseen.
constexpr xcb_timestamp_t longestRepeatGap = 3000;

/// Some keyboards (nested and remote ones) repeat by letting go for a moment, in milliseconds; no
/// finger is as quick.
constexpr xcb_timestamp_t shortestPause = 15;

/// Such a keyboard presses again at once, so the watch goes on for a while after a release.
constexpr auto lingering = 100ms;

} // namespace

TriggerWatch::TriggerWatch(XConnection &connection, XKeyboard &keyboard)
    : keyboard_(keyboard)
    , devices_(connection) {
    linger_.setSingleShot(true);
    linger_.setInterval(lingering);
    QObject::connect(&linger_, &QTimer::timeout, &linger_, [this] { setWatching(false); });
    connection.addHandler([this](const xcb_generic_event_t &event) {
        if (const auto release = devices_.release(event))
            released(*release);
        // As long as the press has given this connection the keyboard, the server tells the release
        // as an event of the grab and leaves the raw one out.
        if (event.response_type == XCB_KEY_RELEASE && keyboard_.releasesAreReal()) {
            const auto &release = reinterpret_cast<const xcb_key_release_event_t &>(event);
            released({release.detail, pressedByUser_, release.time});
        }
    });
}

void TriggerWatch::released(const XKeyDevices::Release &release) {
    if (release.key != key_)
        return;
    if (release.real)
        lastRelease_ = release;
    // Posting a keystroke lifts the key for the applications while the user still holds it.
    if (release.real || !devices_.physicallyDown().test(release.key))
        end();
}

bool TriggerWatch::repeats(const xcb_key_press_event_t &press) {
    const bool repetition = isRepetition(press);
    lastPress_ = press.time;
    lastRelease_.reset();
    if (keyboard_.trigger() != press.detail)
        begin(press.detail);
    return repetition;
}

bool TriggerWatch::isRepetition(const xcb_key_press_event_t &press) const {
    if (keyboard_.trigger() == press.detail)
        return press.time - lastPress_ < longestRepeatGap;
    return lastRelease_ && key_ == press.detail && press.time - lastRelease_->time < shortestPause;
}

void TriggerWatch::begin(xcb_keycode_t key) {
    if (!devices_.canWatch())
        return;
    key_ = key;
    keyboard_.setTrigger(key);
    linger_.stop();
    pressedByUser_ = devices_.physicallyDown().test(key);
    setWatching(true);
    // The key may have been up again before the server began to watch.
    if (!devices_.down().test(key))
        end();
}

void TriggerWatch::end() {
    keyboard_.setTrigger(0);
    linger_.start();
}

void TriggerWatch::setWatching(bool on) {
    if (watching_ != on)
        devices_.watchReleases(on);
    watching_ = on;
}

} // namespace pindle
