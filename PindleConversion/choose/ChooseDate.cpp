#include "PindleConversion/choose/Chooser.h"

#include <algorithm>

namespace pindle::conversion {

namespace {

constexpr int kNever = -100000; ///< below every score

} // namespace

void Chooser::resolveDates() {
    for (std::size_t i = 0; i < m_found.dates.size(); ++i) {
        auto date = inNamedWeek(i);
        if (!date)
            date = inNamedMonth(i);
        if (!date)
            date = resolveDate(m_found.dates[i], m_reference);
        if (date)
            m_dates.push_back({&m_found.dates[i], *date});
    }
    settleLaterWeeks();
    settleNamedDays();
    settleDaysInRanges();
    constexpr auto kSoon = std::chrono::days(60);
    for (const Dated &dated : m_dates) {
        const bool soon =
            dated.date.first > m_reference.today && dated.date.first < m_reference.today + kSoon;
        if (soon && (dated.mention->first.weekday != 0 || hasRangeBeside(dated.mention->span)) &&
            hasTimeBeside(dated.mention->span) &&
            fieldOf(dated.mention->span.begin).label == Label::None)
            m_ahead.push_back(dated.mention->span);
    }
    joinRanges();
}

bool Chooser::explainsDays(const Dated &dated) const {
    constexpr std::uint32_t kReach = 3;
    const TokenSpan span = dated.mention->span;
    if (dated.mention->first.base != DateSpec::Base::Weekday)
        return false;
    std::uint32_t open = span.begin;
    while (open > 0 && span.begin - open < kReach && m_document.tokens[open].symbol != '(')
        --open;
    if (m_document.tokens[open].symbol != '(')
        return false;
    return std::any_of(m_dates.begin(), m_dates.end(), [&](const Dated &other) {
        const auto weekday = std::chrono::weekday(other.date.first).iso_encoding();
        return other.mention->first.base == DateSpec::Base::Calendar &&
               other.mention->span.end == open &&
               static_cast<int>(weekday) == dated.mention->first.weekday;
    });
}

bool Chooser::hasTimeNear(std::uint32_t token) const {
    const Field &field = fieldOf(token);
    return std::any_of(m_found.times.begin(), m_found.times.end(), [&](const auto &time) {
        const Field &other = fieldOf(time.span.begin);
        return (m_document.sameSentence(time.span.begin, token) ||
                (other.cell && field.cell && other.line == field.line)) &&
               roleOf(time.span.begin) != Role::Posted;
    });
}

bool Chooser::hasTimeBeside(TokenSpan span) const {
    constexpr int kBeside = 3;
    const Reader reader(m_document, static_cast<std::uint32_t>(m_document.tokens.size()));
    const std::uint32_t next = reader.skip(span.end, Meaning::TimeMarker);
    return std::any_of(m_found.times.begin(), m_found.times.end(), [&](const auto &time) {
        return m_document.sameSentence(time.span.begin, span.begin) &&
               (gap(span, time.span) < kBeside || time.span.begin == next);
    });
}

bool Chooser::hasRangeBeside(TokenSpan span) const {
    constexpr int kBeside = 3;
    return std::any_of(m_found.times.begin(), m_found.times.end(), [&](const auto &time) {
        return time.end && m_document.sameSentence(time.span.begin, span.begin) &&
               gap(span, time.span) < kBeside;
    });
}

int Chooser::scoreDate(const Dated &dated, int index) {
    const std::uint32_t token = dated.mention->span.begin;
    const Field &field = fieldOf(token);
    int score = -std::min(index, 10);
    if (field.label == Label::When || field.label == Label::Date || field.label == Label::Start)
        score += 60;
    if (hasTimeNear(token))
        score += 25;
    if (hasTimeBeside(dated.mention->span))
        score += 10;
    if (dated.mention->first.base == DateSpec::Base::Calendar)
        score += 4;
    if (dated.mention->weak)
        score -= 30;
    // "the period 03/26 is due by 7 May": where the day stands first, a month and its year.
    if (dated.mention->first.monthThenDay && !m_reference.monthFirst &&
        dated.mention->first.order != DayOrder::MonthFirst)
        score -= 100;
    if (isDue(token))
        score -= 18;
    const Role role = roleOf(token);
    // "The concert is Thursday 18th at 4pm": the name of the day leaves little doubt.
    const DateSpec &first = dated.mention->first;
    const bool named = first.weekday != 0 && hasTimeBeside(dated.mention->span);
    if (first.base == DateSpec::Base::DayOnly && !first.monthGiven && !named)
        score -= role == Role::MovedTo || isOnlyDay(dated) ? 12 : 40;
    if (mayBeStreet(dated.mention->span))
        score -= 60;
    if (tellsOpeningHours(dated) || hasFirstDay(dated) || explainsDays(dated))
        score -= 45;
    switch (role) {
    case Role::Deadline:
    case Role::Posted:
        score -= 60;
        break;
    case Role::MovedFrom:
        score -= 50;
        break;
    case Role::End:
        score -= opensStay(dated) ? 0 : 30;
        break;
    case Role::MovedTo:
        score += 45;
        break;
    case Role::None:
        score -= isTurnedDown(dated) ? 50 : 0;
        break;
    case Role::Eve:
        score -= m_dates.size() > 1 ? 50 : 0;
        break;
    case Role::Side:
    case Role::Show:
    case Role::Collect:
    case Role::Later:
        break;
    }
    const bool over = dated.date.first < m_reference.today &&
                      !(dated.date.last && *dated.date.last >= m_reference.today);
    // "We met on 3 March, and it is done on the 24th": no day of the next year.
    if (over || isLongPast(dated) || isBeforeNearer(dated))
        score -= 200;
    else if (speaksOfPast(token))
        score -= 15;
    if (dated.mention->holiday)
        score -= 5;
    if (dated.again)
        score -= 45;
    if (followsDate(dated))
        score -= 40;
    if (m_dates.size() == 2 && m_found.times.empty() && isDayAfterLast(dated))
        score -= 80;
    if (sentenceHas(token, Meaning::Event) && !isLaterItem(dated))
        score += 10;
    return score;
}

bool Chooser::isDayAfterLast(const Dated &dated) const {
    const Dated &other = &dated == &m_dates.front() ? m_dates.back() : m_dates.front();
    const auto isWritten = [&](const Dated &each) {
        return each.mention->first.base == DateSpec::Base::Calendar && !each.date.last;
    };
    const std::uint32_t last = other.mention->span.begin;
    return dated.date.first == other.date.first + std::chrono::days(1) && isWritten(dated) &&
           isWritten(other) && last > dated.mention->span.begin &&
           (roleOf(last) == Role::Deadline || roleOf(last) == Role::None) &&
           m_document.sameSentence(last, dated.mention->span.begin);
}

bool Chooser::isOnlyDay(const Dated &dated) const {
    return std::none_of(m_dates.begin(), m_dates.end(), [&](const Dated &other) {
        return other.mention != dated.mention && !other.mention->weak && !isPast(other) &&
               other.mention->first.base != DateSpec::Base::DayOnly &&
               other.mention->first.base != DateSpec::Base::Week &&
               roleOf(other.mention->span.begin) == Role::None;
    });
}

bool Chooser::isDue(std::uint32_t token) const {
    const Reader reader(m_document, static_cast<std::uint32_t>(m_document.tokens.size()));
    return token > 0 && reader.has(token - 1, Meaning::DueMarker) &&
           m_document.sameSentence(token - 1, token);
}

bool Chooser::mayBeStreet(TokenSpan span) const {
    const auto &tokens = m_document.tokens;
    if (span.begin < 2 || tokens[span.begin].kind != TokenKind::Number ||
        span.end - span.begin != 2 || !hasDateMarker(span.begin))
        return false;
    const Token &name = tokens[span.begin - 2];
    const Reader reader(m_document, span.end);
    // "Results at the AGM on 31 March" has its month.
    if (reader.has(span.begin + 1, Meaning::Month))
        return false;
    const bool named = name.capital || reader.has(span.begin - 2, Meaning::PlaceNoun) ||
                       reader.has(span.begin - 2, Meaning::StreetWord);
    return name.kind == TokenKind::Word && named && !name.used &&
           m_document.sameSentence(span.begin - 2, span.begin) &&
           fieldOf(span.begin).begin + 2 < span.begin;
}

bool Chooser::hasFirstDay(const Dated &dated) const {
    if (!dated.mention->repeated)
        return false;
    return std::any_of(m_dates.begin(), m_dates.end(), [&](const Dated &other) {
        const auto weekday = std::chrono::weekday(other.date.first).iso_encoding();
        // "runs 11 Jan to 19 Feb, Mondays and Wednesdays"
        const bool within = other.date.last && m_document.sameSentence(other.mention->span.begin,
                                                                       dated.mention->span.begin);
        return (other.mention->first.base == DateSpec::Base::Calendar ||
                other.mention->first.base == DateSpec::Base::DayOnly) &&
               !isPast(other) &&
               (within || static_cast<int>(weekday) == dated.mention->first.weekday) &&
               roleOf(other.mention->span.begin) != Role::Deadline &&
               roleOf(other.mention->span.begin) != Role::End;
    });
}

bool Chooser::opensStay(const Dated &dated) const {
    if (m_dates.size() < 2 || &dated != &m_dates.front())
        return false;
    return std::all_of(m_dates.begin() + 1, m_dates.end(), [&](const Dated &other) {
        return other.date.first > dated.date.first ||
               roleOf(other.mention->span.begin) == Role::Posted;
    });
}

bool Chooser::isLongPast(const Dated &dated) const {
    constexpr auto kFar = std::chrono::days(180);
    constexpr auto kJustOver = std::chrono::days(275);
    const std::uint32_t token = dated.mention->span.begin;
    if (dated.date.first <= m_reference.today + kFar || dated.date.yearGiven ||
        dated.mention->first.base != DateSpec::Base::Calendar || roleOf(token) == Role::MovedTo)
        return false;
    // "On 3 April the committee elected a new chair": the verb may follow a day just over.
    return toldInPast(fieldOf(token), token) ||
           (dated.date.first > m_reference.today + kJustOver && isReport(token));
}

void Chooser::pickDate() {
    int best = kNever;
    for (std::size_t i = 0; i < m_dates.size(); ++i) {
        m_dates[i].score = scoreDate(m_dates[i], static_cast<int>(i));
        if (m_dates[i].score > best) {
            best = m_dates[i].score;
            m_date = static_cast<int>(i);
        }
    }
}

bool Chooser::isPast(const Dated &dated) const {
    return dated.date.last ? *dated.date.last < m_reference.today
                           : dated.date.first < m_reference.today;
}

} // namespace pindle::conversion
