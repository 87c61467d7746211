#include "PindleConversion/choose/Chooser.h"

#include <algorithm>

namespace pindle::conversion {

namespace {

constexpr std::size_t kShortText = 15; ///< tokens of a text in which a bare hour is enough

} // namespace

bool Chooser::acceptDate() {
    if (m_date < 0)
        return acceptBareTime();
    const Dated &dated = m_dates[static_cast<std::size_t>(m_date)];
    if (isPast(dated) && !isPastAppointment(dated)) {
        refuse(Notice::OnlyPast);
        return false;
    }
    if (isUntold(dated) || isHoursOnly(dated) || isHabit(dated) || countsOnly(dated) ||
        tellsOfWriting(dated)) {
        refuse(Notice::NoDate);
        return false;
    }
    if (!hasFutureSense(dated.mention->span.begin)) {
        refuse(Notice::OnlyPast);
        return false;
    }
    m_choice.start = dated.date.first;
    m_choice.last = dated.date.last;
    m_choice.dateSpan = dated.mention->span;
    if (m_choice.last)
        m_choice.endSpan = dated.mention->span;
    return true;
}

bool Chooser::isUntold(const Dated &dated) const {
    const std::uint32_t token = dated.mention->span.begin;
    return dated.mention->weak && !hasTimeNear(token) && !hasDateMarker(token) &&
           m_found.times.empty() && !sentenceHas(token, Meaning::Event) &&
           roleOf(token) != Role::Deadline;
}

bool Chooser::tellsOfWriting(const Dated &dated) const {
    const std::uint32_t token = dated.mention->span.begin;
    if (dated.mention->weak && fieldOf(token).label == Label::None && followsStamp(dated))
        return true;
    if (std::all_of(m_dates.begin(), m_dates.end(),
                    [&](const Dated &each) { return isStamp(each); }))
        return true;
    // "booked on Texel from 12 to 16 October": nobody books or writes for days.
    const bool posted = roleOf(token) == Role::Posted && !(dated.mention->last && dated.date.last);
    return posted && (m_dates.size() == 1 || (m_found.times.empty() && isAllPosted()));
}

bool Chooser::isHabit(const Dated &dated) const {
    const std::uint32_t token = dated.mention->span.begin;
    const bool comesRound = dated.mention->repeated || dated.mention->last;
    // "She usually works Monday to Friday, 9 to 5"
    if (comesRound && dated.mention->first.base == DateSpec::Base::Weekday &&
        sentenceHas(token, Meaning::Habit))
        return true;
    return dated.mention->repeated && m_found.times.empty() && m_found.parts.empty() &&
           fieldOf(token).label == Label::None && !sentenceHas(token, Meaning::Event);
}

bool Chooser::isPastAppointment(const Dated &dated) const {
    const std::uint32_t token = dated.mention->span.begin;
    const Label label = fieldOf(token).label;
    const bool labelled = label == Label::When || label == Label::Date;
    // "R 1 845.00   02/09/2025 10:14" is a receipt.
    const bool named = hasTimeNear(token) && sentenceHas(token, Meaning::Event);
    if (!dated.date.yearGiven || !(labelled || named) || roleOf(token) == Role::Posted ||
        speaksOfPast(token))
        return false;
    // "Paid on: 18/08/2025 13:05, Amount: $386.00" is one as well.
    constexpr std::size_t kReach = 200; ///< tokens
    const auto end = static_cast<std::uint32_t>(std::min(m_document.tokens.size(), kReach));
    return sentenceHas(token, Meaning::Event) || !namesMoney(0, end);
}

bool Chooser::namesMoney(std::uint32_t begin, std::uint32_t end) const {
    const auto tokens = m_document.tokens.begin();
    return std::any_of(tokens + begin, tokens + end,
                       [](const Token &token) { return isCurrencySign(token.symbol); });
}

bool Chooser::countsOnly(const Dated &dated) const {
    const DateMention &mention = *dated.mention;
    const std::uint32_t next = mention.span.end;
    const Field &field = fieldOf(mention.span.begin);
    const Reader reader(m_document, field.end);
    const bool digits =
        m_document.token(next - 1).kind != TokenKind::Word || !m_document.token(next - 1).capital;
    const bool bare = digits && mention.first.base == DateSpec::Base::DayOnly && !mention.last &&
                      mention.first.weekday == 0 && !mention.first.monthGiven;
    if (!bare || hasDateMarker(mention.span.begin) || !m_found.times.empty() ||
        field.label != Label::None || !reader.word(next) || reader.token(next).unspaced)
        return false;
    constexpr std::uint32_t kReach = 100;
    if (sentenceHas(mention.span.begin, Meaning::Event) &&
        !namesMoney(field.begin, std::min(field.end, field.begin + kReach)))
        return false;
    const Sense *place = reader.sense(next, Meaning::PlaceMarker);
    return !(place && place->value == 1) && !reader.has(next, Meaning::PartOfDay);
}

bool Chooser::isThisMorningsReport(const Dated &dated) const {
    const DateMention &mention = *dated.mention;
    const std::uint32_t token = mention.span.begin;
    const Field &field = fieldOf(token);
    const bool today = mention.first.base == DateSpec::Base::Today && mention.first.days == 0;
    const bool moved = std::any_of(m_found.roles.begin(), m_found.roles.end(),
                                   [](const auto &role) { return role.role == Role::MovedTo; });
    if (!today || moved || m_dates.size() > 1 || !speaksOfPast(token))
        return false;
    // "sind heute früh angekommen" tells of the past with a verb of the present.
    if (sentenceHas(token, Meaning::PresentVerb) && sentenceHas(token, Meaning::Event))
        return false;
    const Sense *part = Reader(m_document, field.end).sense(token, Meaning::PartOfDay);
    return part && part->value == static_cast<int>(DayPart::Morning);
}

bool Chooser::isReport(std::uint32_t token) const {
    return speaksOfPast(token) && !sentenceHas(token, Meaning::PresentVerb);
}

bool Chooser::hasTimeAhead() const {
    return std::any_of(m_found.times.begin(), m_found.times.end(),
                       [&](const TimeMention &time) { return !isReport(time.span.begin); });
}

bool Chooser::isToldWithTimes(const Field &field, std::uint32_t token) const {
    constexpr std::uint32_t kReach = 2;
    const Reader reader(m_document, field.end);
    return toldInPast(field, token) &&
           std::all_of(m_found.times.begin(), m_found.times.end(), [&](const TimeMention &time) {
               std::uint32_t at = time.span.begin;
               // "We drove on Tuesday until midnight"
               if (roleOf(at) == Role::End && m_document.sameSentence(at, token))
                   return true;
               if (at > field.begin && reader.has(at - 1, Meaning::TimeMarker))
                   --at;
               for (std::uint32_t i = at; i > field.begin && at - i < kReach; --i)
                   if (isPastVerb(reader, i - 1))
                       return true;
               return false;
           });
}

bool Chooser::isNarrated(const Dated &dated) const {
    constexpr std::uint32_t kReach = 40;
    constexpr std::uint32_t kBeside = 4; ///< with the words between verb and day
    const std::uint32_t token = dated.mention->span.begin;
    const Field &field = fieldOf(token);
    if (dated.mention->first.base != DateSpec::Base::Weekday || field.label != Label::None ||
        dated.mention->first.which != Which::Nearest || roleOf(token) != Role::None ||
        sentenceHas(token, Meaning::PresentVerb))
        return false;
    const Reader reader(m_document, field.end);
    int verbs = 0;
    bool beside = false;
    const std::uint32_t low = token > field.begin + kReach ? token - kReach : field.begin;
    for (std::uint32_t i = low; i < std::min(field.end, token + kReach); ++i) {
        if (!m_document.sameSentence(i, token) || !isPastVerb(reader, i))
            continue;
        ++verbs;
        beside = beside || (i < token && token - i <= kBeside);
    }
    return beside && verbs > 1;
}

bool Chooser::followsStamp(const Dated &dated) const {
    const std::uint32_t at = dated.mention->span.begin;
    // A stamp at the start of a line is passed over with its day.
    constexpr std::uint32_t kShortest = 5; ///< "03:12:44"
    const std::uint32_t begin = fieldOf(at).begin;
    if (begin >= kShortest && m_document.tokens[begin - 1].kind == TokenKind::Number &&
        m_document.tokens[begin - 2].symbol == ':' && m_document.tokens[begin - 4].symbol == ':')
        return true;
    return std::any_of(m_found.times.begin(), m_found.times.end(), [&](const TimeMention &time) {
        return time.start.seconds && time.span.begin < at &&
               m_document.sameSentence(time.span.begin, at);
    });
}

bool Chooser::isAllPosted() const {
    return std::all_of(m_dates.begin(), m_dates.end(), [&](const Dated &dated) {
        return roleOf(dated.mention->span.begin) == Role::Posted;
    });
}

bool Chooser::isFeat(const Dated &dated) const {
    const DateSpec &first = dated.mention->first;
    const std::uint32_t token = dated.mention->span.begin;
    const bool took = first.days > 1 && !sentenceHas(token, Meaning::PresentVerb) &&
                      Reader(m_document, dated.mention->span.end).has(token, Meaning::In);
    // "The bridge was built in 1947. Today 20,000 cars cross it"
    const bool opens = token == 0 || !m_document.sameSentence(token - 1, token);
    const bool nowadays = first.days == 0 && m_found.times.empty() && m_found.parts.empty();
    return first.base == DateSpec::Base::Today && (took || nowadays) &&
           !sentenceHas(token, Meaning::Event) &&
           (std::any_of(m_dates.begin(), m_dates.end(),
                        [&](const Dated &other) {
                            return other.date.yearGiven && isPast(other) &&
                                   speaksOfPast(other.mention->span.begin);
                        }) ||
            (nowadays && opens && tellsOfPastYear(token)));
}

bool Chooser::tellsOfPastYear(std::uint32_t end) const {
    constexpr std::uint32_t kReach = 60; ///< tokens before it
    constexpr std::uint32_t kEarliest = 1000;
    const std::chrono::year_month_day today(m_reference.today);
    const auto thisYear = static_cast<std::uint32_t>(static_cast<int>(today.year()));
    const Reader reader(m_document, end);
    for (std::uint32_t i = end > kReach ? end - kReach : 0; i < end; ++i)
        if (reader.number(i, kEarliest, thisYear - 1, 4) && speaksOfPast(i))
            return true;
    return false;
}

bool Chooser::hasFutureSense(std::uint32_t token) const {
    const Field &field = fieldOf(token);
    const Dated &chosen = m_dates[static_cast<std::size_t>(m_date)];
    // "Annual leave approved: 12/10/2026": the verb is not of that day.
    if (chosen.date.yearGiven && chosen.date.first > m_reference.today)
        return true;
    // "The collision occurred around 5 p.m. Wednesday"
    if (roleOf(token) == Role::None && isReport(token) && sentenceHas(token, Meaning::Incident) &&
        !sentenceHas(token, Meaning::Event))
        return false;
    if (isNarrated(chosen) || isLongPast(chosen) || isThisMorningsReport(chosen))
        return false;
    // "Vacation approved Jul 3-14"
    constexpr auto kSoon = std::chrono::days(150);
    if (chosen.date.last && chosen.mention->last &&
        chosen.mention->first.base == DateSpec::Base::Calendar &&
        chosen.date.first > m_reference.today && chosen.date.first < m_reference.today + kSoon)
        return true;
    // "Leave request approved: 22 Dec to 2 Jan": what was decided before the colon is to come.
    if (token > field.begin && m_document.token(token - 1).symbol == ':')
        return true;
    if (field.label != Label::None || (hasTimeNear(token) && !isToldWithTimes(field, token)) ||
        hasTimeAhead())
        return true;
    // but not "Saturday was lovely"
    if (token == field.begin)
        return roleOf(token) != Role::Posted;
    if (toldInPast(field, token) && roleOf(token) != Role::MovedTo &&
        roleOf(token) != Role::Deadline)
        return false;
    if (isFeat(chosen))
        return false;
    const bool explicitFuture =
        chosen.date.yearGiven || chosen.mention->first.base == DateSpec::Base::Today;
    // "Signed forms should be back no later than 8 May"
    return explicitFuture || !speaksOfPast(token) || roleOf(token) == Role::MovedTo ||
           roleOf(token) == Role::Deadline || sentenceHas(token, Meaning::Event);
}

bool Chooser::isScale(const TimeMention &time) const {
    if (time.start.sure || time.start.meridiem >= 0 || time.start.minuteGiven ||
        time.part != DayPart::None)
        return false;
    constexpr int kLongest = 8; ///< hours
    const std::uint32_t at = time.span.begin;
    if (time.end)
        return !time.end->sure && !time.end->minuteGiven &&
               time.end->hour - time.start.hour > kLongest && !sentenceHas(at, Meaning::Event);
    return at > 1 && m_document.sameSentence(at - 2, at) &&
           m_document.tokens[at - 2].kind == TokenKind::Number && !m_document.tokens[at - 2].used;
}

bool Chooser::saysHourAlone(const TimeMention &time) const {
    constexpr std::size_t kShort = 20; ///< tokens, of which unknown words take several
    return time.start.hourWord && m_document.tokens[time.span.begin].unspaced &&
           m_document.tokens.size() <= kShort && sentenceHas(time.span.begin, Meaning::PlaceNoun);
}

bool Chooser::tellsOpening(const TimeMention &time) const {
    constexpr std::uint32_t kLongest = 4; ///< "hours of operation"
    const std::uint32_t at = time.span.begin;
    const Reader reader(m_document, time.span.end);
    const std::uint32_t before = at > 0 && reader.symbol(at - 1, ':') ? at - 1 : at;
    if (time.end && reader.senseBefore(before, Meaning::Opening, kLongest))
        return true;
    return (labelHas(at, Meaning::Opening) || (time.end && sentenceHas(at, Meaning::Opening))) &&
           !sentenceHas(at, Meaning::Event);
}

bool Chooser::acceptBareTime() {
    const bool usable =
        std::any_of(m_found.times.begin(), m_found.times.end(), [&](const TimeMention &time) {
            // "people want bread at seven" in a long sentence tells of no day.
            const bool told = time.start.sure || fieldOf(time.span.begin).spoken ||
                              m_document.tokens.size() <= kShortText;
            const bool strong = (time.marked && told) || time.start.meridiem >= 0 || time.end ||
                                time.part != DayPart::None || saysHourAlone(time) ||
                                sentenceHas(time.span.begin, Meaning::Event);
            return strong && !tellsOpening(time) && !time.start.seconds && !isScale(time) &&
                   !speaksOfPast(time.span.begin) &&
                   !sentenceHas(time.span.begin, Meaning::Habit) &&
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

} // namespace pindle::conversion
