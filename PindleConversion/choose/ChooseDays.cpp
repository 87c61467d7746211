#include "PindleConversion/choose/Chooser.h"

#include <algorithm>

namespace pindle::conversion {

std::optional<ResolvedDate> Chooser::inNamedWeek(std::size_t i) const {
    constexpr std::uint32_t kReach = 5;
    if (i == 0)
        return std::nullopt;
    const DateMention &week = m_found.dates[i - 1];
    DateMention day = m_found.dates[i];
    if (week.first.base == DateSpec::Base::Calendar && isBareWeekday(day))
        return inWeekOf(week, day);
    if (m_document.conversation && isBareWeekday(day))
        if (const auto date = inAskedWeek(i))
            return date;
    if (!isLaterWeek(week) || !isBareWeekday(day) || day.span.begin - week.span.end > kReach ||
        !m_document.sameSentence(week.span.begin, day.span.begin) ||
        roleOf(week.span.begin) == Role::MovedFrom)
        return std::nullopt;
    for (std::uint32_t k = week.span.end; k < day.span.begin; ++k)
        if (m_document.tokens[k].kind == TokenKind::Symbol && m_document.tokens[k].symbol != '\'')
            return std::nullopt;
    day.first.which = week.first.which;
    return resolveDate(day, m_reference);
}

bool Chooser::isLaterWeek(const DateMention &mention) {
    return mention.first.base == DateSpec::Base::Week && mention.first.months == 0 &&
           (mention.first.which == Which::Next || mention.first.which == Which::AfterNext);
}

std::optional<ResolvedDate> Chooser::inAskedWeek(std::size_t i) const {
    constexpr std::size_t kReach = 5;
    DateMention day = m_found.dates[i];
    if (!fieldOf(day.span.begin).spoken)
        return std::nullopt;
    for (std::size_t k = i; k > 0 && i - k < kReach; --k) {
        const DateMention &before = m_found.dates[k - 1];
        if (isLaterWeek(before) && roleOf(before.span.begin) == Role::None) {
            day.first.which = before.first.which;
            return resolveDate(day, m_reference);
        }
        if (!isBareWeekday(before))
            return std::nullopt;
    }
    return std::nullopt;
}

bool Chooser::isFirstOfWeek(const DateMention &mention) const {
    constexpr std::uint32_t kLongest = 5; ///< with "the" or a weekday's name
    const std::uint32_t at = mention.span.begin;
    const Reader reader(m_document, at);
    for (std::uint32_t k = 1; k <= std::min(kLongest, at); ++k)
        if (const Sense *of = reader.sense(at - k, Meaning::WeekOf))
            return at - k + of->length + 1 >= at;
    return false;
}

std::optional<ResolvedDate> Chooser::inWeekOf(const DateMention &week,
                                              const DateMention &day) const {
    constexpr std::uint32_t kReach = 6;
    if (day.span.begin - week.span.end > kReach || !isFirstOfWeek(week))
        return std::nullopt;
    auto date = resolveDate(week, m_reference);
    if (!date)
        return std::nullopt;
    const auto first = static_cast<int>(std::chrono::weekday(date->first).iso_encoding());
    date->first += std::chrono::days(day.first.weekday - first);
    date->last.reset();
    return date;
}

std::optional<ResolvedDate> Chooser::inNamedMonth(std::size_t i) const {
    DateMention day = m_found.dates[i];
    // "from 11 October, moved to the 25th"
    if (!isBareDay(day) || m_dates.empty() ||
        !(day.weak || roleOf(day.span.begin) == Role::MovedTo))
        return std::nullopt;
    const Dated &before = m_dates.back();
    const std::chrono::year_month_day named(before.date.last.value_or(before.date.first));
    if (before.mention->first.base != DateSpec::Base::Calendar ||
        !m_document.sameSentence(before.mention->span.begin, day.span.begin) ||
        day.first.day <= static_cast<int>(static_cast<unsigned>(named.day())))
        return std::nullopt;
    day.first.base = DateSpec::Base::Calendar;
    day.first.year = static_cast<int>(named.year());
    day.first.month = static_cast<int>(static_cast<unsigned>(named.month()));
    return resolveDate(day, m_reference);
}

bool Chooser::isBareDay(const DateMention &mention) {
    return mention.first.base == DateSpec::Base::DayOnly && !mention.first.monthGiven &&
           mention.first.month == 0 && !mention.last;
}

bool Chooser::isBareWeekday(const DateMention &mention) {
    return mention.first.base == DateSpec::Base::Weekday && mention.first.which == Which::Nearest &&
           mention.first.days == 0 && !mention.last && !mention.repeated;
}

bool Chooser::isTurnedDown(const Dated &dated) const {
    if (m_dates.size() < 2)
        return false;
    const std::uint32_t at = dated.mention->span.begin;
    const auto turnsDown = [&](const RoleMention &role) {
        return role.role == Role::MovedFrom && role.token > at;
    };
    const auto isTheDay = [&](const Dated &other) {
        return other.mention->span.begin > at && other.date.first == dated.date.first &&
               roleOf(other.mention->span.begin) == Role::MovedFrom;
    };
    return std::any_of(m_found.roles.begin(), m_found.roles.end(), turnsDown) &&
           std::any_of(m_dates.begin(), m_dates.end(), isTheDay);
}

void Chooser::settleLaterWeeks() {
    constexpr std::uint32_t kReach = 12;
    constexpr auto kWeek = std::chrono::days(7);
    for (const RoleMention &role : m_found.roles) {
        if (role.role != Role::Later)
            continue;
        const auto day = std::find_if(m_dates.rbegin(), m_dates.rend(), [&](const Dated &dated) {
            return dated.mention->span.end <= role.token;
        });
        if (day == m_dates.rend() || role.token - day->mention->span.end > kReach)
            continue;
        const DateSpec &spec = day->mention->first;
        if (spec.base == DateSpec::Base::Weekday && !day->mention->repeated && !day->date.last &&
            (spec.which == Which::Nearest || spec.which == Which::This)) {
            day->date.first += kWeek;
            return;
        }
    }
}

void Chooser::settleNamedDays() {
    for (std::size_t i = 1; i < m_dates.size(); ++i) {
        Dated &day = m_dates[i];
        const DateSpec &spec = day.mention->first;
        if (!isBareWeekday(*day.mention))
            continue;
        for (std::size_t k = 0; k < i; ++k) {
            const Dated &named = m_dates[k];
            const DateMention &date = *named.mention;
            if (date.first.base != DateSpec::Base::Calendar || isPast(named))
                continue;
            if (date.first.weekday == spec.weekday)
                day.date.first = named.date.first;
            else if (date.last && named.date.last && date.last->weekday == spec.weekday)
                day.date.first = *named.date.last;
            else
                continue;
            day.again = true;
            break;
        }
    }
}

bool Chooser::isLaterItem(const Dated &dated) const {
    const auto opens = [&](const Dated &item) {
        const std::uint32_t begin = item.mention->span.begin;
        const Field &field = fieldOf(begin);
        return field.begin == begin && field.label == Label::None && !field.spoken &&
               (item.mention->first.base == DateSpec::Base::Calendar || hasTimeNear(begin));
    };
    return opens(dated) && std::any_of(m_dates.begin(), m_dates.end(), [&](const Dated &other) {
               return other.mention->span.begin < dated.mention->span.begin && !isPast(other) &&
                      fieldOf(other.mention->span.begin).line + 2 >=
                          fieldOf(dated.mention->span.begin).line &&
                      opens(other);
           });
}

bool Chooser::isBeforeNearer(const Dated &dated) const {
    /// A day without a year that was not long ago comes round again so late.
    constexpr auto kJustOver = std::chrono::days(275);
    const auto isWritten = [](const Dated &each) {
        return each.mention->first.base == DateSpec::Base::Calendar;
    };
    if (dated.date.first <= m_reference.today + kJustOver || dated.date.yearGiven ||
        !isWritten(dated) || roleOf(dated.mention->span.begin) == Role::MovedTo)
        return false;
    return std::any_of(m_dates.begin(), m_dates.end(), [&](const Dated &other) {
        return other.mention->span.begin > dated.mention->span.begin && isWritten(other) &&
               !other.mention->weak && !isPast(other) &&
               other.date.first + kJustOver / 2 < dated.date.first &&
               roleOf(other.mention->span.begin) == Role::None;
    });
}

bool Chooser::isStamp(const Dated &dated) const {
    return std::any_of(m_found.times.begin(), m_found.times.end(), [&](const TimeMention &time) {
        return time.start.seconds && time.span.begin <= dated.mention->span.end + 1 &&
               time.span.begin >= dated.mention->span.end;
    });
}

bool Chooser::followsDate(const Dated &dated) const {
    const std::uint32_t at = dated.mention->span.begin;
    const bool aside = dated.mention->first.base == DateSpec::Base::Weekday && isInBrackets(at);
    const bool written = dated.mention->first.base == DateSpec::Base::Calendar;
    return std::any_of(m_dates.begin(), m_dates.end(), [&](const Dated &other) {
        // "cena di Natale il 18": a holiday that names the event is none of the days.
        const bool before = other.mention->span.begin < at && !isPast(other) &&
                            m_document.tokens[other.mention->span.begin].used &&
                            other.mention->first.base == DateSpec::Base::Calendar &&
                            roleOf(other.mention->span.begin) == Role::None;
        return before && (aside || (written && isListed(other.mention->span, dated.mention->span)));
    });
}

bool Chooser::tellsOpeningHours(const Dated &dated) const {
    if (dated.mention->first.base != DateSpec::Base::Weekday || !dated.mention->last)
        return false;
    return std::any_of(m_dates.begin(), m_dates.end(), [&](const Dated &other) {
        return other.mention->first.base == DateSpec::Base::Calendar && other.mention->last;
    });
}

bool Chooser::labelHas(std::uint32_t token, Meaning meaning) const {
    const TokenSpan label = fieldOf(token).labelWords;
    return !label.empty() && Reader(m_document, label.end).has(label.begin, meaning);
}

bool Chooser::isHoursOnly(const Dated &dated) const {
    const std::uint32_t token = dated.mention->span.begin;
    const auto says = [&](Meaning meaning) {
        return labelHas(token, meaning) || sentenceHas(token, meaning);
    };
    const DateSpec::Base base = dated.mention->first.base;
    const bool days = (base == DateSpec::Base::Weekday && dated.mention->last) ||
                      (base == DateSpec::Base::Weekend && m_document.tokens[token].unspaced);
    // "Mon, Wed, Fri 10-18, Tue, Thu 12-19, Sat closed"
    constexpr std::size_t kMany = 3;
    const bool many = base == DateSpec::Base::Weekday && m_dates.size() >= kMany;
    if ((days && says(Meaning::Daily)) || ((days || many) && isTimetable()))
        return true;
    // "Chiuso il lunedì"
    const Reader reader(m_document, dated.mention->span.end);
    const bool article =
        reader.has(token, Meaning::The) || (token > 0 && reader.has(token - 1, Meaning::The));
    if (base == DateSpec::Base::Weekday && m_found.times.empty() && m_dates.size() == 1 &&
        article && says(Meaning::Opening) && !sentenceHas(token, Meaning::Event))
        return true;
    // "open Tuesday to Sunday": an exhibition may be an event, a shop is none.
    return (dated.mention->repeated || spansMostDays(dated)) && says(Meaning::Opening) &&
           !sentenceHas(token, Meaning::Event);
}

bool Chooser::isTimetable() const {
    constexpr std::size_t kReach = 300; ///< tokens
    const bool weekdays = std::all_of(m_dates.begin(), m_dates.end(), [&](const Dated &dated) {
        return dated.mention->first.base == DateSpec::Base::Weekday ||
               dated.mention->first.base == DateSpec::Base::Weekend || dated.mention->holiday;
    });
    const std::uint32_t end =
        static_cast<std::uint32_t>(std::min(m_document.tokens.size(), kReach));
    const Reader reader(m_document, end);
    const auto ranges = std::count_if(m_dates.begin(), m_dates.end(), [](const Dated &dated) {
        return dated.mention->last.has_value();
    });
    // "Mon-Fri 7.30-16.30, Sat-Sun 9-15", "Opening hours of the reuse centre: ..."
    if (weekdays && (ranges > 1 || reader.has(0, Meaning::Opening)))
        return true;
    bool opening = false;
    for (std::uint32_t i = 0; weekdays && i < end;) {
        const Sense *open = reader.sense(i, Meaning::Opening);
        open = open ? open : reader.sense(i, Meaning::Daily);
        if (!open && reader.has(i, Meaning::Event))
            return false;
        opening = opening || open;
        i += open ? open->length : 1U;
    }
    return opening;
}

bool Chooser::spansMostDays(const Dated &dated) const {
    constexpr auto kMostDays = std::chrono::days(3);
    constexpr int kBeside = 3;
    if (dated.mention->first.base != DateSpec::Base::Weekday)
        return false;
    if (dated.mention->last)
        return dated.date.last && *dated.date.last - dated.date.first >= kMostDays;
    return std::any_of(m_dates.begin(), m_dates.end(), [&](const Dated &other) {
        const TokenSpan mine = dated.mention->span;
        const TokenSpan its = other.mention->span;
        const TokenSpan first = mine.begin < its.begin ? mine : its;
        const TokenSpan last = mine.begin < its.begin ? its : mine;
        return other.mention != dated.mention &&
               other.mention->first.base == DateSpec::Base::Weekday &&
               m_document.sameSentence(mine.begin, its.begin) && gap(first, last) < kBeside &&
               Reader(m_document, last.begin).has(first.end, Meaning::RangeTo);
    });
}

} // namespace pindle::conversion
