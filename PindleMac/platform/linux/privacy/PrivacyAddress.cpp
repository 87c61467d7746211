#include "PindleMac/platform/linux/privacy/PrivacyAddress.h"

namespace pindle {

std::optional<PrivacyPage> privacyPageFor(const QUrl &url) {
    if (url.isLocalFile()) {
        return url.path() == QLatin1String("/System/Library/PreferencePanes/Security.prefPane")
                   ? std::optional(PrivacyPage::calendars)
                   : std::nullopt;
    }
    if (url.scheme() != QLatin1String("x-apple.systempreferences") ||
        url.path() != QLatin1String("com.apple.preference.security"))
        return std::nullopt;
    if (url.query() == QLatin1String("Privacy_Calendars"))
        return PrivacyPage::calendars;
    if (url.query() == QLatin1String("Privacy_Accessibility"))
        return PrivacyPage::accessibility;
    return std::nullopt;
}

} // namespace pindle
