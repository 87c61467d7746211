#include "PindleMac/AppServices.h"
#include "PindleMac/Async.h"
#include "PindleMac/platform/EventStore.h"

namespace pindle {

namespace {

struct AccessAnswer {
    bool granted = false;
    std::optional<PlatformError> error;
};

} // namespace

QCoro::Task<bool> AppServices::requestCalendarAccess() {
    const auto answer = co_await awaitCompletion<AccessAnswer>([this](auto completion) {
        platform_.eventStore.requestWriteOnlyAccessToEvents(
            [completion](bool granted, std::optional<PlatformError> error) {
                completion({granted, std::move(error)});
            });
    });
    if (answer.error)
        throw *answer.error;
    co_return answer.granted;
}

QCoro::Task<void> AppServices::saveToCalendar(CalendarEventDetails details) {
    if (!co_await requestCalendarAccess())
        throw AppError(AppError::Case::calendarPermissionDenied);
    const ResolvedDateRange range = resolvedDateRange(details);

    EventStore &store = platform_.eventStore;
    const auto event = store.makeEvent();
    event->setCalendar(store.defaultCalendarForNewEvents());
    event->setTitle(details.title);
    event->setLocation(details.location);
    event->setNotes(details.description);
    event->setStartDate(range.startDate);
    event->setEndDate(range.endDate);
    event->setTimeZone(range.timeZone);
    store.save(*event, EKSpan::thisEvent);
}

} // namespace pindle
