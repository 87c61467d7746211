#include "PindleConversion/resolve/Resolve.h"

#include <memory>

#include <unicode/basictz.h>

namespace pindle::conversion {

ClockChange clockChangeAt(Day day, int minuteOfDay, const std::string &zone) {
    constexpr int kLastChange = 4 * 60; ///< minute of the day
    constexpr double kMinute = 60'000.0;
    if (minuteOfDay < 0 || minuteOfDay >= kLastChange || zone.empty())
        return ClockChange::None;
    const std::unique_ptr<icu::TimeZone> found(
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zone)));
    const auto *rules = dynamic_cast<const icu::BasicTimeZone *>(found.get());
    if (!rules)
        return ClockChange::None;
    const auto local =
        static_cast<double>(std::chrono::sys_seconds(day).time_since_epoch().count()) * 1000.0 +
        minuteOfDay * kMinute;
    const auto offset = [&](UTimeZoneLocalOption option) {
        std::int32_t raw = 0;
        std::int32_t saved = 0;
        UErrorCode status = U_ZERO_ERROR;
        rules->getOffsetFromLocal(local, option, option, raw, saved, status);
        return raw + saved;
    };
    const std::int32_t before = offset(UCAL_TZ_LOCAL_FORMER);
    const std::int32_t after = offset(UCAL_TZ_LOCAL_LATTER);
    if (before == after)
        return ClockChange::None;
    // Where both readings come back to the local time they were made from, it comes twice.
    std::int32_t raw = 0;
    std::int32_t saved = 0;
    UErrorCode status = U_ZERO_ERROR;
    rules->getOffset(local - before, 0, raw, saved, status);
    return raw + saved == before ? ClockChange::Repeated : ClockChange::Skipped;
}

} // namespace pindle::conversion
