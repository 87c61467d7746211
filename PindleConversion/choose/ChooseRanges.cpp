#include "PindleConversion/choose/Chooser.h"

#include <algorithm>

namespace pindle::conversion {

void Chooser::settleDaysInRanges() {
    constexpr auto kWeek = std::chrono::days(7);
    for (std::size_t i = 1; i < m_dates.size(); ++i) {
        const DateMention &day = *m_dates[i].mention;
        const bool counted = isBareDay(day);
        if (!counted && !isBareWeekday(day))
            continue;
        for (std::size_t k = 0; k < i; ++k) {
            const ResolvedDate &range = m_dates[k].date;
            if (m_dates[k].mention->first.base != DateSpec::Base::Calendar ||
                !(counted || range.last) || (range.last && *range.last >= range.first + kWeek))
                continue;
            Reference from = m_reference;
            from.today = range.first - std::chrono::days(1);
            const auto inside = resolveDate(day, from);
            if (inside && inside->first <= range.last.value_or(range.first))
                m_dates[i].date = *inside;
        }
    }
}

void Chooser::joinRanges() {
    constexpr auto kLongest = std::chrono::days(31);
    for (std::size_t i = 1; i < m_dates.size(); ++i) {
        const Dated &first = m_dates[i - 1];
        Dated &second = m_dates[i];
        if (!isRangeOver(first, second) && !isArrivalBelow(first, second) &&
            !isArrivalBeside(first, second))
            continue;
        // "Friday 6pm to Sunday 3pm", said on a Saturday: the Sunday behind that Friday.
        if (second.mention->first.base == DateSpec::Base::Weekday) {
            Reference from = m_reference;
            from.today = first.date.first;
            second.date = resolveDate(*second.mention, from).value_or(second.date);
        }
        if (second.date.first <= first.date.first ||
            second.date.first > first.date.first + kLongest)
            continue;
        const TokenSpan span = second.mention->span;
        m_ends.push_back({momentBegin(span), momentEnd(span)});
    }
}

bool Chooser::isRangeOver(const Dated &first, const Dated &second) const {
    constexpr std::uint32_t kReach = 14;
    const TokenSpan from = first.mention->span;
    const TokenSpan to = second.mention->span;
    if (first.mention->last || second.mention->last || second.mention->repeated ||
        to.begin - from.end > kReach || !m_document.sameSentence(from.begin, to.begin))
        return false;
    const std::uint32_t begin = momentBegin(to);
    const std::uint32_t joint = jointBefore(begin);
    if (joint > begin || joint < from.end)
        return false;
    const bool timed =
        std::any_of(m_found.times.begin(), m_found.times.end(), [&](const TimeMention &time) {
            return !time.end && time.span.end <= joint &&
                   (time.span.begin >= from.end || momentBegin(from) == time.span.begin);
        });
    return timed && fewWordsBetween(from.end, joint) && !sentenceHas(from.begin, Meaning::Moving) &&
           roleOf(from.begin) != Role::MovedFrom && roleOf(to.begin) != Role::MovedTo;
}

bool Chooser::isArrivalBeside(const Dated &first, const Dated &second) const {
    constexpr std::uint32_t kReach = 16;
    constexpr auto kLongest = std::chrono::days(2);
    const TokenSpan from = first.mention->span;
    const TokenSpan to = second.mention->span;
    // "18:52 (Thu 12 March)"
    const auto timed = [&](std::uint32_t day) {
        return std::any_of(m_found.times.begin(), m_found.times.end(),
                           [&](const TimeMention &time) {
                               return !time.end && time.start.sure && time.span.end + 1 == day &&
                                      m_document.tokens[time.span.end].kind == TokenKind::Symbol;
                           });
    };
    return to.begin > from.end && to.begin - from.end <= kReach && !first.mention->last &&
           !second.mention->last && second.date.first > first.date.first &&
           second.date.first <= first.date.first + kLongest &&
           m_document.tokens[from.begin].field == m_document.tokens[to.begin].field &&
           timed(from.begin) && timed(to.begin);
}

bool Chooser::isArrivalBelow(const Dated &first, const Dated &second) const {
    const std::uint32_t from = first.mention->span.begin;
    const std::uint32_t to = second.mention->span.begin;
    const auto timed = [&](std::uint32_t at) {
        return std::count_if(m_found.times.begin(), m_found.times.end(),
                             [&](const TimeMention &time) {
                                 return fieldOf(time.span.begin).line == fieldOf(at).line &&
                                        time.start.sure && !time.end;
                             }) == 1;
    };
    if (fieldOf(to).line != fieldOf(from).line + 1 || fieldOf(to).label != Label::None ||
        second.date.first != first.date.first + std::chrono::days(1) || !timed(from) || !timed(to))
        return false;
    const Reader reader(m_document, static_cast<std::uint32_t>(m_document.tokens.size()));
    constexpr std::uint32_t kReach = 100;
    const std::uint32_t low = from > kReach ? from - kReach : 0;
    for (std::uint32_t i = low; i < std::min(reader.end(), to + kReach); ++i)
        if (const Sense *event = reader.sense(i, Meaning::Event);
            event && event->value == static_cast<int>(EventKind::Travel))
            return true;
    return false;
}

std::uint32_t Chooser::momentBegin(TokenSpan date) const {
    const Reader reader(m_document, date.begin + 1);
    // "19:00 bis 25.12.": the time is the other day's.
    if (reader.has(date.begin, Meaning::RangeTo))
        return date.begin;
    const std::uint32_t joint =
        date.begin > 0 && (reader.has(date.begin - 1, Meaning::DateMarker) ||
                           reader.symbol(date.begin - 1, ',') || reader.symbol(date.begin - 1, '('))
            ? date.begin - 1
            : date.begin;
    for (const TimeMention &time : m_found.times)
        if (time.span.end == date.begin || time.span.end == joint)
            return time.span.begin;
    return date.begin;
}

std::uint32_t Chooser::momentEnd(TokenSpan date) const {
    constexpr std::uint32_t kReach = 3;
    for (const TimeMention &time : m_found.times)
        if (time.span.begin >= date.end && time.span.begin <= date.end + kReach &&
            m_document.sameSentence(time.span.begin, date.begin) && nothingBetween(date, time.span))
            return time.span.end;
    return date.end;
}

std::uint32_t Chooser::jointBefore(std::uint32_t i) const {
    constexpr std::uint32_t kLongestJoint = 3;
    const Reader reader(m_document, i + 1);
    // "bis 25.12.": a day may start with the word itself.
    if (reader.has(i, Meaning::RangeTo))
        return i;
    const std::uint32_t end = i > 0 && reader.has(i - 1, Meaning::The) ? i - 1 : i;
    const std::uint32_t low = end > kLongestJoint ? end - kLongestJoint : 0;
    for (std::uint32_t k = low; k < end; ++k)
        if (const Sense *to = reader.sense(k, Meaning::RangeTo);
            to && !reader.has(k, Meaning::And) && (k + to->length == end || k + to->length == i))
            return k;
    return i + 1;
}

bool Chooser::fewWordsBetween(std::uint32_t begin, std::uint32_t end) const {
    constexpr int kMostWords = 4;
    int words = 0;
    int open = 0;
    for (std::uint32_t i = begin; i < end; ++i) {
        const Token &token = m_document.tokens[i];
        open += token.symbol == '(' ? 1 : token.symbol == ')' ? -1 : 0;
        words += token.kind == TokenKind::Word && !token.used && open <= 0 ? 1 : 0;
    }
    return words <= kMostWords;
}

} // namespace pindle::conversion
