#include "PindleConversion/resolve/Resolve.h"

#include <memory>

#include <unicode/timezone.h>

namespace pindle::conversion {

namespace {

constexpr int kHour = 60;
constexpr int kHalfDay = 12 * kHour;
constexpr int kDay = 24 * kHour;
constexpr int kNoEveningHour = 10; ///< "10h" is not meant as 22:00 where that is written 22h

int minutes(const ClockSpec &clock) {
    return clock.hour * kHour + clock.minute;
}

/// The time with "am" or "pm" applied.
int withMeridiem(const ClockSpec &clock, int meridiem) {
    return (clock.hour % 12) * kHour + clock.minute + (meridiem == 1 ? kHalfDay : 0);
}

struct Guess {
    int meridiem = 0;
    bool assumed = false;
};

Guess byPart(DayPart part, int hour) {
    switch (part) {
    case DayPart::Morning:
        return {0, false};
    case DayPart::Noon:
        return {hour >= 10 && hour < 12 ? 0 : 1, false};
    case DayPart::Afternoon:
    case DayPart::Evening:
        return {1, false};
    case DayPart::Night:
        return {hour >= 5 && hour < 12 ? 1 : 0, false};
    case DayPart::None:
        break;
    }
    return {};
}

/// Morning or afternoon for an hour from 1 to 12 that the text leaves open.
Guess byKind(EventKind kind, const ClockSpec &clock) {
    const int hour = clock.hour;
    switch (kind) {
    case EventKind::Evening:
        // "at 11.20" is hardly so late.
        return {hour == 11 && clock.minuteGiven ? 0 : 1, false};
    case EventKind::Morning:
        return {hour >= 5 && hour < 12 ? 0 : 1, false};
    case EventKind::Midday:
        return {hour >= 10 && hour < 12 ? 0 : 1, false};
    case EventKind::Work:
        // "at half seven", as people talk, is hardly before breakfast.
        return {hour >= (clock.spoken ? 8 : 7) && hour < 12 ? 0 : 1, false};
    case EventKind::Travel:
        return {hour >= 5 && hour < 12 ? 0 : 1, !clock.minuteGiven};
    case EventKind::Neutral:
    case EventKind::None:
        break;
    }
    const bool morning = hour >= 8 && hour < 12;
    return {morning ? 0 : 1, !morning && !clock.minuteGiven && hour != 12};
}

int settleStart(const ClockSpec &clock, const TimeContext &context, bool &assumed) {
    if (clock.meridiem >= 0)
        return withMeridiem(clock, clock.meridiem);
    // "25:30" is on the next day, "24:00" only says midnight.
    if (clock.literal)
        return minutes(clock) == kDay ? 0 : minutes(clock);
    if (context.part != DayPart::None)
        return withMeridiem(clock, byPart(context.part, clock.hour).meridiem);
    if (context.twentyFour && (clock.minuteGiven || clock.hourWord) && !clock.spoken)
        return minutes(clock);
    if (clock.clock24 && !clock.spoken && clock.hour > 5 && (clock.minuteGiven || clock.hourWord) &&
        (context.kind != EventKind::Evening || clock.hour >= kNoEveningHour))
        return minutes(clock);
    // "mecz w niedzielę o 11"
    if (clock.clock24 && !clock.spoken && context.kind == EventKind::Evening &&
        clock.hour >= kNoEveningHour && clock.hour < 12)
        return minutes(clock);
    const Guess guess = byKind(context.kind, clock);
    assumed = guess.assumed;
    return withMeridiem(clock, guess.meridiem);
}

/// The first moment after `start` that shows this clock time.
int settleEnd(const ClockSpec &clock, int start, bool twelveHour) {
    int end = minutes(clock);
    if (clock.meridiem >= 0)
        end = withMeridiem(clock, clock.meridiem);
    else if (!clock.literal && twelveHour)
        end = clock.hour % 12 * kHour + clock.minute;
    const int step = clock.meridiem < 0 && !clock.literal && twelveHour ? kHalfDay : kDay;
    while (end <= start)
        end += step;
    return end;
}

/// "9 - 11.30 am", "11-1pm": the half of the day that makes the shorter range.
int startBefore(const ClockSpec &start, int end) {
    int best = withMeridiem(start, 0);
    const int later = withMeridiem(start, 1);
    if (later < end)
        best = later;
    return best;
}

bool listed(std::string_view zones, std::string_view zone) {
    while (!zone.empty() && !zones.empty()) {
        const auto bar = zones.find('|');
        if (zones.substr(0, bar) == zone)
            return true;
        zones = bar == std::string_view::npos ? std::string_view{} : zones.substr(bar + 1);
    }
    return false;
}

/// Zones for offsets that are no whole hours.
std::string oddZone(int offset) {
    switch (offset) {
    case 5 * kHour + 30:
        return "Asia/Kolkata";
    case 5 * kHour + 45:
        return "Asia/Kathmandu";
    case 3 * kHour + 30:
        return "Asia/Tehran";
    case 4 * kHour + 30:
        return "Asia/Kabul";
    case 6 * kHour + 30:
        return "Asia/Yangon";
    case 9 * kHour + 30:
        return "Australia/Darwin";
    case 8 * kHour + 45:
        return "Australia/Eucla";
    case -(9 * kHour + 30):
        return "Pacific/Marquesas";
    case -(3 * kHour + 30):
        return "America/St_Johns";
    default:
        return {};
    }
}

/// The tz database counts its "Etc" zones westwards.
std::string offsetZone(int offset) {
    if (offset == 0)
        return "UTC";
    if (offset % kHour != 0)
        return oddZone(offset);
    const int hours = offset / kHour;
    return std::string("Etc/GMT") + (hours > 0 ? "-" : "+") + std::to_string(std::abs(hours));
}

bool isKnownZone(std::string_view zone) {
    const auto id = icu::UnicodeString::fromUTF8(
        icu::StringPiece(zone.data(), static_cast<std::int32_t>(zone.size())));
    const std::unique_ptr<icu::TimeZone> found(icu::TimeZone::createTimeZone(id));
    return found && *found != icu::TimeZone::getUnknown();
}

} // namespace

ResolvedTime resolveTime(const TimeMention &mention, const TimeContext &context) {
    ResolvedTime result;
    TimeContext own = context;
    if (mention.part != DayPart::None)
        own.part = mention.part;
    // "午前授業です。下校は12時10分": noon, where the morning is told apart.
    else if (own.part == DayPart::Morning && mention.start.hour == 12)
        own.part = DayPart::None;
    const ClockSpec &start = mention.start;
    // "Night shift: 19:00 to 25 December 7:00": on this clock the hour says which half it is in.
    if (mention.part == DayPart::None && context.twentyFour && start.clock24 && start.minuteGiven &&
        !start.spoken && context.part == DayPart::Night)
        own.part = DayPart::None;
    if (!mention.end) {
        result.start = settleStart(start, own, result.assumed);
        return result;
    }
    const ClockSpec &end = *mention.end;
    const bool open = start.meridiem < 0 && !start.literal;
    if (open && end.meridiem >= 0) {
        int until = withMeridiem(end, end.meridiem);
        until = until == 0 ? kDay : until;
        result.start = startBefore(start, until);
        result.end = until > result.start ? until : until + kDay;
        return result;
    }
    const bool literalEnd = end.literal && end.hour > 12;
    if (open && (literalEnd || context.twentyFour) &&
        start.hour * kHour + start.minute < minutes(end)) {
        // "von halb acht bis 21 Uhr": the dial has twelve hours.
        result.start =
            start.spoken && literalEnd ? startBefore(start, minutes(end)) : minutes(start);
        result.end = minutes(end);
        return result;
    }
    // "birthday party 10-12", "11-1": hardly late at night. Hours that are counted on end at noon
    // with 12, at midnight with 24.
    if (open && own.kind == EventKind::Evening && own.part == DayPart::None &&
        (start.hour >= kNoEveningHour || (start.clock24 && end.hour == 12)) && start.hour < 12 &&
        !literalEnd)
        own.part = DayPart::Morning;
    result.start = settleStart(start, own, result.assumed);
    const bool twelveHour = start.meridiem >= 0 || !start.literal;
    result.end = settleEnd(end, result.start, twelveHour);
    return result;
}

std::string resolveZone(const TimeMention &mention, std::string_view userZone) {
    if (mention.hasOffset)
        return offsetZone(mention.offsetMinutes);
    if (mention.zone.empty())
        return {};
    if (listed(mention.zone, userZone))
        return std::string(userZone);
    const std::string first(mention.zone.substr(0, mention.zone.find('|')));
    return !mention.zoneWritten || isKnownZone(first) ? first : std::string();
}

} // namespace pindle::conversion
