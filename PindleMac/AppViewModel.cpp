#include "PindleMac/AppViewModel.h"

#include "PindleMac/Async.h"
#include "PindleMac/GlobalHotKeyManager.h"
#include "PindleMac/Text.h"
#include "PindleMac/platform/NotificationCenter.h"
#include "PindleMac/platform/Screens.h"

#include <QPointer>

namespace pindle {

const QString showPindlePopover = QStringLiteral("showPindlePopover");
const QString closePindlePopover = QStringLiteral("closePindlePopover");

AppViewModel &AppViewModel::shared() {
    // Never destroyed: its tasks may be suspended until the process ends.
    static auto *viewModel = new AppViewModel(Platform::shared(), AppSettingsStore::shared(),
                                              GlobalHotKeyManager::shared());
    return *viewModel;
}

AppViewModel::AppViewModel(Platform &platform, AppSettingsStore &settings,
                           GlobalHotKeyManager &hotKeys)
    : platform_(platform)
    , settings_(settings)
    , hotKeys_(hotKeys)
    , services_(platform) {
    eventDetails_.timeZone = services_.currentTimeZone().identifier;
}

template<class T> void AppViewModel::publish(Property property, T &stored, T value) {
    Q_EMIT objectWillChange(property);
    stored = std::move(value);
}

void AppViewModel::setEventDetails(const CalendarEventDetails &details) {
    publish(Property::eventDetails, eventDetails_, details);
}

void AppViewModel::bootstrap() {
    if (hasBootstrapped_)
        return;
    hasBootstrapped_ = true;
    startTask([this] { return registerInstall(); });
    hotKeys_.registerHotKey(settings_.shortcutKey(), shortcutHandler());
}

QCoro::Task<void> AppViewModel::registerInstall() {
    try {
        co_await services_.ensureRegistered();
    } catch (...) {
        publishError(std::current_exception());
    }
}

std::function<void()> AppViewModel::shortcutHandler() {
    return [self = QPointer(this), platform = &platform_] {
        startTask([self, platform]() -> QCoro::Task<void> {
            const FloatingPanelRequest request{platform->screens.mouseLocation()};
            platform->notificationCenter.post(showPindlePopover, request);
            if (self)
                self->captureAndConvertSelection();
            co_return;
        });
    };
}

void AppViewModel::shortcutPressed() {
    shortcutHandler()();
}

void AppViewModel::captureAndConvertSelection() {
    startTask([this] { return captureAndConvert(); });
}

QCoro::Task<void> AppViewModel::captureAndConvert() {
    beginRun();
    try {
        const QString text = co_await services_.captureSelectedText();
        publish(Property::phase, phase_, ParserPhase::parsing);
        co_await convertCurrentText(text);
    } catch (...) {
        captureFailed(std::current_exception());
    }
}

void AppViewModel::beginRun() {
    publish(Property::phase, phase_, ParserPhase::capturing);
    publish(Property::isLoading, isLoading_, true);
    publish(Property::successMessage, successMessage_, {});
    publish(Property::errorMessage, errorMessage_, {});
    publish(Property::showCalendarSettingsAction, showCalendarSettingsAction_, false);
    publish(Property::showAccessibilitySettingsAction, showAccessibilitySettingsAction_, false);
    publish(Property::userMessage, userMessage_, QString());
    publish(Property::calendarLinks, calendarLinks_, {});
    resetEvent();
}

void AppViewModel::resetEvent() {
    CalendarEventDetails empty;
    empty.timeZone = services_.currentTimeZone().identifier;
    setEventDetails(empty);
}

QCoro::Task<void> AppViewModel::convertCurrentText(QString text) {
    const QString trimmed = trimmingWhitespaceAndNewlines(text);
    if (trimmed.isEmpty())
        throw AppError(AppError::Case::missingSelection);
    const TextConversionResponse reply = co_await services_.convertSelection(trimmed);
    if (reply.details) {
        setEventDetails(*reply.details);
        const auto links = services_.calendarLinks(*reply.details);
        publish(Property::calendarLinks, calendarLinks_, links);
    }
    publish(Property::userMessage, userMessage_, reply.userMessage.value_or(QString()));
    publish(Property::phase, phase_, ParserPhase::ready);
    publish(Property::isLoading, isLoading_, false);
}

void AppViewModel::captureFailed(const std::exception_ptr &error) {
    publish(Property::phase, phase_, ParserPhase::failed);
    publishError(error);
    publish(Property::showAccessibilitySettingsAction, showAccessibilitySettingsAction_,
            isAccessibilityPermissionError(error));
    publish(Property::isLoading, isLoading_, false);
}

void AppViewModel::publishError(const std::exception_ptr &error) {
    publish(Property::errorMessage, errorMessage_, std::optional(errorDescription(error)));
}

void AppViewModel::updateShortcutKey(ShortcutKey key) {
    settings_.setShortcutKey(key);
    hotKeys_.registerHotKey(key, shortcutHandler());
}

void AppViewModel::saveEvent() {
    startTask([this] { return save(); });
}

QCoro::Task<void> AppViewModel::save() {
    publish(Property::isLoading, isLoading_, true);
    publish(Property::successMessage, successMessage_, {});
    publish(Property::errorMessage, errorMessage_, {});
    publish(Property::showCalendarSettingsAction, showCalendarSettingsAction_, false);
    publish(Property::showAccessibilitySettingsAction, showAccessibilitySettingsAction_, false);
    try {
        co_await services_.saveToCalendar(eventDetails_);
        publish(Property::successMessage, successMessage_,
                std::optional(QStringLiteral("Event saved to Apple Calendar.")));
        publish(Property::isLoading, isLoading_, false);
    } catch (...) {
        saveFailed(std::current_exception());
    }
}

void AppViewModel::saveFailed(const std::exception_ptr &error) {
    publishError(error);
    publish(Property::showCalendarSettingsAction, showCalendarSettingsAction_,
            isCalendarPermissionError(error));
    publish(Property::isLoading, isLoading_, false);
}

void AppViewModel::refreshCalendarLinks() {
    try {
        const auto links = services_.calendarLinks(eventDetails_);
        publish(Property::calendarLinks, calendarLinks_, links);
    } catch (...) {
        publishError(std::current_exception());
    }
}

void AppViewModel::openCalendarLink(const CalendarDestinationLink &link) {
    services_.openCalendarLink(link);
}

void AppViewModel::openCalendarSettings() {
    services_.openCalendarSettings();
}

void AppViewModel::openAccessibilitySettings() {
    services_.openAccessibilitySettings();
}

void AppViewModel::promptAccessibilityPermission() {
    services_.promptForAccessibilityPermission();
}

void AppViewModel::openURL(const QUrl &url) {
    services_.openURL(url);
}

void AppViewModel::openBugReport() {
    startTask([this] { return reportBug(); });
}

QCoro::Task<void> AppViewModel::reportBug() {
    try {
        co_await services_.openBugReport();
    } catch (...) {
        publishError(std::current_exception());
    }
}

} // namespace pindle
