#include "PindleConversion/choose/Chooser.h"

#include <algorithm>

namespace pindle::conversion {

Choice Chooser::run() {
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
    noteOtherFields();
    noteLaterFields();
    m_choice.found = true;
    notice();
    return std::move(m_choice);
}

Choice Chooser::refuse(Notice why) {
    m_choice.found = false;
    m_choice.notice = why;
    return std::move(m_choice);
}

bool Chooser::isLineOfOther(const Dated &other) const {
    const std::uint32_t at = other.mention->span.begin;
    const Field &own = fieldOf(m_choice.dateSpan.begin);
    return other.mention->first.base == DateSpec::Base::Calendar && fieldOf(at).line > own.line &&
           fieldOf(at).label == Label::None && own.label == Label::None && !own.spoken &&
           roleOf(at) == Role::None && other.date.first > m_choice.start;
}

void Chooser::noteOtherFields() {
    if (m_dates.size() < 2 || m_choice.dateSpan.empty())
        return;
    const auto field = [&](TokenSpan span) { return m_document.tokens[span.begin].field; };
    // "24 Sept - Fauré" above "22 Oct - Mozart"
    const auto opensField = [&](std::uint32_t at) { return fieldOf(at).begin == at; };
    for (const Dated &other : m_dates) {
        const std::uint32_t own = field(other.mention->span);
        const bool mine = own == field(m_choice.dateSpan) ||
                          (!m_choice.timeSpan.empty() && own == field(m_choice.timeSpan)) ||
                          (!m_choice.endSpan.empty() && own == field(m_choice.endSpan));
        // and "Thursday is perfect" above the quoted "Thursday, March 12"
        const bool answers =
            other.mention->first.base == DateSpec::Base::Weekday &&
            other.mention->first.which == Which::Nearest &&
            other.mention->span.begin < m_choice.dateSpan.begin &&
            other.mention->first.weekday ==
                static_cast<int>(std::chrono::weekday(m_choice.start).iso_encoding());
        const bool same =
            answers || other.date.first == m_choice.start || other.date.first == m_choice.last;
        if (!mine && !same && !other.mention->weak && !other.mention->repeated &&
            other.date.first >= m_reference.today &&
            (hasTimeNear(other.mention->span.begin) ||
             (opensField(other.mention->span.begin) && opensField(m_choice.dateSpan.begin)) ||
             isLineOfOther(other)))
            m_choice.otherFields.push_back(own);
    }
}

void Chooser::noteLaterFields() {
    if (m_time < 0 || m_found.times.size() < 2)
        return;
    // "overstap 08:36 Utrecht Centraal" between departure and arrival; else a journey has no lines
    // of its own.
    const bool travels = m_choice.kind == EventKind::Travel;
    if (travels && (m_choice.endSpan.empty() || m_found.times.size() < 3))
        return;
    const std::uint32_t own = m_choice.timeSpan.begin;
    const ClockSpec &start = m_found.times[static_cast<std::size_t>(m_time)].start;
    const auto sameClock = [&](const TimeMention &time) {
        return time.start.hour == start.hour && time.start.minute == start.minute;
    };
    for (std::size_t i = static_cast<std::size_t>(m_time) + 1; i < m_found.times.size(); ++i) {
        const std::uint32_t at = m_found.times[i].span.begin;
        const Field &field = fieldOf(at);
        if (field.line <= fieldOf(own).line || field.label != Label::None || field.spoken ||
            sameClock(m_found.times[i]) || at == m_choice.endSpan.begin ||
            (roleOf(at) != Role::None && !(travels && roleOf(at) == Role::Side)))
            continue;
        if (travels &&
            (at > m_choice.endSpan.begin || field.line >= fieldOf(m_choice.endSpan.begin).line))
            return;
        m_choice.laterFields.push_back(m_document.tokens[at].field);
    }
}

void Chooser::pickZone() {
    const TimeMention *source = nullptr;
    if (m_time >= 0 && !m_found.times[static_cast<std::size_t>(m_time)].zoneSpan.empty())
        source = &m_found.times[static_cast<std::size_t>(m_time)];
    // "22:00 to 25 December, 04:00 UTC" says it behind the end.
    const auto end =
        std::find_if(m_found.times.begin(), m_found.times.end(), [&](const TimeMention &time) {
            return time.span.begin == m_choice.endSpan.begin && !time.zoneSpan.empty();
        });
    if (!source && m_choice.endMinute && end != m_found.times.end())
        source = &*end;
    if (!source && !m_found.zones.empty() && m_choice.startMinute)
        source = &m_found.zones.front();
    if (!source)
        return;
    m_choice.zone = resolveZone(*source, m_reference.zone);
    if (!m_choice.zone.empty())
        m_choice.zoneSpan = source->zoneSpan;
}

void Chooser::notice() {
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
    else if (m_choice.moreEvents = otherEvents(); m_choice.moreEvents > 0)
        m_choice.notice = m_choice.moreEvents == 1 ? Notice::OneMoreEvent : Notice::MoreEvents;
    else if (hasRival())
        m_choice.notice = Notice::SeveralDates;
    else if (dated.date.orderAssumed)
        m_choice.notice = Notice::OrderAssumed;
    else if (m_assumedHalf)
        m_choice.notice = Notice::HalfAssumed;
}

int Chooser::otherEvents() const {
    const Dated &mine = m_dates[static_cast<std::size_t>(m_date)];
    std::vector<Day> seen{mine.date.first};
    for (const Dated &other : m_dates) {
        const std::uint32_t at = other.mention->span.begin;
        const Role role = roleOf(at);
        const bool ownEvent = !other.mention->weak && !isPast(other) && hasTimeNear(at) &&
                              (role == Role::None || role == Role::Show) &&
                              fieldOf(at).label != Label::End &&
                              fieldOf(at).label != Label::Deadline &&
                              !m_document.sameSentence(at, mine.mention->span.begin);
        if (ownEvent && std::find(seen.begin(), seen.end(), other.date.first) == seen.end() &&
            !(m_choice.last && other.date.first <= *m_choice.last))
            seen.push_back(other.date.first);
    }
    return static_cast<int>(seen.size()) - 1;
}

bool Chooser::hasRival() const {
    constexpr int kClose = 12;
    const Dated &mine = m_dates[static_cast<std::size_t>(m_date)];
    return std::any_of(m_dates.begin(), m_dates.end(), [&](const Dated &other) {
        return other.mention != mine.mention && other.date.first != mine.date.first &&
               other.date.first != m_choice.last && !other.mention->weak && !isPast(other) &&
               mine.score - other.score < kClose;
    });
}

Choice chooseEvent(const Document &document, const Expressions &expressions,
                   const Reference &reference) {
    return Chooser(document, expressions, reference).run();
}

} // namespace pindle::conversion
