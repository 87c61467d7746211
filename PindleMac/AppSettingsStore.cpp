#include "PindleMac/AppSettingsStore.h"

#include "PindleMac/platform/LoginItem.h"
#include "PindleMac/platform/Platform.h"
#include "PindleMac/platform/UserDefaults.h"

#include <exception>

namespace pindle {

const QString AppPreferences::launchAtLogin = QStringLiteral("launch_at_login");
const QString AppPreferences::shortcutKey = QStringLiteral("shortcut_key");
const QString AppPreferences::anonymizedKey = QStringLiteral("anonymized_key");

const std::array<ShortcutKey, 26> &allShortcutKeys() {
    static const auto keys = [] {
        std::array<ShortcutKey, 26> all{};
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] = static_cast<ShortcutKey>(i);
        return all;
    }();
    return keys;
}

QString rawValue(ShortcutKey key) {
    return QString(QLatin1Char(static_cast<char>('a' + static_cast<int>(key))));
}

std::optional<ShortcutKey> shortcutKeyFromRawValue(const QString &raw) {
    if (raw.size() != 1 || raw.front() < QLatin1Char('a') || raw.front() > QLatin1Char('z'))
        return std::nullopt;
    return static_cast<ShortcutKey>(raw.front().unicode() - u'a');
}

QString displayName(ShortcutKey key) {
    return rawValue(key).toUpper();
}

quint32 carbonKeyCode(ShortcutKey key) {
    // kVK_ANSI_A to kVK_ANSI_Z
    static constexpr std::array<quint32, 26> codes = {
        0,  11, 8,  2,  14, 3, 5,  4,  34, 38, 40, 37, 46, // a to m
        45, 31, 35, 12, 15, 1, 17, 32, 9,  13, 7,  16, 6,  // n to z
    };
    return codes[static_cast<std::size_t>(key)];
}

AppSettingsStore &AppSettingsStore::shared() {
    // Never destroyed: it lives until the process ends.
    static auto *store =
        new AppSettingsStore(Platform::shared().userDefaults, Platform::shared().loginItem);
    return *store;
}

AppSettingsStore::AppSettingsStore(UserDefaults &defaults, LoginItem &loginItem)
    : defaults_(defaults)
    , loginItem_(loginItem)
    , shortcutKey_(
          shortcutKeyFromRawValue(defaults.string(AppPreferences::shortcutKey).value_or(QString()))
              .value_or(ShortcutKey::e))
    , launchAtLogin_(defaults.boolean(AppPreferences::launchAtLogin)) {}

QString AppSettingsStore::shortcutDisplayText() const {
    return QStringLiteral("Command + Shift + ") + displayName(shortcutKey_);
}

void AppSettingsStore::setLaunchAtLogin(bool enabled) {
    Q_EMIT objectWillChange(Property::launchAtLoginError);
    launchAtLoginError_.reset();
    try {
        if (enabled)
            loginItem_.registerItem();
        else
            loginItem_.unregisterItem();
        Q_EMIT objectWillChange(Property::launchAtLogin);
        launchAtLogin_ = enabled;
        defaults_.setBoolean(AppPreferences::launchAtLogin, enabled);
    } catch (const std::exception &) {
        Q_EMIT objectWillChange(Property::launchAtLogin);
        launchAtLogin_ = defaults_.boolean(AppPreferences::launchAtLogin);
        Q_EMIT objectWillChange(Property::launchAtLoginError);
        launchAtLoginError_ = QStringLiteral("Launch at login could not be updated on this build.");
    }
}

void AppSettingsStore::setShortcutKey(ShortcutKey key) {
    Q_EMIT objectWillChange(Property::shortcutKey);
    shortcutKey_ = key;
    defaults_.setString(AppPreferences::shortcutKey, rawValue(key));
}

} // namespace pindle
