#include "bench/WindowWatch.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <poll.h>
#include <random>
#include <thread>
#include <xcb/damage.h>

namespace pindle::bench {

namespace {

/// How long a finger stays on the key.
constexpr std::chrono::milliseconds held{50};
/// How long the window stays, and how long it stays away; the jitter keeps presses from falling
/// into step with anything.
constexpr std::chrono::milliseconds look{250};
constexpr std::chrono::milliseconds pause{250};
constexpr int pauseJitterMs = 50;
constexpr std::chrono::seconds deadline{5};
/// Where the pointer rests.
constexpr int restX = 700;
constexpr int restY = 140;

using Event = std::unique_ptr<xcb_generic_event_t, decltype(&std::free)>;

std::uint8_t typeOf(const xcb_generic_event_t &event) {
    return event.response_type & 0x7f;
}

} // namespace

WindowWatch::WindowWatch(const WindowPlan &plan, Samples &samples)
    : plan_(plan)
    , samples_(samples) {
    xcb_connection_t *xcb = keys_.xcb();
    damageNotify_ = static_cast<std::uint8_t>(
        xcb_get_extension_data(xcb, &xcb_damage_id)->first_event + XCB_DAMAGE_NOTIFY);
    std::free(xcb_damage_query_version_reply(xcb, xcb_damage_query_version(xcb, 1, 1), nullptr));
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(xcb, plan_.window, XCB_CW_EVENT_MASK, &mask);
    xcb_damage_create(xcb, xcb_generate_id(xcb), plan_.window,
                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    xcb_flush(xcb);
}

bool WindowWatch::run() {
    std::mt19937 random(std::random_device{}());
    std::uniform_int_distribution jitter(0, pauseJitterMs);
    keys_.movePointer(restX, restY);
    for (int i = 0; i < plan_.presses; ++i) {
        if (!show())
            return false;
        std::this_thread::sleep_for(look);
        if (!hide())
            return false;
        std::this_thread::sleep_for(pause + std::chrono::milliseconds(jitter(random)));
    }
    return true;
}

bool WindowWatch::show() {
    while (Event(xcb_poll_for_event(keys_.xcb()), &std::free)) {
    }
    const Instant pressed = keys_.pressShortcut(plan_.letter);
    Instant mapped = 0;
    const bool painted = waitFor(
        [&](const xcb_generic_event_t &event) {
            if (typeOf(event) == XCB_MAP_NOTIFY)
                mapped = now();
            return mapped && typeOf(event) == damageNotify_;
        },
        "the window to be mapped and drawn into");
    const Instant drawn = now();
    std::this_thread::sleep_for(held);
    keys_.releaseShortcut();
    if (painted) {
        samples_.add("mapped", pressed, mapped);
        samples_.add("painted", pressed, drawn);
    }
    return painted;
}

bool WindowWatch::hide() {
    if (plan_.closeButton) {
        clickCloseButton();
    } else {
        keys_.pressShortcut(plan_.letter);
        std::this_thread::sleep_for(held);
        keys_.releaseShortcut();
    }
    const bool hidden =
        waitFor([](const xcb_generic_event_t &event) { return typeOf(event) == XCB_UNMAP_NOTIFY; },
                "the window to be hidden");
    keys_.movePointer(restX, restY);
    return hidden;
}

void WindowWatch::clickCloseButton() {
    xcb_connection_t *xcb = keys_.xcb();
    const auto [x, y] = *plan_.closeButton;
    const auto cookie =
        xcb_translate_coordinates(xcb, plan_.window, keys_.root(), static_cast<std::int16_t>(x),
                                  static_cast<std::int16_t>(y));
    auto *reply = xcb_translate_coordinates_reply(xcb, cookie, nullptr);
    if (reply) {
        keys_.movePointer(reply->dst_x, reply->dst_y);
        keys_.click();
    }
    std::free(reply);
}

bool WindowWatch::waitFor(const std::function<bool(const xcb_generic_event_t &)> &wanted,
                          const char *what) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    xcb_flush(keys_.xcb());
    for (;;) {
        while (const auto event = Event(xcb_poll_for_event(keys_.xcb()), &std::free)) {
            if (wanted(*event))
                return true;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            end - std::chrono::steady_clock::now());
        pollfd socket{xcb_get_file_descriptor(keys_.xcb()), POLLIN, 0};
        if (left.count() <= 0 || poll(&socket, 1, static_cast<int>(left.count())) <= 0) {
            std::fprintf(stderr, "outside-bench: waited in vain for %s\n", what);
            return false;
        }
    }
}

} // namespace pindle::bench
