#include "PindleConversion/choose/Chooser.h"

#include <algorithm>

namespace pindle::conversion {

namespace {

constexpr int kMinutesInDay = 24 * 60;
constexpr int kLastOnDial = 12;

} // namespace

void Chooser::pickEnd() {
    // "Outbound: ... 06:10 → Faro 09:00" ends before the journey back.
    const auto next = static_cast<std::size_t>(m_time) + 1;
    const bool joined = m_time >= 0 && !m_choice.endMinute && next < m_found.times.size() &&
                        isJoined(m_found.times[next - 1], m_found.times[next]) &&
                        nothingBetween(m_found.times[next - 1].span, m_found.times[next].span);
    if ((joined && travelEnd()) || (endsInLine() && endFromTime()) || endOnLaterDay())
        return;
    if (!m_choice.startMinute || m_choice.endMinute) {
        lengthInDays();
        return;
    }
    if (!endOfLastDay() && !endFromSecondDay() && !endFromTime())
        endFromLength();
}

bool Chooser::endsInLine() const {
    const auto next = static_cast<std::size_t>(m_time) + 1;
    if (m_time < 0 || m_date < 0 || m_choice.endMinute || next >= m_found.times.size())
        return false;
    const std::uint32_t start = m_choice.timeSpan.begin;
    const std::uint32_t end = m_found.times[next].span.begin;
    return m_document.tokens[start].field == m_document.tokens[end].field &&
           m_document.tokens[start].field == m_document.tokens[m_choice.dateSpan.begin].field &&
           roleOf(end) == Role::End &&
           std::none_of(m_dates.begin(), m_dates.end(), [&](const Dated &dated) {
               const std::uint32_t at = dated.mention->span.begin;
               return at > start && m_document.tokens[at].field == m_document.tokens[end].field;
           });
}

bool Chooser::tellsEnd(std::uint32_t token) const {
    return fieldOf(token).label == Label::End || roleOf(token) == Role::End;
}

bool Chooser::saysRoleBetween(TokenSpan first, TokenSpan second) const {
    return std::any_of(m_found.roles.begin(), m_found.roles.end(), [&](const RoleMention &role) {
        return role.token >= first.end && role.token < second.begin;
    });
}

const TimeMention *Chooser::timeBeside(const Dated &dated) const {
    constexpr int kReach = 6;
    const TimeMention *best = nullptr;
    int nearest = kReach;
    for (const TimeMention &time : m_found.times) {
        const int away = gap(dated.mention->span, time.span);
        const bool together = m_document.sameSentence(time.span.begin, dated.mention->span.begin) ||
                              (m_document.tokens[time.span.begin].field ==
                                   m_document.tokens[dated.mention->span.begin].field &&
                               fieldOf(time.span.begin).label == Label::End);
        const bool start = m_time >= 0 && &time == &m_found.times[static_cast<std::size_t>(m_time)];
        if (!together || start || away >= nearest)
            continue;
        // "there by eleven, and back Monday night": the end has another hour, or none.
        if (time.span.end <= dated.mention->span.begin && tellsEnd(dated.mention->span.begin) &&
            saysRoleBetween(time.span, dated.mention->span))
            continue;
        nearest = away;
        best = &time;
    }
    return best;
}

Day Chooser::behindStart(const Dated &dated) const {
    if (dated.date.first > m_choice.start || !isBareWeekday(*dated.mention))
        return dated.date.first;
    Reference from = m_reference;
    from.today = m_choice.start;
    return resolveDate(*dated.mention, from).value_or(dated.date).first;
}

bool Chooser::endOnLaterDay() {
    constexpr auto kLongest = std::chrono::days(100);
    if (m_date < 0 || m_choice.last || m_choice.endMinute)
        return false;
    const bool stay = roleOf(m_choice.dateSpan.begin) == Role::End;
    for (const Dated &dated : m_dates) {
        const std::uint32_t at = dated.mention->span.begin;
        // "Labour Day: closed from Friday 1 to Sunday 3 May" names its first day twice.
        if (!m_choice.startMinute && dated.date.last && dated.date.first == m_choice.start) {
            m_choice.last = dated.date.last;
            m_choice.endSpan = dated.mention->span;
            return true;
        }
        if (at < m_choice.dateSpan.end)
            continue;
        // "school finishes at noon on Friday for the Christmas holidays"
        constexpr std::uint32_t kLongestRole = 3;
        const Reader reader(m_document, at);
        if (dated.mention->holiday && fieldOf(at).label != Label::End &&
            !reader.senseBefore(at, Meaning::RoleWord, kLongestRole))
            continue;
        const Day day = behindStart(dated);
        if (day <= m_choice.start || day > m_choice.start + kLongest ||
            !(stay || tellsEnd(at) || isDayOfEnd(dated)))
            continue;
        const TimeMention *time = timeBeside(dated);
        if (!time && isOpenUntil(dated))
            continue;
        m_choice.last = day;
        m_choice.endSpan = dated.mention->span;
        if (time && m_choice.startMinute) {
            m_choice.endMinute = resolveTime(*time, contextOf(*time)).start;
            m_choice.endSpan = time->span;
        }
        return true;
    }
    return endOfNamedRange();
}

bool Chooser::isDayOfEnd(const Dated &dated) const {
    const std::uint32_t at = dated.mention->span.begin;
    if (at == 0 || m_document.tokens[at - 1].symbol != '(')
        return false;
    return std::any_of(m_found.times.begin(), m_found.times.end(), [&](const TimeMention &time) {
        return time.span.end == at - 1 && tellsEnd(time.span.begin);
    });
}

bool Chooser::endOfNamedRange() {
    const DateSpec &chosen = m_dates[static_cast<std::size_t>(m_date)].mention->first;
    if (chosen.base != DateSpec::Base::Weekday)
        return false;
    for (const Dated &dated : m_dates) {
        if (dated.mention->first.base != DateSpec::Base::Calendar || !dated.date.last ||
            dated.date.first != m_choice.start ||
            dated.mention->span.begin > m_choice.dateSpan.begin)
            continue;
        m_choice.last = dated.date.last;
        m_choice.endSpan = dated.mention->span;
        return true;
    }
    return false;
}

bool Chooser::isOpenUntil(const Dated &dated) const {
    constexpr auto kLongest = std::chrono::days(14);
    const std::uint32_t at = dated.mention->span.begin;
    return m_choice.startMinute && fieldOf(at).label == Label::None &&
           (dated.date.first > m_choice.start + kLongest ||
            dated.mention->first.base == DateSpec::Base::Weekday ||
            sentenceHas(at, Meaning::Opening)) &&
           !m_document.sameSentence(at, m_choice.dateSpan.begin);
}

bool Chooser::endOfLastDay() {
    if (!m_choice.last)
        return false;
    for (const Dated &dated : m_dates) {
        const TimeMention *time = dated.mention->span.begin > m_choice.dateSpan.end &&
                                          dated.date.first == *m_choice.last && !dated.date.last
                                      ? timeBeside(dated)
                                      : nullptr;
        if (!time || roleOf(time->span.begin) != Role::End)
            continue;
        m_choice.endMinute = resolveTime(*time, contextOf(*time)).start;
        m_choice.endSpan = time->span;
        return true;
    }
    return false;
}

bool Chooser::endFromSecondDay() {
    const Reader reader(m_document, static_cast<std::uint32_t>(m_document.tokens.size()));
    const Sense *to = reader.sense(m_choice.timeSpan.end, Meaning::RangeTo);
    if (!to || m_date < 0)
        return false;
    const std::uint32_t next = m_choice.timeSpan.end + to->length;
    constexpr std::uint32_t kReach = 2;
    for (const Dated &dated : m_dates) {
        if (dated.mention->span.begin != next || dated.date.first <= m_choice.start)
            continue;
        for (const TimeMention &time : m_found.times) {
            const std::uint32_t end = dated.mention->span.end;
            if (time.span.begin < end || time.span.begin > end + kReach)
                continue;
            m_choice.last = dated.date.first;
            m_choice.endMinute = resolveTime(time, contextOf(time)).start;
            m_choice.endSpan = time.span;
            return true;
        }
    }
    return false;
}

bool Chooser::endFromTime() {
    for (std::size_t i = 0; i < m_found.times.size(); ++i) {
        const TimeMention &time = m_found.times[i];
        if (static_cast<int>(i) == m_time || roleOf(time.span.begin) != Role::End ||
            (m_date >= 0 && belongsToOther(time)))
            continue;
        const Label label = fieldOf(time.span.begin).label;
        const bool near = label == Label::End || nearStart(time.span.begin);
        if (!near)
            continue;
        const ClockSpec &start = m_found.times[static_cast<std::size_t>(m_time)].start;
        ClockSpec until = time.start;
        // "by 2 in the afternoon"
        if (until.meridiem < 0 && until.hour <= kLastOnDial && time.part != DayPart::None)
            until.meridiem = time.part == DayPart::Morning ? 0 : 1;
        // "flight 18:05, check-in until 17:05" does not end the day after.
        constexpr int kLongest = 18 * 60;
        // "6:30 PM (students arrive 6:00)"
        constexpr int kLongestAssumed = 11 * 60;
        const int end = endAfter(until, start);
        const bool assumed = until.meridiem < 0 && !until.literal && !m_twentyFour;
        if (end > *m_choice.startMinute + (assumed ? kLongestAssumed : kLongest))
            continue;
        m_choice.endMinute = end;
        m_choice.endSpan = time.span;
        return true;
    }
    return travelEnd();
}

int Chooser::endAfter(const ClockSpec &end, const ClockSpec &start) const {
    TimeMention known;
    known.start = start;
    known.start.hour = *m_choice.startMinute / 60;
    known.start.minute = *m_choice.startMinute % 60;
    known.start.meridiem = -1;
    known.start.literal = true;
    ClockSpec until = end;
    if (until.meridiem < 0 && !until.literal && !m_twentyFour) {
        int minute = until.hour % 12 * 60 + until.minute;
        while (minute <= *m_choice.startMinute)
            minute += kMinutesInDay / 2;
        return minute;
    }
    known.end = until;
    return resolveTime(known, {}).end.value_or(*m_choice.startMinute);
}

bool Chooser::isAirport(std::uint32_t i) const {
    constexpr std::size_t kCode = 3;
    const Token &token = m_document.token(i);
    const auto code = token.kind == TokenKind::Word ? m_document.slice(token) : std::string_view{};
    return code.size() == kCode &&
           std::all_of(code.begin(), code.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

bool Chooser::isStationBetween(TokenSpan first, TokenSpan second) const {
    if (m_choice.kind != EventKind::Travel || first.begin == 0 || first.end == second.begin ||
        !m_document.tokens[first.begin - 1].upper())
        return false;
    return std::all_of(m_document.tokens.begin() + first.end,
                       m_document.tokens.begin() + second.begin,
                       [](const Token &token) { return token.upper() && !token.used; });
}

bool Chooser::isJoined(const TimeMention &first, const TimeMention &second) const {
    // Names in scripts without spaces are cut in small pieces.
    const std::uint32_t reach = m_document.token(first.span.end).unspaced ? 12 : 9;
    const auto certain = [](const TimeMention &time) {
        return time.start.sure || (time.marked && time.start.minuteGiven);
    };
    if (first.end || second.end || !certain(second) || !certain(first) ||
        second.span.begin - first.span.end > reach ||
        !m_document.sameSentence(first.span.begin, second.span.begin) ||
        roleOf(second.span.begin) != Role::None)
        return false;
    const Reader reader(m_document, second.span.begin);
    bool range = (isAirport(first.span.end) && second.span.begin == first.span.end + 1 &&
                  first.span.begin > 0 && isAirport(first.span.begin - 1)) ||
                 isStationBetween(first.span, second.span);
    for (std::uint32_t k = first.span.end; k < second.span.begin; ++k) {
        // "à 14h et à 16h" are two times.
        // "Groningen P+R" is a name.
        const bool glued = reader.glued(k) && reader.glued(k + 1);
        if (reader.has(k, Meaning::And) && !glued)
            return false;
        // "à 13h, les grands à 15h"
        if (reader.symbol(k, ',') && reader.word(second.span.begin - 1) &&
            reader.has(second.span.begin - 1, Meaning::TimeMarker))
            return false;
        // "Confins 18h10 / Salvador 20h00"
        const bool stops = m_choice.kind == EventKind::Travel && reader.symbol(k, '/') &&
                           k == first.span.end && k + 1 < second.span.begin;
        // "église Ste-Anne", "9:00 check-in, 9:30 launch"
        const bool inName = glued && reader.symbol(k, '-') && reader.word(k - 1) &&
                            reader.word(k + 1) && !m_document.tokens[k - 1].used;
        range = range || stops ||
                (reader.has(k, Meaning::RangeTo) && !m_document.tokens[k].used && !inName);
    }
    return range;
}

bool Chooser::nothingBetween(TokenSpan first, TokenSpan second) const {
    for (std::uint32_t k = first.end; k < second.begin; ++k)
        if (m_document.tokens[k].used)
            return false;
    return true;
}

bool Chooser::isBelowOrBeside(const Field &first, const Field &second) {
    // "Porto 09:38 | Lisboa 12:22 | 05-07-2026"
    const bool beside = second.line == first.line && first.cell && second.begin == first.end + 1;
    return beside || second.line == first.line + 1;
}

bool Chooser::isAtAirport(const TimeMention &time) const {
    constexpr std::uint32_t kReach = 8;
    const std::uint32_t at = time.span.begin;
    const std::uint32_t low = std::max(fieldOf(at).begin, at - std::min(at, kReach));
    for (std::uint32_t i = low; i + 2 < at; ++i)
        if (m_document.tokens[i].symbol == '(' && isAirport(i + 1) &&
            m_document.tokens[i + 2].symbol == ')')
            return true;
    return false;
}

bool Chooser::isArrival(const TimeMention &start, const TimeMention &next) const {
    return !start.end && !next.end && next.start.sure && next.start.minuteGiven &&
           next.start.hour * 60 + next.start.minute > start.start.hour * 60 + start.start.minute &&
           isBelowOrBeside(fieldOf(start.span.begin), fieldOf(next.span.begin)) &&
           (m_choice.kind == EventKind::Travel || (isAtAirport(start) && isAtAirport(next))) &&
           roleOf(next.span.begin) == Role::None;
}

bool Chooser::travelEnd() {
    const auto i = static_cast<std::size_t>(m_time);
    if (i + 1 >= m_found.times.size())
        return false;
    const TimeMention &start = m_found.times[i];
    const TimeMention &next = m_found.times[i + 1];
    if (!isJoined(start, next) && !isArrival(start, next))
        return false;
    m_choice.endMinute = endAfter(next.start, start.start);
    m_choice.endSpan = next.span;
    // "Copenhagen (CPH) 13:25 → Lisbon (LIS) 15:50" without a word for the journey
    if (isAtAirport(start) && isAtAirport(next))
        m_choice.kind = EventKind::Travel;
    return true;
}

bool Chooser::nearStart(std::uint32_t token) const {
    const std::uint32_t start = m_choice.timeSpan.begin;
    constexpr std::uint32_t kReach = 25;
    return distance(token, start) < static_cast<int>(kReach) && token > start;
}

void Chooser::endFromLength() {
    for (const DurationMention &length : m_found.durations) {
        // "You will give a short presentation (10 minutes)." is a part of it.
        constexpr int kPart = 15;
        if (length.minutes <= 0 ||
            (length.minutes < kPart &&
             !m_document.sameSentence(length.span.begin, m_choice.timeSpan.begin) &&
             m_document.token(length.span.begin - 1).symbol == '('))
            continue;
        m_choice.endMinute = *m_choice.startMinute + length.minutes;
        m_choice.endSpan = length.span;
        return;
    }
}

void Chooser::lengthInDays() {
    if (m_choice.last || m_date < 0)
        return;
    for (const DurationMention &length : m_found.durations) {
        if (length.days < 2 || !m_document.sameSentence(length.span.begin, m_choice.anchor()))
            continue;
        m_choice.last = m_choice.start + std::chrono::days(length.days - 1);
        m_choice.endSpan = length.span;
        return;
    }
}

} // namespace pindle::conversion
