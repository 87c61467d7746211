#pragma once

#include "PindleMac/platform/linux/eventposting/X11EventPosting.h"
#include "PindleMac/platform/linux/x11/XConnection.h"
#include "PindleMac/platform/linux/x11/XKeyboard.h"
#include "X11Actor.h"

#include <gtest/gtest.h>

namespace pindle::test {

/// Keystrokes on a real X server, for a window that writes down which keys it gets.
class PostingFixture : public testing::Test {
protected:
    void SetUp() override {
        connection = XConnection::open();
        ASSERT_TRUE(connection);
        keyboard = std::make_unique<XKeyboard>(*connection);
        posting = std::make_unique<X11EventPosting>(*connection, *keyboard);
        source =
            posting->CGEventSourceCreate(CGEventSourceStateID::kCGEventSourceStateHIDSystemState);
        ASSERT_TRUE(source);
    }

    void TearDown() override {
        posting.reset();
        keyboard.reset();
        connection.reset();
        EXPECT_TRUE(waitUntil([&] { return target.keysDown().empty(); }))
            << testing::PrintToString(target.keysDown());
    }

    void post(bool down, CGEventFlags flags = kCGEventFlagMaskCommand) {
        auto event = posting->CGEventCreateKeyboardEvent(*source, kVK_ANSI_C, down);
        ASSERT_TRUE(event);
        posting->CGEventSetFlags(*event, flags);
        posting->CGEventPost(CGEventTapLocation::kCGHIDEventTap, *event);
    }

    void copy() {
        post(true);
        post(false);
    }

    /// The presses among the keys the target got, as key and state.
    std::vector<std::pair<int, int>> pressesOfTarget() {
        std::vector<std::pair<int, int>> presses;
        for (const auto &key : target.keys()) {
            if (key.press)
                presses.emplace_back(key.key, key.state);
        }
        return presses;
    }

    Actor target;
    std::unique_ptr<XConnection> connection;
    std::unique_ptr<XKeyboard> keyboard;
    std::unique_ptr<X11EventPosting> posting;
    std::optional<CGEventSource> source;
};

} // namespace pindle::test
