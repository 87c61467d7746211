#include "PindleMac/platform/linux/eventstore/IcsEvent.h"

#include "PindleMac/platform/linux/eventstore/VTimezone.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QTimeZone>
#include <QUuid>
#include <algorithm>
#include <memory>

namespace pindle {

namespace {

using std::chrono::sys_seconds;

constexpr int firstYear = 1;
constexpr int lastYear = 9999; ///< a DATE-TIME has four digits for the year

/// The years a lasting definition of a zone is exact for: those of nearly every event, few enough
/// to write down one by one where a zone has no yearly rule, and none in which readers that count
/// time in 32 bits give up.
constexpr sys_seconds lastingFrom{std::chrono::sys_days{std::chrono::January / 1 / 2020}};
constexpr sys_seconds lastingUntil{std::chrono::sys_days{std::chrono::January / 1 / 2038}};

using Component = std::unique_ptr<icalcomponent, decltype(&icalcomponent_free)>;

bool isWritable(sys_seconds instant) {
    // A day inside the limits, so that no zone's clock leaves them.
    using namespace std::chrono;
    return instant >= sys_days{year{firstYear} / January / 2} &&
           instant < sys_days{year{lastYear} / December / 31};
}

bool isUtc(const QString &identifier) {
    static const QStringList names{QStringLiteral("UTC"),       QStringLiteral("Etc/UTC"),
                                   QStringLiteral("UCT"),       QStringLiteral("Etc/UCT"),
                                   QStringLiteral("Zulu"),      QStringLiteral("Etc/Zulu"),
                                   QStringLiteral("Universal"), QStringLiteral("Etc/Universal")};
    return names.contains(identifier);
}

/// Readers look a zone up by its name, so only a name of the tz database is written; the toolkit
/// knows others, such as offsets, as well.
QTimeZone zoneNamed(const QString &identifier) {
    static const QRegularExpression name(QStringLiteral("\\A[A-Za-z0-9/_+-]+\\z"));
    if (isUtc(identifier) || !name.match(identifier).hasMatch())
        return {};
    return QTimeZone(identifier.toLatin1());
}

/// Every kind of line break as a line feed, which the writer escapes; readers differ in which of
/// the others they take for the end of a line. U+0000 would end the text early.
QByteArray plainText(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    QString result;
    result.reserve(text.size());
    for (const QChar c : std::as_const(text)) {
        switch (c.unicode()) {
        case u'\t':
        case u'\n':
            result += c;
            break;
        case u'\r':
        case u'\v':
        case u'\f':
        case 0x0085: // next line
        case 0x2028: // line separator
        case 0x2029: // paragraph separator
            result += QLatin1Char('\n');
            break;
        default:
            if (c.category() != QChar::Other_Control)
                result += c;
        }
    }
    return result.toUtf8();
}

icaltimetype utcTime(sys_seconds instant) {
    icaltimetype time = localTime(instant, 0);
    time.zone = icaltimezone_get_utc_timezone();
    return time;
}

/// `zone` is invalid where times are written in UTC.
icalproperty *timeProperty(icalproperty *(*make)(icaltimetype), sys_seconds instant,
                           const QTimeZone &zone) {
    if (!zone.isValid() || isAmbiguousIn(zone, instant))
        return make(utcTime(instant));
    icalproperty *property = make(localTime(instant, utcOffset(zone, instant)));
    icalproperty_add_parameter(property, icalparameter_new_tzid(zone.id().constData()));
    return property;
}

icalcomponent *makeEvent(const IcsEvent &event, const QByteArray &uid, sys_seconds stamp,
                         const QTimeZone &zone) {
    icalcomponent *component = icalcomponent_new(ICAL_VEVENT_COMPONENT);
    const auto add = [component](icalproperty *property) {
        icalcomponent_add_property(component, property);
    };
    add(icalproperty_new_uid(uid.constData()));
    add(icalproperty_new_dtstamp(utcTime(stamp)));
    add(timeProperty(icalproperty_new_dtstart, event.start, zone));
    add(timeProperty(icalproperty_new_dtend, event.end, zone));
    add(icalproperty_new_summary(plainText(event.title).constData()));
    add(icalproperty_new_location(plainText(event.location).constData()));
    add(icalproperty_new_description(plainText(event.notes).constData()));
    return component;
}

/// The zone to write times in; invalid for UTC.
QTimeZone writtenZone(const IcsEvent &event, IcsTimes times) {
    const auto [first, last] = std::minmax(event.start, event.end);
    if (times == IcsTimes::universal ||
        (times == IcsTimes::lastingZone && (first < lastingFrom || last >= lastingUntil)))
        return {};
    return zoneNamed(event.zone.identifier);
}

icalcomponent *definitionOf(const QTimeZone &zone, const IcsEvent &event, IcsTimes times) {
    if (times == IcsTimes::lastingZone)
        return makeVTimezone(zone, lastingFrom, lastingUntil);
    const auto [first, last] = std::minmax(event.start, event.end);
    return makeVTimezone(zone, first, last);
}

} // namespace

std::optional<QByteArray> icsText(const IcsEvent &event, const QByteArray &uid, sys_seconds stamp,
                                  IcsTimes times) {
    if (!isWritable(event.start) || !isWritable(event.end))
        return std::nullopt;
    const QTimeZone zone = writtenZone(event, times);

    const Component calendar(icalcomponent_new(ICAL_VCALENDAR_COMPONENT), icalcomponent_free);
    icalcomponent_add_property(calendar.get(), icalproperty_new_prodid("-//Pindle//Pindle//EN"));
    icalcomponent_add_property(calendar.get(), icalproperty_new_version("2.0"));
    if (zone.isValid())
        icalcomponent_add_component(calendar.get(), definitionOf(zone, event, times));
    icalcomponent_add_component(calendar.get(), makeEvent(event, uid, stamp, zone));

    const std::unique_ptr<char, decltype(&icalmemory_free_buffer)> text(
        icalcomponent_as_ical_string_r(calendar.get()),
        [](void *buffer) { icalmemory_free_buffer(buffer); });
    return QByteArray(text.get());
}

QByteArray newEventIdentifier() {
    return QUuid::createUuid().toByteArray(QUuid::WithoutBraces) +
           QByteArrayLiteral("@pindle.localhost");
}

const IcsEvent &eventToSave(const EKEvent &event, EKAuthorizationStatus status) {
    const auto *own = dynamic_cast<const IcsEvent *>(&event);
    if (!own)
        throw PlatformError(QStringLiteral("The event belongs to another calendar."));
    if (status != EKAuthorizationStatus::writeOnly)
        throw PlatformError(QStringLiteral("Pindle may not add events to the calendar."));
    return *own;
}

PlatformError yearNotWritable() {
    return PlatformError(QStringLiteral("The event was not saved: its year cannot be written in a "
                                        "calendar."));
}

} // namespace pindle
