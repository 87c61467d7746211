#include "tests/PindleMac/logic/TestAccess.h"

namespace pindle {

namespace {

struct SettingsStore : LogicFixture {
    std::unique_ptr<AppSettingsStore> store = TestAccess::settings(desktop);
    void reload() { store = TestAccess::settings(desktop); }
    const QString refused = QStringLiteral("Launch at login could not be updated on this build.");
};

} // namespace

TEST_F(SettingsStore, emptyDefaultsGiveTheLetterEAndNoLaunchAtLogin) {
    EXPECT_FALSE(store->launchAtLogin());
    EXPECT_EQ(store->shortcutKey(), ShortcutKey::e);
    EXPECT_EQ(store->shortcutDisplayText(), QStringLiteral("Command + Shift + E"));
    EXPECT_FALSE(store->launchAtLoginError().has_value());
    EXPECT_TRUE(
        desktop.logged({QStringLiteral("defaults set"), QStringLiteral("login")}).isEmpty());
}

TEST_F(SettingsStore, storedValuesAreLoaded) {
    desktop.userDefaults.values = {{AppPreferences::launchAtLogin, true},
                                   {AppPreferences::shortcutKey, QStringLiteral("k")}};
    reload();
    EXPECT_TRUE(store->launchAtLogin());
    EXPECT_EQ(store->shortcutKey(), ShortcutKey::k);
}

TEST_F(SettingsStore, anInvalidStoredLetterGivesEAndIsNotRewritten) {
    for (const QString &bad : {QStringLiteral("K"), QStringLiteral("ee"), QString(),
                               QStringLiteral("1"), QStringLiteral("é")}) {
        desktop.userDefaults.values[AppPreferences::shortcutKey] = bad;
        reload();
        EXPECT_EQ(store->shortcutKey(), ShortcutKey::e) << bad.toStdString();
        EXPECT_EQ(desktop.userDefaults.values[AppPreferences::shortcutKey].toString(), bad);
    }
}

TEST_F(SettingsStore, aStoredChoiceOfAnotherTypeReadsAsFalse) {
    desktop.userDefaults.values[AppPreferences::launchAtLogin] = QStringLiteral("true");
    reload();
    EXPECT_FALSE(store->launchAtLogin());
}

TEST_F(SettingsStore, launchAtLoginRegistersThenKeepsTheChoice) {
    store->setLaunchAtLogin(true);
    EXPECT_TRUE(store->launchAtLogin());
    EXPECT_EQ(desktop.logged({QStringLiteral("login"), QStringLiteral("defaults set")}),
              QStringList({QStringLiteral("login register"),
                           QStringLiteral("defaults set launch_at_login=1")}));
    store->setLaunchAtLogin(false);
    EXPECT_FALSE(store->launchAtLogin());
    EXPECT_EQ(desktop.log.last(), QStringLiteral("defaults set launch_at_login=0"));
}

TEST_F(SettingsStore, aRefusalWithNothingStoredLeavesItOff) {
    desktop.loginItem.refuses = true;
    store->setLaunchAtLogin(true);
    EXPECT_FALSE(store->launchAtLogin());
    EXPECT_EQ(store->launchAtLoginError(), refused);
    EXPECT_FALSE(desktop.userDefaults.values.contains(AppPreferences::launchAtLogin));
}

TEST_F(SettingsStore, aRefusedSwitchOffStaysOnAndTellsWhy) {
    store->setLaunchAtLogin(true);
    desktop.loginItem.refuses = true;
    store->setLaunchAtLogin(false);
    EXPECT_TRUE(store->launchAtLogin());
    EXPECT_EQ(store->launchAtLoginError(), refused);
    EXPECT_TRUE(desktop.userDefaults.values[AppPreferences::launchAtLogin].toBool());
}

TEST_F(SettingsStore, aSuccessAfterAFailureClearsTheError) {
    desktop.loginItem.refuses = true;
    store->setLaunchAtLogin(true);
    desktop.loginItem.refuses = false;
    store->setLaunchAtLogin(true);
    EXPECT_FALSE(store->launchAtLoginError().has_value());
    EXPECT_TRUE(store->launchAtLogin());
}

TEST_F(SettingsStore, theLetterIsStoredAsItsRawValue) {
    store->setShortcutKey(ShortcutKey::k);
    EXPECT_EQ(store->shortcutKey(), ShortcutKey::k);
    EXPECT_EQ(desktop.userDefaults.values[AppPreferences::shortcutKey], QStringLiteral("k"));
    EXPECT_EQ(store->shortcutDisplayText(), QStringLiteral("Command + Shift + K"));
    EXPECT_TRUE(desktop.logged({QStringLiteral("hotkey")}).isEmpty());
}

TEST_F(SettingsStore, changesAreAnnouncedBeforeTheyLand) {
    QList<ShortcutKey> seen;
    QObject::connect(store.get(), &AppSettingsStore::objectWillChange, store.get(),
                     [&](AppSettingsStore::Property property) {
                         EXPECT_EQ(property, AppSettingsStore::Property::shortcutKey);
                         seen += store->shortcutKey();
                     });
    store->setShortcutKey(ShortcutKey::z);
    store->setShortcutKey(ShortcutKey::z);
    EXPECT_EQ(seen, QList({ShortcutKey::e, ShortcutKey::z}));
}

TEST_F(SettingsStore, thePersistedNamesAreFixed) {
    EXPECT_EQ(AppPreferences::launchAtLogin, QStringLiteral("launch_at_login"));
    EXPECT_EQ(AppPreferences::shortcutKey, QStringLiteral("shortcut_key"));
    EXPECT_EQ(AppPreferences::anonymizedKey, QStringLiteral("anonymized_key"));
}

TEST(ShortcutKeys, areTheTwentySixLettersInOrder) {
    QString letters;
    for (const ShortcutKey key : allShortcutKeys()) {
        letters += rawValue(key);
        EXPECT_EQ(shortcutKeyFromRawValue(rawValue(key)), key);
        EXPECT_EQ(displayName(key), rawValue(key).toUpper());
    }
    EXPECT_EQ(letters, QStringLiteral("abcdefghijklmnopqrstuvwxyz"));
}

TEST(ShortcutKeys, haveTheAnsiKeyCodes) {
    const QHash<char, quint32> codes = {
        {'a', 0},  {'b', 11}, {'c', 8},  {'d', 2},  {'e', 14}, {'f', 3},  {'g', 5},
        {'h', 4},  {'i', 34}, {'j', 38}, {'k', 40}, {'l', 37}, {'m', 46}, {'n', 45},
        {'o', 31}, {'p', 35}, {'q', 12}, {'r', 15}, {'s', 1},  {'t', 17}, {'u', 32},
        {'v', 9},  {'w', 13}, {'x', 7},  {'y', 16}, {'z', 6}};
    ASSERT_EQ(codes.size(), 26);
    for (const ShortcutKey key : allShortcutKeys())
        EXPECT_EQ(carbonKeyCode(key), codes.value(rawValue(key).front().toLatin1()));
}

} // namespace pindle
