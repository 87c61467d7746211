#include "PindleConversion/choose/Chooser.h"

#include <algorithm>

namespace pindle::conversion {

bool Chooser::isBareWeekday(const DateMention &mention) {
    return mention.first.base == DateSpec::Base::Weekday && mention.first.which == Which::Nearest &&
           mention.first.days == 0 && !mention.last && !mention.repeated;
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
               hasTimeNear(begin);
    };
    return opens(dated) && std::any_of(m_dates.begin(), m_dates.end(), [&](const Dated &other) {
               return other.mention->span.begin < dated.mention->span.begin && !isPast(other) &&
                      fieldOf(other.mention->span.begin).line + 2 >=
                          fieldOf(dated.mention->span.begin).line &&
                      opens(other);
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
    const bool days = dated.mention->first.base == DateSpec::Base::Weekday && dated.mention->last;
    if (days && says(Meaning::Daily))
        return true;
    // "open Tuesday to Sunday": an exhibition may be an event, a shop is none.
    return (dated.mention->repeated || spansMostDays(dated)) && says(Meaning::Opening) &&
           !sentenceHas(token, Meaning::Event);
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
