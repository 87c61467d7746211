#include "PindleMac/AppServices.h"
#include "PindleMac/platform/EventStore.h"
#include "PindleMac/platform/Workspace.h"

namespace pindle {

namespace {

const QString privacyPages = QStringLiteral("x-apple.systempreferences:"
                                            "com.apple.preference.security?");
const QString securityPane = QStringLiteral("/System/Library/PreferencePanes/Security.prefPane");

} // namespace

bool AppServices::accessibilityPermissionEnabled() {
    return platform_.accessibility.AXIsProcessTrusted();
}

void AppServices::promptForAccessibilityPermission() {
    platform_.accessibility.AXIsProcessTrustedWithOptions(true);
}

QString AppServices::calendarPermissionStatusText() {
    switch (platform_.eventStore.authorizationStatus()) {
    case EKAuthorizationStatus::notDetermined:
        return QStringLiteral("Not requested");
    case EKAuthorizationStatus::restricted:
        return QStringLiteral("Restricted");
    case EKAuthorizationStatus::denied:
        return QStringLiteral("Denied");
    case EKAuthorizationStatus::fullAccess:
        return QStringLiteral("Full access");
    case EKAuthorizationStatus::writeOnly:
        return QStringLiteral("Write only");
    }
    return QStringLiteral("Unknown");
}

QCoro::Task<bool> AppServices::requestCalendarPermissionIfNeeded() {
    co_return co_await requestCalendarAccess();
}

void AppServices::openCalendarSettings() {
    openFirst({privacyPages + QStringLiteral("Privacy_Calendars"),
               privacyPages + QStringLiteral("Privacy_Calendar")});
}

void AppServices::openAccessibilitySettings() {
    // The page is tried a second time before giving up.
    const QString page = privacyPages + QStringLiteral("Privacy_Accessibility");
    openFirst({page, page});
}

void AppServices::openFirst(const QList<QString> &candidates) {
    for (const QString &candidate : candidates) {
        const QUrl url(candidate, QUrl::StrictMode);
        if (url.isValid() && platform_.workspace.open(url))
            return;
    }
    platform_.workspace.open(QUrl::fromLocalFile(securityPane));
}

void AppServices::openURL(const QUrl &url) {
    platform_.workspace.open(url);
}

} // namespace pindle
