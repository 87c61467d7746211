#include "PindleConversion/choose/ChooseEvent.h"

#include <algorithm>
#include <cstdlib>

namespace pindle::conversion {

namespace {

constexpr int kMinutesInDay = 24 * 60;
constexpr int kNever = -100000;

class Chooser {
public:
    Chooser(const Document &document, const Expressions &expressions, const Reference &reference)
        : m_document(document), m_found(expressions), m_reference(reference) {}

    Choice run() {
        resolveDates();
        noteClockStyle();
        pickDate();
        if (!acceptDate())
            return std::move(m_choice);
        pickTime();
        if (!m_choice.startMinute && m_date < 0)
            return refuse(Notice::NoDate);
        pickEnd();
        pickZone();
        m_choice.found = true;
        notice();
        return std::move(m_choice);
    }

private:
    struct Dated {
        const DateMention *mention;
        ResolvedDate date;
        int score = 0;
    };

    Choice refuse(Notice why) {
        m_choice.found = false;
        m_choice.notice = why;
        return std::move(m_choice);
    }

    void resolveDates() {
        for (const DateMention &mention : m_found.dates)
            if (auto date = resolveDate(mention, m_reference))
                m_dates.push_back({&mention, *date});
    }

    void noteClockStyle() {
        for (const TimeMention &time : m_found.times) {
            const bool late = time.start.literal && (time.start.hour > 12 || time.start.hour == 0);
            const bool padded = time.start.literal && time.start.hour < 10 && time.start.hour > 0;
            m_twentyFour = m_twentyFour || late || padded;
        }
    }

    const Field &fieldOf(std::uint32_t token) const {
        return m_document.fields[m_document.tokens[token].field];
    }

    /// The last role word before a token in its sentence, or on its label.
    Role roleOf(std::uint32_t token) const {
        const Field &field = fieldOf(token);
        if (field.label == Label::Deadline)
            return Role::Deadline;
        if (field.label == Label::End)
            return Role::End;
        Role role = Role::None;
        for (const RoleMention &mention : m_found.roles) {
            if (mention.token >= token)
                break;
            if (m_document.sameSentence(mention.token, token) && !cutOff(mention.token, token))
                role = mention.role;
        }
        return role;
    }

    /// A comma, dash or another date or time ends what a role word says.
    bool cutOff(std::uint32_t from, std::uint32_t to) const {
        constexpr std::uint32_t kReach = 9;
        if (to - from > kReach)
            return true;
        for (std::uint32_t i = from + 1; i < to; ++i) {
            const Token &token = m_document.tokens[i];
            const bool mark = token.kind == TokenKind::Symbol &&
                              (token.symbol == ',' || token.symbol == ';' || token.symbol == '(' ||
                               token.symbol == ')' || (token.symbol == '-' && token.spaceBefore));
            if (mark && !token.used)
                return true;
            if (token.used && !m_document.tokens[i + 1].used && i + 1 < to && joins(i + 1))
                return true;
        }
        return false;
    }

    bool joins(std::uint32_t i) const {
        return Reader(m_document, static_cast<std::uint32_t>(m_document.tokens.size()))
            .has(i, Meaning::And);
    }

    bool sentenceHas(std::uint32_t token, Meaning meaning) const {
        const Field &field = fieldOf(token);
        const Reader reader(m_document, field.end);
        constexpr std::uint32_t kReach = 40;
        const std::uint32_t low =
            token > field.begin + kReach ? token - kReach : field.begin;
        const std::uint32_t high = std::min(field.end, token + kReach);
        for (std::uint32_t i = low; i < high; ++i)
            if (m_document.sameSentence(i, token) && reader.has(i, meaning) &&
                !m_document.tokens[i].used)
                return true;
        return false;
    }

    bool hasTimeNear(std::uint32_t token) const {
        return std::any_of(m_found.times.begin(), m_found.times.end(), [&](const auto &time) {
            return m_document.sameSentence(time.span.begin, token) &&
                   roleOf(time.span.begin) != Role::Posted;
        });
    }

    int scoreDate(const Dated &dated, int index) {
        const std::uint32_t token = dated.mention->span.begin;
        const Field &field = fieldOf(token);
        m_choice.steps += m_found.times.size() + m_found.roles.size();
        int score = -std::min(index, 10);
        if (field.label == Label::When || field.label == Label::Date || field.label == Label::Start)
            score += 60;
        if (hasTimeNear(token))
            score += 25;
        if (dated.mention->weak)
            score -= 30;
        switch (roleOf(token)) {
        case Role::Deadline: score -= 40; break;
        case Role::Posted: score -= 60; break;
        case Role::MovedFrom: score -= 50; break;
        case Role::End: score -= 30; break;
        case Role::MovedTo: score += 45; break;
        case Role::None:
        case Role::Side:
        case Role::Show: break;
        }
        if (dated.date.first < m_reference.today &&
            !(dated.date.last && *dated.date.last >= m_reference.today))
            score -= 200;
        else if (sentenceHas(token, Meaning::PastVerb))
            score -= 15;
        if (sentenceHas(token, Meaning::Event))
            score += 10;
        return score;
    }

    void pickDate() {
        int best = kNever;
        for (std::size_t i = 0; i < m_dates.size(); ++i) {
            m_dates[i].score = scoreDate(m_dates[i], static_cast<int>(i));
            if (m_dates[i].score > best) {
                best = m_dates[i].score;
                m_date = static_cast<int>(i);
            }
        }
    }

    bool isPast(const Dated &dated) const {
        return dated.date.last ? *dated.date.last < m_reference.today
                               : dated.date.first < m_reference.today;
    }

    /// A written, dated appointment stays one when its day is over; a report of the past is none.
    bool isPastAppointment(const Dated &dated) const {
        const std::uint32_t token = dated.mention->span.begin;
        const Label label = fieldOf(token).label;
        const bool labelled = label == Label::When || label == Label::Date;
        return dated.date.yearGiven && (labelled || hasTimeNear(token)) &&
               roleOf(token) != Role::Posted && !sentenceHas(token, Meaning::PastVerb);
    }

    bool acceptDate() {
        if (m_date < 0)
            return acceptBareTime();
        const Dated &dated = m_dates[static_cast<std::size_t>(m_date)];
        if (isPast(dated) && !isPastAppointment(dated)) {
            refuse(Notice::OnlyPast);
            return false;
        }
        const std::uint32_t token = dated.mention->span.begin;
        if (dated.mention->weak && !hasTimeNear(token) && !hasDateMarker(token) &&
            m_found.times.empty() && !sentenceHas(token, Meaning::Event)) {
            refuse(Notice::NoDate);
            return false;
        }
        if (roleOf(token) == Role::Posted && m_dates.size() == 1) {
            refuse(Notice::NoDate);
            return false;
        }
        if (!hasFutureSense(token)) {
            refuse(Notice::OnlyPast);
            return false;
        }
        m_choice.start = dated.date.first;
        m_choice.last = dated.date.last;
        m_choice.dateSpan = dated.mention->span;
        return true;
    }

    /// "was", "released" before a date that has no time: a report, unless an event is named.
    bool hasFutureSense(std::uint32_t token) const {
        const Field &field = fieldOf(token);
        if (field.label != Label::None || hasTimeNear(token) || !m_found.times.empty())
            return true;
        if (token == field.begin)
            return true;
        if (toldInPast(field, token) && roleOf(token) != Role::MovedTo)
            return false;
        const Dated &dated = m_dates[static_cast<std::size_t>(m_date)];
        const bool explicitFuture = dated.date.yearGiven || dated.mention->first.base ==
                                                                DateSpec::Base::Today;
        return explicitFuture || !sentenceHas(token, Meaning::PastVerb) ||
               roleOf(token) == Role::MovedTo || sentenceHas(token, Meaning::Event);
    }

    /// A verb of the past leads to the date, none of the present or future does.
    bool toldInPast(const Field &field, std::uint32_t token) const {
        constexpr std::uint32_t kReach = 30;
        const Reader reader(m_document, field.end);
        const std::uint32_t low = token > field.begin + kReach ? token - kReach : field.begin;
        bool past = false;
        for (std::uint32_t i = low; i < token; ++i) {
            if (!m_document.sameSentence(i, token))
                continue;
            past = (past || reader.has(i, Meaning::PastVerb)) && !reader.has(i, Meaning::PresentVerb);
        }
        return past;
    }

    bool hasDateMarker(std::uint32_t token) const {
        return token > 0 &&
               Reader(m_document, static_cast<std::uint32_t>(m_document.tokens.size()))
                   .has(token - 1, Meaning::DateMarker);
    }

    /// Without any date: today, if a time is clearly an appointment's.
    bool acceptBareTime() {
        const bool usable = std::any_of(
            m_found.times.begin(), m_found.times.end(), [&](const TimeMention &time) {
                const bool strong = time.marked || time.start.meridiem >= 0 || time.end ||
                                    time.part != DayPart::None ||
                                    sentenceHas(time.span.begin, Meaning::Event);
                return strong && !sentenceHas(time.span.begin, Meaning::PastVerb) &&
                       roleOf(time.span.begin) != Role::Posted;
            });
        if (!usable) {
            refuse(Notice::NoDate);
            return false;
        }
        m_choice.start = m_reference.today;
        m_assumedToday = true;
        return true;
    }

    /// Tokens between two places, as a measure of belonging together.
    static int distance(std::uint32_t a, std::uint32_t b) {
        return static_cast<int>(a > b ? a - b : b - a);
    }

    /// Whether another date of the same sentence stands closer to a time.
    bool belongsToOther(const TimeMention &time) const {
        const Dated &mine = m_dates[static_cast<std::size_t>(m_date)];
        const std::uint32_t at = time.span.begin;
        const int own = gap(mine.mention->span, time.span);
        const bool ownSentence = m_document.sameSentence(at, mine.mention->span.begin);
        for (const Dated &other : m_dates) {
            if (other.mention == mine.mention || other.mention->weak ||
                !m_document.sameSentence(other.mention->span.begin, at))
                continue;
            if (other.date.first == mine.date.first)
                continue;
            if (!ownSentence || gap(other.mention->span, time.span) < own)
                return true;
        }
        return false;
    }

    static int gap(TokenSpan a, TokenSpan b) {
        return a.end <= b.begin ? static_cast<int>(b.begin - a.end)
                                : static_cast<int>(a.begin) - static_cast<int>(b.end) + 1;
    }

    int scoreTime(const TimeMention &time, int index) {
        constexpr int kFarthest = 40;
        const std::uint32_t at = time.span.begin;
        m_choice.steps += m_dates.size() + m_found.roles.size();
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
            score -= std::min(distance(at, anchor), kFarthest) / 2;
            if (belongsToOther(time))
                score -= 100;
        }
        if (time.end)
            score += 8;
        if (index > 0 && isJoined(m_found.times[static_cast<std::size_t>(index - 1)], time))
            score -= 45;
        if (time.start.sure)
            score += 4;
        return score + roleScore(at);
    }

    int roleScore(std::uint32_t at) const {
        switch (roleOf(at)) {
        case Role::Deadline: return m_found.times.size() > 1 || dateIsElsewhere(at) ? -60 : 0;
        case Role::Posted: return -150;
        case Role::MovedFrom: return -60;
        case Role::MovedTo: return counterProposal(at) ? 120 : 40;
        case Role::End: return -45;
        case Role::Side: return -12;
        case Role::Show: return 6;
        case Role::None: break;
        }
        return 0;
    }

    /// In a conversation a later proposal replaces the first.
    bool counterProposal(std::uint32_t at) const {
        return fieldOf(at).spoken && m_date >= 0 &&
               m_document.tokens[at].field > m_document.tokens[m_choice.anchor()].field;
    }

    bool dateIsElsewhere(std::uint32_t at) const {
        return m_date >= 0 && !m_document.sameSentence(at, m_choice.anchor());
    }

    void pickTime() {
        constexpr int kWorstTaken = -60;
        int best = kWorstTaken;
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
        const ResolvedTime resolved = resolveTime(time, contextOf(time));
        m_choice.startMinute = resolved.start;
        m_choice.endMinute = resolved.end;
        m_choice.timeSpan = time.span;
        if (resolved.end)
            m_choice.endSpan = time.span;
        m_assumedHalf = resolved.assumed;
    }

    /// Evening and morning kinds win over neutral ones; the event's own sentence comes first.
    EventKind eventKind() const {
        EventKind best = EventKind::None;
        int bestScore = -1;
        const Reader reader(m_document, static_cast<std::uint32_t>(m_document.tokens.size()));
        const std::uint32_t anchor = m_date >= 0  ? m_choice.anchor()
                                     : m_time >= 0 ? m_found.times[static_cast<std::size_t>(m_time)]
                                                         .span.begin
                                                   : 0;
        constexpr std::uint32_t kReach = 200;
        const std::uint32_t low = anchor > kReach ? anchor - kReach : 0;
        const auto size = static_cast<std::uint32_t>(m_document.tokens.size());
        for (std::uint32_t i = low; i < std::min(size, anchor + kReach); ++i) {
            const Sense *event = reader.sense(i, Meaning::Event);
            if (!event || m_document.fields[m_document.tokens[i].field].ignored)
                continue;
            const auto kind = static_cast<EventKind>(event->value);
            int score = kind == EventKind::Neutral ? 0 : 4;
            score += m_document.sameSentence(i, anchor) ? 2 : 0;
            if (score > bestScore) {
                bestScore = score;
                best = kind;
            }
        }
        return best;
    }

    TimeContext contextOf(const TimeMention &time) const {
        TimeContext context;
        context.kind = m_choice.kind;
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
        return context;
    }

    /// "Saturday night" of another day says nothing about this one.
    bool belongsToOtherDate(std::uint32_t part) const {
        for (const Dated &dated : m_dates)
            if (dated.mention->span.end == part)
                return dated.mention->span.begin != m_choice.dateSpan.begin;
        return false;
    }

    void pickEnd() {
        if (!m_choice.startMinute || m_choice.endMinute) {
            lengthInDays();
            return;
        }
        if (!endFromTime())
            endFromLength();
    }

    bool endFromTime() {
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
            m_choice.endMinute = endAfter(time.start, start);
            m_choice.endSpan = time.span;
            return true;
        }
        return travelEnd();
    }

    int endAfter(const ClockSpec &end, const ClockSpec &start) const {
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

    /// "ATL 6:20 PM - MCO 7:52 PM": two times with a name between them make one range.
    bool isJoined(const TimeMention &first, const TimeMention &second) const {
        constexpr std::uint32_t kReach = 6;
        if (first.end || second.end || !second.start.sure || !first.start.sure ||
            second.span.begin - first.span.end > kReach ||
            !m_document.sameSentence(first.span.begin, second.span.begin) ||
            roleOf(second.span.begin) != Role::None)
            return false;
        const Reader reader(m_document, second.span.begin);
        for (std::uint32_t k = first.span.end; k < second.span.begin; ++k)
            if (reader.has(k, Meaning::RangeTo) && !m_document.tokens[k].used)
                return true;
        return false;
    }

    /// The second time of a journey is its end.
    bool travelEnd() {
        const auto i = static_cast<std::size_t>(m_time);
        if (i + 1 >= m_found.times.size())
            return false;
        const TimeMention &start = m_found.times[i];
        const TimeMention &next = m_found.times[i + 1];
        if (!isJoined(start, next))
            return false;
        m_choice.endMinute = endAfter(next.start, start.start);
        m_choice.endSpan = next.span;
        return true;
    }

    bool nearStart(std::uint32_t token) const {
        const std::uint32_t start = m_choice.timeSpan.begin;
        constexpr std::uint32_t kReach = 25;
        return distance(token, start) < static_cast<int>(kReach) && token > start;
    }

    void endFromLength() {
        for (const DurationMention &length : m_found.durations) {
            if (length.minutes <= 0)
                continue;
            m_choice.endMinute = *m_choice.startMinute + length.minutes;
            m_choice.endSpan = length.span;
            return;
        }
    }

    /// "for three days".
    void lengthInDays() {
        if (m_choice.startMinute || m_choice.last || m_date < 0)
            return;
        for (const DurationMention &length : m_found.durations) {
            if (length.days < 2 || !m_document.sameSentence(length.span.begin, m_choice.anchor()))
                continue;
            m_choice.last = m_choice.start + std::chrono::days(length.days - 1);
            m_choice.endSpan = length.span;
            return;
        }
    }

    void pickZone() {
        const TimeMention *source = nullptr;
        if (m_time >= 0 && !m_found.times[static_cast<std::size_t>(m_time)].zoneSpan.empty())
            source = &m_found.times[static_cast<std::size_t>(m_time)];
        if (!source && !m_found.zones.empty() && m_choice.startMinute)
            source = &m_found.zones.front();
        if (!source)
            return;
        m_choice.zone = resolveZone(*source, m_reference.zone);
        if (!m_choice.zone.empty())
            m_choice.zoneSpan = source->zoneSpan;
    }

    void notice() {
        if (m_assumedToday) {
            m_choice.notice = Notice::TodayAssumed;
            return;
        }
        const Dated &dated = m_dates[static_cast<std::size_t>(m_date)];
        if (dated.date.weekdayConflict)
            m_choice.notice = Notice::WeekdayConflict;
        else if (isPast(dated))
            m_choice.notice = Notice::InPast;
        else if (dated.mention->repeated)
            m_choice.notice = Notice::Repeats;
        else if (hasRival())
            m_choice.notice = Notice::SeveralDates;
        else if (dated.date.orderAssumed)
            m_choice.notice = Notice::OrderAssumed;
        else if (m_assumedHalf)
            m_choice.notice = Notice::HalfAssumed;
    }

    /// Another date that would have made as good an event.
    bool hasRival() const {
        constexpr int kClose = 12;
        const Dated &mine = m_dates[static_cast<std::size_t>(m_date)];
        return std::any_of(m_dates.begin(), m_dates.end(), [&](const Dated &other) {
            return other.mention != mine.mention && other.date.first != mine.date.first &&
                   !other.mention->weak && !isPast(other) && mine.score - other.score < kClose;
        });
    }

    const Document &m_document;
    const Expressions &m_found;
    const Reference &m_reference;
    Choice m_choice;
    std::vector<Dated> m_dates;
    int m_date = -1;
    int m_time = -1;
    bool m_twentyFour = false;
    bool m_assumedToday = false;
    bool m_assumedHalf = false;
};

} // namespace

Choice chooseEvent(const Document &document, const Expressions &expressions,
                   const Reference &reference) {
    return Chooser(document, expressions, reference).run();
}

} // namespace pindle::conversion
