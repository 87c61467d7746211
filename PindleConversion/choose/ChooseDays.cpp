#include "PindleConversion/choose/Chooser.h"

#include <algorithm>

namespace pindle::conversion {

void Chooser::settleNamedDays() {
    for (std::size_t i = 1; i < m_dates.size(); ++i) {
        Dated &day = m_dates[i];
        const DateSpec &spec = day.mention->first;
        if (spec.base != DateSpec::Base::Weekday || spec.which != Which::Nearest ||
            day.mention->last || day.mention->repeated || spec.days != 0)
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
               hasTimeBeside(item.mention->span);
    };
    return opens(dated) && std::any_of(m_dates.begin(), m_dates.end(), [&](const Dated &other) {
               return other.mention->span.begin < dated.mention->span.begin && !isPast(other) &&
                      fieldOf(other.mention->span.begin).line + 2 >=
                          fieldOf(dated.mention->span.begin).line &&
                      opens(other);
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

} // namespace pindle::conversion
