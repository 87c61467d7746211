#include "PindleMac/HelpDiagnosticsModel.h"

#include "PindleMac/Async.h"
#include "PindleMac/platform/Platform.h"

namespace pindle {

HelpDiagnosticsModel::HelpDiagnosticsModel(Platform &platform)
    : services_(platform) {
    // Trust comes and goes with an answer of the user's that nobody here waits for.
    platform.accessibility.observeTrust([self = QPointer(this)] {
        if (self)
            self->refresh();
    });
}

void HelpDiagnosticsModel::refresh() {
    const bool enabled = services_.accessibilityPermissionEnabled();
    Q_EMIT objectWillChange(Property::accessibilityEnabled);
    accessibilityEnabled_ = enabled;
    const QString status = services_.calendarPermissionStatusText();
    Q_EMIT objectWillChange(Property::calendarStatus);
    calendarStatus_ = status;
}

void HelpDiagnosticsModel::promptAccessibilityPermission() {
    services_.promptForAccessibilityPermission();
    tell(QStringLiteral("macOS may show the Accessibility prompt. If it does not, use Open "
                        "Settings and verify the installed app entry."));
}

void HelpDiagnosticsModel::openAccessibilitySettings() {
    services_.openAccessibilitySettings();
}

void HelpDiagnosticsModel::requestCalendarPermission() {
    startTask([self = QPointer(this)] { return request(self); });
}

/// The model may be gone whenever the user has answered.
QCoro::Task<void> HelpDiagnosticsModel::request(QPointer<HelpDiagnosticsModel> self) {
    if (!self)
        co_return;
    QString message = QStringLiteral("Calendar permission check completed.");
    try {
        co_await self->services_.requestCalendarPermissionIfNeeded();
    } catch (...) {
        message = errorDescription(std::current_exception());
    }
    if (self)
        self->tell(message);
}

void HelpDiagnosticsModel::openCalendarSettings() {
    services_.openCalendarSettings();
}

void HelpDiagnosticsModel::tell(const QString &message) {
    Q_EMIT objectWillChange(Property::permissionMessage);
    permissionMessage_ = message;
    refresh();
}

} // namespace pindle
