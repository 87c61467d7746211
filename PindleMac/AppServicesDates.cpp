#include "PindleMac/AppServices.h"
#include "PindleMac/DateFormat.h"

#include <algorithm>

namespace pindle {

namespace {

constexpr std::chrono::minutes shortestEvent{30};
constexpr std::chrono::hours defaultLength{1};

} // namespace

ResolvedDateRange AppServices::resolvedDateRange(const CalendarEventDetails &details) {
    const TimeZone zone =
        isKnownTimeZone(details.timeZone) ? TimeZone{details.timeZone} : currentTimeZone();
    const Calendar calendar = Calendar::gregorian;

    const QString startTime =
        details.startTime.isEmpty() ? QStringLiteral("09:00") : details.startTime;
    const auto start = eventDate(details.startDate, startTime, zone, calendar);

    const QString endDate = details.endDate.isEmpty() ? details.startDate : details.endDate;
    // A time of day only, taken on the end's date: late in the evening it lies before the start,
    // and the event then lasts its shortest length.
    const QString endTime =
        details.endTime.isEmpty() ? fallbackEndTime(start, zone) : details.endTime;
    const auto end = eventDate(endDate, endTime, zone, calendar);

    return {start, std::max(end, start + shortestEvent), zone};
}

std::chrono::sys_seconds AppServices::eventDate(const QString &date, const QString &time,
                                                const TimeZone &timeZone, Calendar calendar) {
    Q_UNUSED(calendar) // the only one there is
    if (date.isEmpty())
        throw AppError(AppError::Case::invalidDates);
    const auto moment =
        parseDate(date + QLatin1Char(' ') + time, timeZone, QStringLiteral("yyyy-MM-dd HH:mm"));
    if (!moment)
        throw AppError(AppError::Case::invalidDates);
    return *moment;
}

QString AppServices::fallbackEndTime(std::chrono::sys_seconds start, const TimeZone &timeZone) {
    return formatDate(start + defaultLength, timeZone, QStringLiteral("HH:mm"));
}

} // namespace pindle
