#include "PindleMac/platform/linux/eventstore/VTimezone.h"

#include <QDateTime>
#include <QList>
#include <QMap>
#include <optional>

namespace pindle {

namespace {

using std::chrono::days;
using std::chrono::seconds;
using std::chrono::sys_seconds;

constexpr days lookAhead{366 * 7}; ///< so many years show whether a yearly rule holds
constexpr int fewestYears = 6;     ///< of one observance, to take it for a yearly rule
constexpr qsizetype mostObservances = 128;
constexpr days farthestShift{1};   ///< no zone ever shifted its clocks by more
const QDate beginning(1601, 1, 1); ///< an onset before every event, for a zone without any

/// One change of a zone's offset.
struct Onset {
    sys_seconds at;
    int offsetBefore;
    int offsetAfter;
    bool daylight;
    QString abbreviation;

    /// The local date and time at which clocks are moved, by the clocks before.
    QDateTime local() const {
        return QDateTime::fromSecsSinceEpoch(at.time_since_epoch().count() + offsetBefore, Qt::UTC);
    }
};

/// "The second Sunday in March", or the last one with -1.
struct YearlyRule {
    int month;
    int weekday; ///< 1 Monday to 7 Sunday
    int ordinal;
};

QDateTime toDateTime(sys_seconds instant) {
    return QDateTime::fromSecsSinceEpoch(instant.time_since_epoch().count(), Qt::UTC);
}

Onset toOnset(const QTimeZone &zone, const QTimeZone::OffsetData &data) {
    const sys_seconds at{seconds{data.atUtc.toSecsSinceEpoch()}};
    return {at, utcOffset(zone, at - seconds{1}), data.offsetFromUtc, data.daylightTimeOffset != 0,
            data.abbreviation};
}

/// The change in force at `first`, and those after it.
QList<Onset> onsets(const QTimeZone &zone, sys_seconds first, sys_seconds last) {
    QList<Onset> result;
    const auto inForce = zone.previousTransition(toDateTime(first + seconds{1}));
    if (inForce.atUtc.isValid()) {
        result.append(toOnset(zone, inForce));
    } else {
        const int offset = utcOffset(zone, first);
        const qint64 local = QDateTime(beginning, QTime(0, 0), Qt::UTC).toSecsSinceEpoch();
        result.append({sys_seconds{seconds{local - offset}}, offset, offset, false,
                       zone.abbreviation(toDateTime(first))});
    }
    const QDateTime end = toDateTime(last + lookAhead);
    QDateTime after = toDateTime(first);
    while (result.size() < mostObservances) {
        const auto next = zone.nextTransition(after);
        if (!next.atUtc.isValid() || next.atUtc <= after || next.atUtc > end)
            break;
        result.append(toOnset(zone, next));
        after = next.atUtc;
    }
    return result;
}

/// The rule all of these follow, one each year; nothing when there is none.
std::optional<YearlyRule> yearlyRule(const QList<Onset> &same) {
    if (same.size() < fewestYears)
        return std::nullopt;
    const QDateTime start = same.first().local();
    const int ordinal = (start.date().day() - 1) / 7 + 1;
    bool sameOrdinal = true;
    bool alwaysLast = true;
    int year = start.date().year();
    for (const Onset &onset : same) {
        const QDateTime local = onset.local();
        const QDate date = local.date();
        if (date.year() != year++ || date.month() != start.date().month() ||
            date.dayOfWeek() != start.date().dayOfWeek() || local.time() != start.time() ||
            onset.offsetBefore != same.first().offsetBefore ||
            onset.offsetAfter != same.first().offsetAfter)
            return std::nullopt;
        sameOrdinal = sameOrdinal && (date.day() - 1) / 7 + 1 == ordinal;
        alwaysLast = alwaysLast && date.day() + 7 > date.daysInMonth();
    }
    if (!sameOrdinal && !alwaysLast)
        return std::nullopt;
    return YearlyRule{start.date().month(), start.date().dayOfWeek(), sameOrdinal ? ordinal : -1};
}

icalcomponent *makeObservance(const Onset &onset, const std::optional<YearlyRule> &rule) {
    icalcomponent *observance =
        icalcomponent_new(onset.daylight ? ICAL_XDAYLIGHT_COMPONENT : ICAL_XSTANDARD_COMPONENT);
    const auto add = [observance](icalproperty *property) {
        icalcomponent_add_property(observance, property);
    };
    add(icalproperty_new_dtstart(localTime(onset.at, onset.offsetBefore)));
    add(icalproperty_new_tzoffsetfrom(onset.offsetBefore));
    add(icalproperty_new_tzoffsetto(onset.offsetAfter));
    add(icalproperty_new_tzname(onset.abbreviation.toUtf8().constData()));
    if (rule) {
        static const char *const weekdays[] = {"MO", "TU", "WE", "TH", "FR", "SA", "SU"};
        const QByteArray text =
            QByteArrayLiteral("FREQ=YEARLY;BYMONTH=") + QByteArray::number(rule->month) +
            ";BYDAY=" + QByteArray::number(rule->ordinal) + weekdays[rule->weekday - 1];
        add(icalproperty_new_rrule(icalrecurrencetype_from_string(text.constData())));
    }
    return observance;
}

/// Adds these onsets as two observances that alternate by a rule each; false when they do not.
bool addYearly(icalcomponent *component, const QList<Onset> &onsets) {
    QMap<int, QList<Onset>> byOffset;
    for (const Onset &onset : onsets)
        byOffset[onset.offsetAfter].append(onset);
    const auto lower = yearlyRule(byOffset.first());
    const auto higher = yearlyRule(byOffset.last());
    if (byOffset.size() != 2 || !lower || !higher)
        return false;
    icalcomponent_add_component(component, makeObservance(byOffset.first().first(), lower));
    icalcomponent_add_component(component, makeObservance(byOffset.last().first(), higher));
    return true;
}

} // namespace

int utcOffset(const QTimeZone &zone, sys_seconds instant) {
    return zone.offsetFromUtc(toDateTime(instant));
}

icaltimetype localTime(sys_seconds instant, int offset) {
    const QDateTime local = toDateTime(instant + seconds{offset});
    icaltimetype time = icaltime_null_time();
    time.year = local.date().year();
    time.month = local.date().month();
    time.day = local.date().day();
    time.hour = local.time().hour();
    time.minute = local.time().minute();
    time.second = local.time().second();
    return time;
}

bool isAmbiguousIn(const QTimeZone &zone, sys_seconds instant) {
    const int offset = utcOffset(zone, instant);
    for (const sys_seconds nearby : {instant - farthestShift, instant + farthestShift}) {
        const int other = utcOffset(zone, nearby);
        const sys_seconds twin = instant + seconds{offset - other};
        if (other != offset && utcOffset(zone, twin) == other)
            return true;
    }
    return false;
}

icalcomponent *makeVTimezone(const QTimeZone &zone, sys_seconds first, sys_seconds last) {
    icalcomponent *component = icalcomponent_new(ICAL_VTIMEZONE_COMPONENT);
    icalcomponent_add_property(component, icalproperty_new_tzid(zone.id().constData()));

    const QList<Onset> all = onsets(zone, first, last);
    qsizetype single = 0; // so many before the yearly rules begin
    while (single < all.size() && !addYearly(component, all.mid(single)))
        ++single;
    const QList<Onset> changes = all.first(single);
    for (const Onset &onset : changes)
        icalcomponent_add_component(component, makeObservance(onset, std::nullopt));
    return component;
}

} // namespace pindle
