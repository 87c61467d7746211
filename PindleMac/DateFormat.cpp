#include "PindleMac/DateFormat.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <string_view>
#include <unicode/basictz.h>
#include <unicode/gregocal.h>
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

std::unique_ptr<icu::SimpleDateFormat> makeFormatter(const TimeZone &zone, const QString &pattern) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale posix("en_US_POSIX");
    auto formatter = std::make_unique<icu::SimpleDateFormat>(toIcu(pattern), posix, status);
    auto calendar = std::make_unique<icu::GregorianCalendar>(
        icu::TimeZone::createTimeZone(toIcu(zone.identifier)), posix, status);
    if (U_FAILURE(status))
        return nullptr;
    formatter->adoptCalendar(calendar.release());
    formatter->setLenient(false);
    return formatter;
}

/// The formatter of that zone and pattern, or null. Making one takes a hundred times as long as
/// using it, and every key stroke in the form uses several; a thread keeps the few it needs.
icu::SimpleDateFormat *formatterFor(const TimeZone &zone, const QString &pattern) {
    using Formatters =
        std::map<std::pair<QString, QString>, std::unique_ptr<icu::SimpleDateFormat>>;
    constexpr std::size_t mostKept = 16;
    thread_local Formatters formatters;
    const std::pair key(zone.identifier, pattern);
    if (const auto found = formatters.find(key); found != formatters.end())
        return found->second.get();
    if (formatters.size() >= mostKept)
        formatters.clear();
    return formatters.emplace(key, makeFormatter(zone, pattern)).first->second.get();
}

/// Milliseconds the zone is ahead of UTC at a wall-clock time; in a gap and in an overlap the
/// offset before the change.
double offsetAtWallClock(UDate wallClock, const TimeZone &zone) {
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
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString canonical;
    UBool isSystemId = false;
    icu::TimeZone::getCanonicalID(toIcu(identifier), canonical, isSystemId, status);
    return U_SUCCESS(status) && isSystemId && canonical != icu::UnicodeString(u"Etc/Unknown");
}

QString formatDate(std::chrono::sys_seconds instant, const TimeZone &zone, const QString &pattern) {
    const auto *formatter = formatterFor(zone, pattern);
    if (!formatter)
        return QString();
    icu::UnicodeString text;
    formatter->format(static_cast<UDate>(instant.time_since_epoch().count()) * U_MILLIS_PER_SECOND,
                      text);
    return QString::fromUtf16(text.getBuffer(), text.length());
}

std::optional<std::chrono::sys_seconds> parseDate(const QString &text, const TimeZone &zone,
                                                  const QString &pattern) {
    // Read as a wall clock first: in a zone, the strict reader refuses the times that a change to
    // daylight saving skips.
    const auto *formatter = formatterFor({QStringLiteral("UTC")}, pattern);
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
