#include "PindleConversion/choose/Chooser.h"

#include <algorithm>
#include <cstdlib>

namespace pindle::conversion {

namespace {

constexpr int kOnEve = 150; ///< less for an hour of the day before

} // namespace

void Chooser::noteClockStyle() {
    for (const TimeMention &time : m_found.times) {
        // "at 5:30, 2210 Dorsey": the number of a house shows no clock.
        const std::uint32_t at = time.span.begin;
        const bool house = !time.start.sure && at > 0 && m_document.tokens[at - 1].symbol == ',' &&
                           m_document.token(time.span.end).upper();
        if (!time.start.literal || house)
            continue;
        // "carriages midnight" is on any clock.
        const bool atNight =
            time.start.hour == 0 &&
            (time.start.minute > 0 || m_document.tokens[at].kind == TokenKind::Number);
        const bool padded = time.start.hour < 10 && time.start.hour > 0;
        m_twentyFour = m_twentyFour || time.start.hour > 12 || atNight || padded;
    }
}

bool Chooser::belongsToOther(const TimeMention &time) const {
    const Dated &mine = m_dates[static_cast<std::size_t>(m_date)];
    const std::uint32_t at = time.span.begin;
    if (isBracketBehind(mine.mention->span, at))
        return false;
    // "planned for today at 11, is postponed to Thursday": the hour stays.
    if (m_found.times.size() == 1 && roleOf(mine.mention->span.begin) == Role::MovedTo)
        return false;
    const int own = gap(mine.mention->span, time.span);
    const bool ownSentence = m_document.sameSentence(at, mine.mention->span.begin);
    for (const Dated &other : m_dates) {
        if (other.mention == mine.mention || other.mention->weak ||
            !m_document.sameSentence(other.mention->span.begin, at))
            continue;
        if (other.date.first == mine.date.first ||
            roleOf(other.mention->span.begin) == Role::MovedFrom ||
            mayBeStreet(other.mention->span) ||
            (roleOf(other.mention->span.begin) == Role::End && at < other.mention->span.begin &&
             roleOf(at) != Role::End) ||
            (other.mention->repeated && !mine.mention->repeated) ||
            isListed(mine.mention->span, other.mention->span) || explainsDays(other))
            continue;
        if (!ownSentence || gap(other.mention->span, time.span) < own)
            return true;
    }
    return false;
}

bool Chooser::isRoughNoon(const TimeMention &time) const {
    constexpr int kNoon = 12;
    if (!m_document.tokens[time.span.begin].used || time.end || time.start.hour != kNoon ||
        m_document.tokens[time.span.begin].kind != TokenKind::Word)
        return false;
    return std::any_of(m_found.times.begin(), m_found.times.end(), [&](const TimeMention &other) {
        return other.start.minuteGiven && other.span.begin > time.span.begin && !other.end &&
               m_document.tokens[other.span.begin].kind == TokenKind::Number &&
               std::abs(other.start.hour - kNoon) <= 1 &&
               m_document.sameSentence(other.span.begin, time.span.begin);
    });
}

bool Chooser::isBracketBehind(TokenSpan date, std::uint32_t at) const {
    constexpr std::uint32_t kReach = 12;
    if (m_document.token(date.end).symbol != '(' || at <= date.end || at > date.end + kReach)
        return false;
    for (std::uint32_t i = date.end; i < at; ++i)
        if (m_document.token(i).symbol == ')')
            return false;
    return true;
}

bool Chooser::isListed(TokenSpan a, TokenSpan b) const {
    const TokenSpan first = a.begin < b.begin ? a : b;
    const TokenSpan last = a.begin < b.begin ? b : a;
    constexpr std::uint32_t kLongest = 40;
    if (last.begin - first.end > kLongest || !m_document.sameSentence(a.begin, b.begin) ||
        std::any_of(m_found.times.begin(), m_found.times.end(), [&](const TimeMention &time) {
            return time.span.begin >= first.end && time.span.begin < last.begin;
        }))
        return false;
    const Reader reader(m_document, last.begin);
    for (std::uint32_t i = first.end; i < last.begin; ++i)
        if (!m_document.tokens[i].used && !reader.symbol(i, ',') && !reader.has(i, Meaning::And) &&
            !reader.has(i, Meaning::Or))
            return false;
    return true;
}

int Chooser::scoreTime(const TimeMention &time, int index) {
    constexpr int kFarthest = 40;
    constexpr int kBracketed = 12;
    constexpr int kListed = 24;
    const std::uint32_t at = time.span.begin;
    int score = -std::min(index, 10);
    const Label label = fieldOf(at).label;
    if (label == Label::Time || label == Label::When || label == Label::Start)
        score += 50;
    if (m_date >= 0) {
        const std::uint32_t anchor = m_choice.anchor();
        if (m_document.sameSentence(at, anchor))
            score += 40;
        else if (m_document.tokens[at].field == m_document.tokens[anchor].field)
            score += 20;
        // A sentence before the day's may be long: there the distance tells less.
        constexpr int kApart = 8;
        constexpr int kBeside = 2;
        const bool apart = !m_document.sameSentence(at, anchor) && at < anchor;
        score -= std::min(distance(at, anchor), kFarthest) / (apart ? kApart : kBeside);
        if (belongsToOther(time))
            score -= 100;
    }
    if (time.end)
        score += 8;
    if (const auto *before =
            index > 0 ? &m_found.times[static_cast<std::size_t>(index - 1)] : nullptr;
        before && (isJoined(*before, time) || isArrival(*before, time)))
        score -= 45;
    if (index > 0 && isListed(m_found.times[static_cast<std::size_t>(index - 1)], time))
        score -= kListed;
    // "2校時（9：35〜10：20）" is all its line says.
    if (isInBrackets(at) && !isOnlyTimeOfField(time))
        score -= kBracketed;
    if (isRoughNoon(time))
        score -= kListed;
    if (m_date >= 0 && m_found.times.size() > 1 && isOnEve(time.span))
        score -= kOnEve;
    if (index > 0 && isTranslated(m_found.times[static_cast<std::size_t>(index - 1)], time))
        score -= 40;
    // "5.30–8pm" is told by its end.
    if (time.start.sure || (time.end && time.end->meridiem >= 0))
        score += 4;
    // "(1700–1900)" may be years.
    else if (std::any_of(m_found.times.begin(), m_found.times.end(), [](const TimeMention &other) {
                 return other.start.sure && other.start.meridiem >= 0;
             }))
        score -= 24;
    return score + roleScore(at);
}

bool Chooser::isTranslated(const TimeMention &first, const TimeMention &second) const {
    if (first.zoneSpan.empty() || second.span.begin - first.span.end > 2)
        return false;
    for (std::uint32_t i = first.span.end; i < second.span.begin; ++i) {
        const char32_t mark = m_document.tokens[i].symbol;
        if (mark != '/' && mark != '(' && mark != '=' && mark != '|')
            return false;
    }
    return first.span.end < second.span.begin;
}

bool Chooser::isListed(const TimeMention &first, const TimeMention &second) const {
    const Reader reader(m_document, second.span.begin);
    const std::uint32_t and_ = reader.skip(first.span.end, Meaning::And);
    return and_ != first.span.end && and_ == second.span.begin && !first.end && !second.end &&
           roleOf(second.span.begin) == roleOf(first.span.begin);
}

bool Chooser::isOnlyTimeOfField(const TimeMention &time) const {
    const std::uint32_t field = m_document.tokens[time.span.begin].field;
    return time.end &&
           std::none_of(m_found.times.begin(), m_found.times.end(), [&](const TimeMention &other) {
               return other.span.begin != time.span.begin &&
                      m_document.tokens[other.span.begin].field == field;
           });
}

bool Chooser::isInBrackets(std::uint32_t at) const {
    constexpr std::uint32_t kReach = 6;
    const std::uint32_t begin = fieldOf(at).begin;
    for (std::uint32_t i = at; i > begin && at - i < kReach; --i) {
        const char32_t mark = m_document.tokens[i - 1].symbol;
        if (mark == '(' || mark == ')')
            return mark == '(';
    }
    return false;
}

bool Chooser::isOnEve(TokenSpan time) const {
    const Reader reader(m_document, fieldOf(time.begin).end);
    // "10 pm the night" may have been read as the time.
    for (std::uint32_t i = time.begin + 1; i <= time.end; ++i)
        if (const Sense *role = reader.sense(i, Meaning::RoleWord);
            role && role->value == static_cast<int>(Role::Eve))
            return true;
    return false;
}

int Chooser::roleScore(std::uint32_t at) const {
    switch (roleOf(at)) {
    case Role::Deadline:
        return m_found.times.size() > 1 || dateIsElsewhere(at) ? -60 : 0;
    case Role::Posted:
        return -150;
    case Role::MovedFrom:
        return -60;
    case Role::MovedTo:
        // "If no quorum, adjourned to 11 am": only if something else happens.
        if (isBehindAside(Reader(m_document, at), at))
            return -60;
        return counterProposal(at) ? 120 : 40;
    case Role::End:
        return -45;
    case Role::Side:
        return -12;
    case Role::Show:
        return 6;
    case Role::Eve:
        return m_date >= 0 && m_choice.anchor() < at ? -kOnEve : 0;
    case Role::Collect:
    case Role::Later:
    case Role::None:
        break;
    }
    return 0;
}

bool Chooser::counterProposal(std::uint32_t at) const {
    return fieldOf(at).spoken && m_date >= 0 &&
           m_document.tokens[at].field > m_document.tokens[m_choice.anchor()].field;
}

bool Chooser::dateIsElsewhere(std::uint32_t at) const {
    return m_date >= 0 && !m_document.sameSentence(at, m_choice.anchor());
}

void Chooser::pickTime() {
    constexpr int kWorstTaken = -60;
    int best = kWorstTaken;
    m_choice.kind = m_date >= 0 ? eventKind() : EventKind::None;
    for (std::size_t i = 0; i < m_found.times.size(); ++i) {
        const int score = scoreTime(m_found.times[i], static_cast<int>(i));
        if (score > best) {
            best = score;
            m_time = static_cast<int>(i);
        }
    }
    m_choice.kind = eventKind();
    if (m_time < 0)
        return;
    const TimeMention &time = m_found.times[static_cast<std::size_t>(m_time)];
    const ResolvedTime resolved = resolveTime(inHalf(time), contextOf(time));
    m_choice.startMinute = resolved.start;
    m_choice.endMinute = resolved.end;
    startPastMidnight();
    m_choice.timeSpan = time.span;
    if (resolved.end)
        m_choice.endSpan = time.span;
    settleNight();
    m_assumedHalf = resolved.assumed;
}

void Chooser::settleNight() {
    constexpr int kNoon = 12 * 60;
    constexpr std::uint32_t kReach = 3;
    const bool night =
        std::any_of(m_found.parts.begin(), m_found.parts.end(), [&](const PartMention &part) {
            return part.part == DayPart::Night && part.span.end <= m_choice.dateSpan.begin &&
                   m_choice.dateSpan.begin - part.span.end <= kReach;
        });
    if (!night || !m_choice.last || *m_choice.last != m_choice.start + std::chrono::days(1) ||
        *m_choice.startMinute >= kNoon)
        return;
    m_choice.start = *m_choice.last;
    m_choice.last.reset();
    if (!m_choice.endMinute)
        m_choice.endSpan = {};
}

void Chooser::startPastMidnight() {
    constexpr int kMinutesInDay = 24 * 60;
    if (*m_choice.startMinute < kMinutesInDay)
        return;
    m_choice.start += std::chrono::days(1);
    *m_choice.startMinute -= kMinutesInDay;
    if (m_choice.endMinute)
        *m_choice.endMinute -= kMinutesInDay;
}

TimeMention Chooser::inHalf(const TimeMention &time) const {
    constexpr std::uint32_t kReach = 8;
    constexpr int kNoon = 12;
    const bool open =
        time.start.meridiem < 0 && !time.start.literal && !time.end && time.part == DayPart::None;
    if (m_time == 0 || !open)
        return time;
    const TimeMention &before = m_found.times[static_cast<std::size_t>(m_time) - 1];
    // "from Tuesday 3pm to Thursday 10:30"
    if (std::any_of(m_dates.begin(), m_dates.end(), [&](const Dated &dated) {
            const std::uint32_t day = dated.mention->span.begin;
            return day >= before.span.end && day < time.span.begin;
        }))
        return time;
    const Role role = roleOf(before.span.begin);
    const bool leads = role == Role::None || role == Role::Side || role == Role::Show;
    if (!leads || before.end || before.start.meridiem < 0 ||
        !m_document.sameSentence(before.span.begin, time.span.begin) ||
        time.span.begin - before.span.end > kReach)
        return time;
    const auto onDial = [](const ClockSpec &clock) {
        return clock.hour % kNoon * 60 + clock.minute;
    };
    const bool passes = onDial(time.start) < onDial(before.start);
    TimeMention result = time;
    if (!(passes && before.start.meridiem == 1))
        result.start.meridiem = passes ? 1 : before.start.meridiem;
    return result;
}

bool Chooser::isPartOfPlace(const Reader &reader, std::uint32_t i, const Sense &event) {
    const std::uint32_t next = i + event.length;
    // "Ferry Terminal" is where one travels from.
    return reader.token(i).upper() && reader.token(next).upper() &&
           reader.has(next, Meaning::PlaceNoun) && !reader.has(i, Meaning::PlaceNoun);
}

bool Chooser::isBehindAside(const Reader &reader, std::uint32_t i) const {
    constexpr std::uint32_t kReach = 10;
    for (std::uint32_t back = 1; back <= std::min(kReach, i); ++back) {
        if (!m_document.sameSentence(i - back, i) || m_document.tokens[i - back].used)
            return false;
        if (reader.has(i - back, Meaning::AsideLead))
            return true;
    }
    return false;
}

namespace {

/// "飲み物" is no drinking party.
bool isInLongerWord(const Reader &reader, std::uint32_t i, const Sense &event) {
    if (!reader.token(i).unspaced)
        return false;
    for (const Meaning meaning : {Meaning::Common, Meaning::LabelWord, Meaning::Chatter})
        if (const Sense *longer = reader.sense(i, meaning); longer && longer->length > event.length)
            return true;
    return false;
}

} // namespace

EventKind Chooser::eventKind() const {
    EventKind best = EventKind::None;
    int bestScore = -1;
    const Reader reader(m_document, static_cast<std::uint32_t>(m_document.tokens.size()));
    const std::uint32_t anchor = m_date >= 0 ? m_choice.anchor()
                                 : m_time >= 0
                                     ? m_found.times[static_cast<std::size_t>(m_time)].span.begin
                                     : 0;
    constexpr std::uint32_t kReach = 200;
    const std::uint32_t low = anchor > kReach ? anchor - kReach : 0;
    const auto size = static_cast<std::uint32_t>(m_document.tokens.size());
    std::uint32_t covered = 0;
    for (std::uint32_t i = low; i < std::min(size, anchor + kReach); ++i) {
        // "swim gala" is no "gala".
        const Sense *event = i < covered ? nullptr : reader.sense(i, Meaning::Event);
        if (!event || m_document.fields[m_document.tokens[i].field].ignored)
            continue;
        if (isInLongerWord(reader, i, *event))
            continue;
        // "at the Railway Club", "Coach House": a place's name.
        if (event->value == static_cast<int>(EventKind::Travel) && isPartOfPlace(reader, i, *event))
            continue;
        // "farewell lunch" is a lunch.
        const bool head = i == covered && i > low && !m_document.tokens[i].unspaced;
        covered = i + event->length;
        const auto kind = static_cast<EventKind>(event->value);
        int score = kind == EventKind::Neutral ? 0 : 4;
        // "..., e poi tutti al bar per il brindisi" follows the event of the line above.
        score += m_document.sameSentence(i, anchor) &&
                         !(best != EventKind::None && i > anchor && isBehindAside(reader, i))
                     ? 2
                     : 0;
        if (score > bestScore || (head && score == bestScore)) {
            bestScore = score;
            best = kind;
        }
    }
    return best;
}

TimeContext Chooser::contextOf(const TimeMention &time) const {
    TimeContext context;
    context.kind = m_choice.kind;
    // "Church potluck after the 10:30 service"
    const Reader all(m_document, static_cast<std::uint32_t>(m_document.tokens.size()));
    if (const Sense *event = all.sense(time.span.end, Meaning::Event))
        context.kind = static_cast<EventKind>(event->value);
    context.twentyFour = m_twentyFour;
    int nearest = 1000;
    for (const PartMention &part : m_found.parts) {
        const std::uint32_t at = part.span.begin;
        const bool near = m_document.sameSentence(at, time.span.begin) ||
                          (m_date >= 0 && m_document.sameSentence(at, m_choice.anchor()));
        const int away = distance(at, time.span.begin);
        if (near && away < nearest && !belongsToOtherDate(at)) {
            nearest = away;
            context.part = part.part;
        }
    }
    // "training's off tonite", "thurs half 7": the new hour is of the same half of the day.
    // And so is the one that answers "evening?".
    if (context.part == DayPart::None && m_document.conversation && m_found.parts.size() == 1) {
        const std::uint32_t at = m_found.parts[0].span.begin;
        if (all.has(at, Meaning::RelativeDay) ||
            (fieldOf(at).begin == at && all.symbol(m_found.parts[0].span.end, '?')))
            context.part = m_found.parts[0].part;
    }
    return context;
}

bool Chooser::belongsToOtherDate(std::uint32_t part) const {
    for (const Dated &dated : m_dates)
        if (dated.mention->span.end == part)
            return dated.mention->span.begin != m_choice.dateSpan.begin;
    return false;
}

} // namespace pindle::conversion
