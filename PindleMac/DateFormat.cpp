#include "PindleMac/DateFormat.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QTimeZone>
#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <tuple>
#include <unicode/basictz.h>
#include <unicode/gregocal.h>
#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace pindle {

namespace {

icu::UnicodeString toIcu(const QString &text) {
    return icu::UnicodeString(reinterpret_cast<const char16_t *>(text.utf16()),
                              static_cast<int32_t>(text.size()));
}

// Three-letter names that ICU keeps for old programs and the tz database does not have; some mean
// another place than a reader would think (BST is Dhaka there).
constexpr std::array<std::u16string_view, 25> icuOnlyNames = {
    u"ACT", u"AET", u"AGT", u"ART", u"AST", u"BET", u"BST", u"CAT", u"CNT",
    u"CST", u"CTT", u"EAT", u"ECT", u"IET", u"IST", u"JST", u"MIT", u"NET",
    u"NST", u"PLT", u"PNT", u"PRT", u"PST", u"SST", u"VST",
};

/// Seconds; no zone ever shifted its clocks by more.
constexpr qint64 farthestShift = qint64{24} * 60 * 60;

bool isIcuZone(const QString &identifier) {
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString canonical;
    UBool isSystemId = false;
    icu::TimeZone::getCanonicalID(toIcu(identifier), canonical, isSystemId, status);
    return U_SUCCESS(status) && isSystemId && canonical != icu::UnicodeString(u"Etc/Unknown");
}

/// A zone that only the system's tz database knows, which is updated more often than ICU's; else
/// invalid. Its other editions of the same zones are no names of the database.
QTimeZone systemZone(const QString &identifier) {
    static const QRegularExpression name(
        QStringLiteral("\\A(?!posix/|right/)[A-Z][A-Za-z_]+(/[A-Za-z0-9_+-]+)+\\z"));
    return name.match(identifier).hasMatch() ? QTimeZone(identifier.toLatin1()) : QTimeZone();
}

qint64 systemOffset(const QTimeZone &zone, qint64 instant) {
    return zone.offsetFromUtc(QDateTime::fromSecsSinceEpoch(instant, Qt::UTC));
}

/// Seconds the zone is ahead of UTC at a wall-clock time; in a gap and in an overlap the offset
/// before the change.
qint64 systemOffsetAtWallClock(const QTimeZone &zone, qint64 wallClock) {
    const qint64 before = systemOffset(zone, wallClock - farthestShift);
    const qint64 after = systemOffset(zone, wallClock + farthestShift);
    const bool saysBefore = systemOffset(zone, wallClock - before) == before;
    const bool saysAfter = systemOffset(zone, wallClock - after) == after;
    return saysAfter && !saysBefore ? after : before;
}

/// The offset, in seconds, of a zone that only the system knows; absent for ICU's own.
std::optional<qint64> offsetOnlySystemKnows(const TimeZone &zone, qint64 instant) {
    if (isIcuZone(zone.identifier))
        return std::nullopt;
    const QTimeZone found = systemZone(zone.identifier);
    return found.isValid() ? std::optional(systemOffset(found, instant)) : std::nullopt;
}

std::unique_ptr<icu::TimeZone> icuZone(const TimeZone &zone, std::optional<qint64> offset) {
    const auto id = toIcu(zone.identifier);
    if (!offset)
        return std::unique_ptr<icu::TimeZone>(icu::TimeZone::createTimeZone(id));
    const qint64 milliseconds = *offset * U_MILLIS_PER_SECOND;
    return std::make_unique<icu::SimpleTimeZone>(static_cast<int32_t>(milliseconds), id);
}

std::unique_ptr<icu::SimpleDateFormat> makeFormatter(std::unique_ptr<icu::TimeZone> zone,
                                                     const QString &pattern) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale posix("en_US_POSIX");
    auto formatter = std::make_unique<icu::SimpleDateFormat>(toIcu(pattern), posix, status);
    auto calendar = std::make_unique<icu::GregorianCalendar>(zone.release(), posix, status);
    if (U_FAILURE(status))
        return nullptr;
    formatter->adoptCalendar(calendar.release());
    formatter->setLenient(false);
    return formatter;
}

/// The formatter of that zone and pattern at an instant, or null. Making one takes a hundred times
/// as long as using it, and every key stroke in the form uses several; a thread keeps the few it
/// needs.
icu::SimpleDateFormat *formatterFor(const TimeZone &zone, const QString &pattern, qint64 instant) {
    using Key = std::tuple<QString, std::optional<qint64>, QString>;
    constexpr std::size_t mostKept = 16;
    thread_local std::map<Key, std::unique_ptr<icu::SimpleDateFormat>> formatters;
    const auto offset = offsetOnlySystemKnows(zone, instant);
    const Key key(zone.identifier, offset, pattern);
    if (const auto found = formatters.find(key); found != formatters.end())
        return found->second.get();
    if (formatters.size() >= mostKept)
        formatters.clear();
    return formatters.emplace(key, makeFormatter(icuZone(zone, offset), pattern))
        .first->second.get();
}

/// Milliseconds the zone is ahead of UTC at a wall-clock time; in a gap and in an overlap the
/// offset before the change.
double offsetAtWallClock(UDate wallClock, const TimeZone &zone) {
    if (!isIcuZone(zone.identifier)) {
        if (const QTimeZone system = systemZone(zone.identifier); system.isValid()) {
            const auto seconds = static_cast<qint64>(wallClock / U_MILLIS_PER_SECOND);
            return static_cast<double>(systemOffsetAtWallClock(system, seconds)) *
                   U_MILLIS_PER_SECOND;
        }
    }
    const std::unique_ptr<icu::TimeZone> found(
        icu::TimeZone::createTimeZone(toIcu(zone.identifier)));
    const auto *basic = dynamic_cast<const icu::BasicTimeZone *>(found.get());
    if (!basic)
        return 0;
    int32_t raw = 0;
    int32_t daylight = 0;
    UErrorCode status = U_ZERO_ERROR;
    basic->getOffsetFromLocal(wallClock, UCAL_TZ_LOCAL_FORMER, UCAL_TZ_LOCAL_FORMER, raw, daylight,
                              status);
    return U_SUCCESS(status) ? raw + daylight : 0;
}

} // namespace

bool isKnownTimeZone(const QString &identifier) {
    const std::u16string_view name(reinterpret_cast<const char16_t *>(identifier.utf16()),
                                   static_cast<std::size_t>(identifier.size()));
    if (std::find(icuOnlyNames.begin(), icuOnlyNames.end(), name) != icuOnlyNames.end())
        return false;
    return isIcuZone(identifier) || systemZone(identifier).isValid();
}

QString formatDate(std::chrono::sys_seconds instant, const TimeZone &zone, const QString &pattern) {
    const qint64 seconds = instant.time_since_epoch().count();
    const auto *formatter = formatterFor(zone, pattern, seconds);
    if (!formatter)
        return QString();
    icu::UnicodeString text;
    formatter->format(static_cast<UDate>(seconds) * U_MILLIS_PER_SECOND, text);
    return QString::fromUtf16(text.getBuffer(), text.length());
}

std::optional<std::chrono::sys_seconds> parseDate(const QString &text, const TimeZone &zone,
                                                  const QString &pattern) {
    // Read as a wall clock first: in a zone, the strict reader refuses the times that a change to
    // daylight saving skips.
    const auto *formatter = formatterFor({QStringLiteral("UTC")}, pattern, 0);
    if (!formatter)
        return std::nullopt;
    const icu::UnicodeString source = toIcu(text);
    icu::ParsePosition position(0);
    const UDate wallClock = formatter->parse(source, position);
    if (position.getErrorIndex() >= 0 || position.getIndex() != source.length())
        return std::nullopt;
    const UDate moment = wallClock - offsetAtWallClock(wallClock, zone);
    return std::chrono::sys_seconds(
        std::chrono::seconds(static_cast<qint64>(moment / U_MILLIS_PER_SECOND)));
}

} // namespace pindle
