#include "PindleMac/platform/linux/eventstore/DesktopEventStore.h"

#include "PindleMac/platform/linux/eventstore/IcsEvent.h"

namespace pindle {

DesktopEventStore::DesktopEventStore(AccessDecisions &decisions, AskQuestion ask,
                                     CalendarWorker::MakeBackend make, QString folder)
    : folder_(decisions, std::move(ask), std::move(folder))
    , server_(std::move(make)) {}

void DesktopEventStore::requestWriteOnlyAccessToEvents(AccessCompletion completion) {
    folder_.requestWriteOnlyAccessToEvents(
        [this, completion = std::move(completion)](bool granted,
                                                   const std::optional<PlatformError> &error) {
            if (!granted || error)
                completion(granted, error);
            else
                server_.connect([completion] { completion(true, std::nullopt); });
        });
}

EKAuthorizationStatus DesktopEventStore::authorizationStatus() {
    return folder_.authorizationStatus();
}

std::unique_ptr<EKEvent> DesktopEventStore::makeEvent() {
    return std::make_unique<IcsEvent>();
}

std::optional<EKCalendar> DesktopEventStore::defaultCalendarForNewEvents() {
    return server_.isAbsent() ? folder_.defaultCalendarForNewEvents() : server_.calendar();
}

void DesktopEventStore::save(EKEvent &event, EKSpan span) {
    if (server_.isAbsent()) {
        folder_.save(event, span);
        return;
    }
    server_.save(eventToSave(event, authorizationStatus()));
}

} // namespace pindle
