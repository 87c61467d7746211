#include "tests/PindleMac/logic/TestAccess.h"

namespace pindle {

namespace {

constexpr quint32 e = 14;
constexpr quint32 k = 40;

struct HotKey : LogicFixture {
    std::unique_ptr<GlobalHotKeyManager> manager = TestAccess::hotKeys(desktop);
    int presses = 0;
    void bind(ShortcutKey key) {
        manager->registerHotKey(key, [this] { ++presses; });
    }
};

} // namespace

TEST_F(HotKey, isRegisteredWithItsFixedValuesThenTheHandlerIsInstalled) {
    bind(ShortcutKey::e);
    EXPECT_EQ(desktop.log,
              QStringList({QStringLiteral("hotkey register 14 0x300 0x504e444c/1 options=0"),
                           QStringLiteral("hotkey handler 1 0x6b657962/5")}));
}

TEST_F(HotKey, theSameLetterTwiceLeavesOneCombinationAndOneHandler) {
    bind(ShortcutKey::e);
    bind(ShortcutKey::e);
    EXPECT_EQ(desktop.hotKeys.registered.size(), 1U);
    EXPECT_EQ(desktop.hotKeys.handlersInstalled, 1);
    EXPECT_EQ(desktop.log.mid(2),
              QStringList({QStringLiteral("hotkey unregister 14"),
                           QStringLiteral("hotkey register 14 0x300 0x504e444c/1 options=0")}));
    EXPECT_TRUE(desktop.hotKeys.press(e));
    EXPECT_EQ(presses, 1);
}

TEST_F(HotKey, afterAChangeTheOldLetterIsDead) {
    bind(ShortcutKey::e);
    bind(ShortcutKey::k);
    EXPECT_FALSE(desktop.hotKeys.press(e));
    EXPECT_TRUE(desktop.hotKeys.press(k));
    EXPECT_EQ(presses, 1);
}

TEST_F(HotKey, aRefusedNewLetterLeavesNoLetterAtAll) {
    bind(ShortcutKey::e);
    desktop.hotKeys.nextRegistrationFails = true;
    bind(ShortcutKey::k);
    EXPECT_TRUE(desktop.hotKeys.registered.empty());
    EXPECT_FALSE(TestAccess::hasHotKey(*manager));
    EXPECT_FALSE(desktop.hotKeys.press(e));
    EXPECT_FALSE(desktop.hotKeys.press(k));
    bind(ShortcutKey::e);
    EXPECT_TRUE(desktop.hotKeys.press(e));
}

TEST_F(HotKey, aPressWithoutAHandlerDoesNothing) {
    manager->registerHotKey(ShortcutKey::e, {});
    EXPECT_EQ(desktop.hotKeys.deliver(), noErr);
}

TEST_F(HotKey, theHandlerOfTheLatestCallRuns) {
    int first = 0;
    manager->registerHotKey(ShortcutKey::e, [&] { ++first; });
    bind(ShortcutKey::e);
    EXPECT_EQ(desktop.hotKeys.deliver(), noErr);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(presses, 1);
}

TEST_F(HotKey, aHandlerMayRegisterAnew) {
    manager->registerHotKey(ShortcutKey::e, [this] {
        bind(ShortcutKey::k);
        ++presses;
    });
    EXPECT_TRUE(desktop.hotKeys.press(e));
    EXPECT_EQ(presses, 1);
    EXPECT_TRUE(desktop.hotKeys.press(k));
    EXPECT_EQ(presses, 2);
}

using HotKeyDeathTest = HotKey;
TEST_F(HotKeyDeathTest, aPressWithoutTheManagerStopsTheProgram) {
    bind(ShortcutKey::e);
    EXPECT_DEATH(desktop.hotKeys.callback(nullptr), "");
}

} // namespace pindle
