#include "PindleConversion/expressions/Announced.h"

#include "PindleConversion/expressions/Starts.h"

namespace pindle::conversion {

namespace {

/// "RB 14 ab Nauen", "Coach 7 departs Leeds 0915": the number of a train or coach.
bool isLine(const Reader &reader, std::uint32_t i, const Sense &event) {
    if (event.value != static_cast<int>(EventKind::Travel) || !reader.token(i - 1).capital ||
        reader.token(i).kind != TokenKind::Number)
        return false;
    const Sense *goes = reader.sense(i + 1, Meaning::Event);
    return reader.token(i - 1).end - reader.token(i - 1).begin <= 3 ||
           (goes && goes->value == event.value);
}

/// "book fair 9-1": from morning to afternoon, as no game ends.
bool isRangeOfHours(const Reader &reader, std::uint32_t i, const Expressions &found) {
    static constexpr Meanings kDays{Meaning::DateMarker, Meaning::Weekday, Meaning::WeakWeekday};
    const std::uint32_t next = skipDayHours(reader, i);
    return next != i && (!found.dates.empty() || reader.mayHave(next, kDays));
}

/// The kind of event right before a number can announce a time: "dinner 7".
bool eventAnnounces(const Reader &reader, std::uint32_t i, const Field &field,
                    const Expressions &found) {
    if (i == field.begin)
        return false;
    constexpr std::uint32_t kLongest = 3; ///< "back to school"
    const Sense *event = reader.senseBefore(i, Meaning::Event, kLongest);
    // "Lecture Theatre 1"
    if (i > field.begin + 1 && reader.token(i - 1).capital && reader.word(i - 2) &&
        reader.has(i - 1, Meaning::PlaceNoun))
        return false;
    if (!event || isLine(reader, i, *event))
        return false;
    // "race 9.30, medals 11"
    const bool plain = event->value == static_cast<int>(EventKind::Work) ||
                       event->value == static_cast<int>(EventKind::Neutral);
    return !plain || (isDottedTime(reader, i) && reader.symbol(i + 3, ',')) ||
           isRangeOfHours(reader, i, found);
}

/// "08.59" of a timetable.
bool isTimetableTime(const Reader &reader, std::uint32_t i) {
    return reader.number(i, 0, 23) && reader.token(i).digits == 2 && hasDottedMinutes(reader, i);
}

/// "leaves the office", "leaves school car park": what is left ends before token `i`.
bool leavesPlace(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kLongest = 2; ///< a kind of place
    const Sense *place = reader.senseBefore(i, Meaning::PlaceNoun, kLongest);
    if (!place || i < place->length + 2U)
        return false;
    const std::uint32_t before = i - place->length - 1;
    const Sense *leaves = reader.sense(before - 1, Meaning::Event);
    return reader.has(before, Meaning::The) ||
           (leaves && leaves->value == static_cast<int>(EventKind::Travel));
}

/// "Saturday, Jasmine House 7.45": minutes behind a name end what is said of a day.
/// "the 7.20?" in a conversation.
bool endsWithTime(const Reader &reader, std::uint32_t i, const Field &field,
                  const Expressions &found) {
    // "The coach leaves the office 8.45, back by 4."
    if (isDottedTime(reader, i) && !reader.word(i + 3) && i > 1 &&
        (!found.dates.empty() || reader.has(i + 4, Meaning::RoleWord)) && leavesPlace(reader, i))
        return true;
    if (found.dates.empty() || i == 0 || !reader.word(i - 1) || !reader.token(i).spaceBefore ||
        !(isDottedTime(reader, i) || (!found.times.empty() && isTimetableTime(reader, i))))
        return false;
    if (field.spoken && reader.has(i - 1, Meaning::The) &&
        (!reader.word(i + 3) || reader.has(i + 3, Meaning::Event)))
        return true;
    if (!reader.token(i - 1).capital || reader.word(i + 3))
        return false;
    return reader.document().sameSentence(found.dates.back().span.begin, i);
}

/// Two digits and minutes behind the name of a stop: "Harlingen 14.20".
bool isStopTime(const Reader &reader, std::uint32_t i) {
    return i > 0 && isTimetableTime(reader, i) && reader.word(i - 1) &&
           reader.token(i - 1).capital && reader.token(i).spaceBefore;
}

/// "Harlingen 14.20 – Vlieland 15.55": departure and arrival tell each other's times.
bool isTimetablePair(const Reader &reader, std::uint32_t i, const Expressions &found) {
    constexpr std::uint32_t kLongestName = 4; ///< with the dash
    if (!isStopTime(reader, i))
        return false;
    const std::uint32_t dash = i + 3;
    if (reader.has(dash, Meaning::RangeTo) && !reader.glued(dash))
        for (std::uint32_t k = dash + 2; k <= dash + kLongestName; ++k)
            if (isStopTime(reader, k))
                return true;
    const std::uint32_t before = found.times.empty() ? i : found.times.back().span.end;
    return before < i && i - before <= kLongestName && reader.has(before, Meaning::RangeTo);
}

/// "still on for tomorrow? 7 at mine", "... moved to Saturday. 11 to 4 at the park": hours and
/// a place behind a day.
bool opensWithHour(const Reader &reader, std::uint32_t i, const Field &field,
                   const Expressions &found) {
    if (found.dates.empty() || i <= field.begin || !reader.number(i, 1, 12) ||
        reader.document().sameSentence(i - 1, i))
        return false;
    const Sense *to = reader.sense(i + 1, Meaning::RangeTo);
    const std::uint32_t last = to ? i + 1 + to->length : i;
    const std::uint32_t next = last + 1;
    const Sense *place = reader.sense(next, Meaning::PlaceMarker);
    // "8?" is the first hour of a conversation.
    const bool asked = field.spoken && found.times.empty() && last == i &&
                       (reader.symbol(next, '?') || !reader.at(next));
    return asked || (place && place->value == 1) ||
           (last > i && reader.number(last, 1, 12) &&
            (place || !reader.at(next) || reader.symbol(next, ',') || reader.symbol(next, '.')));
}

} // namespace

bool isAnnounced(const Reader &reader, std::uint32_t i, const Field &field,
                 const Expressions &found) {
    return eventAnnounces(reader, i, field, found) || opensWithHour(reader, i, field, found) ||
           endsWithTime(reader, i, field, found) || isTimetablePair(reader, i, found);
}

} // namespace pindle::conversion
