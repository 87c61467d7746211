#pragma once

#include <QObject>
#include <QString>
#include <array>
#include <optional>

namespace pindle {

class LoginItem;
class UserDefaults;

/// The letter that completes Command + Shift + letter.
enum class ShortcutKey {
    // clang-format off
    a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z
    // clang-format on
};

/// All 26 letters, a to z.
const std::array<ShortcutKey, 26> &allShortcutKeys();
/// The lowercase letter, "a" to "z"; also the value's identity in lists.
QString rawValue(ShortcutKey key);
/// Exactly one of the 26 lowercase letters, else nothing.
std::optional<ShortcutKey> shortcutKeyFromRawValue(const QString &raw);
/// The letter in upper case.
QString displayName(ShortcutKey key);
/// Virtual key code of the letter's place on the ANSI keyboard (kVK_ANSI_A to kVK_ANSI_Z); zero is
/// a valid code.
quint32 carbonKeyCode(ShortcutKey key);

/// Names of the persisted values.
struct AppPreferences {
    static const QString launchAtLogin; ///< boolean
    static const QString shortcutKey;   ///< raw value of a ShortcutKey
    static const QString anonymizedKey; ///< the install identity key
};

/// The user's two settings, persisted as they change. Main thread only.
class AppSettingsStore : public QObject {
    Q_OBJECT
public:
    enum class Property { launchAtLogin, shortcutKey, launchAtLoginError };

    static AppSettingsStore &shared();

    bool launchAtLogin() const { return launchAtLogin_; }
    ShortcutKey shortcutKey() const { return shortcutKey_; }
    const std::optional<QString> &launchAtLoginError() const { return launchAtLoginError_; }
    /// "Command + Shift + E".
    QString shortcutDisplayText() const;

    /// Registers or removes the login item and keeps the choice; a refusal returns to the last
    /// stored choice and is published in `launchAtLoginError`.
    void setLaunchAtLogin(bool enabled);
    /// Keeps the letter; binding it is the view model's business.
    void setShortcutKey(ShortcutKey key);

Q_SIGNALS:
    /// Emitted before the new value lands, also for an equal value.
    void objectWillChange(pindle::AppSettingsStore::Property property);

private:
    friend struct TestAccess;
    AppSettingsStore(UserDefaults &defaults, LoginItem &loginItem);

    UserDefaults &defaults_;
    LoginItem &loginItem_;
    std::optional<QString> launchAtLoginError_;
    ShortcutKey shortcutKey_;
    bool launchAtLogin_;
};

} // namespace pindle
