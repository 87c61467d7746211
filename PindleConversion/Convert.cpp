#include "PindleConversion/Convert.h"

#include <algorithm>

#include "PindleConversion/Messages.h"
#include "PindleConversion/clean/Utf8.h"
#include "PindleConversion/compose/Compose.h"
#include "PindleConversion/layout/ReadDocument.h"

namespace pindle::conversion {

namespace {

using namespace std::chrono;

/// Month before day is the habit of the Americas.
bool isAmerican(std::string_view zone) {
    for (std::string_view area : {"America/", "US/", "Canada/"})
        if (zone.starts_with(area))
            return true;
    return zone == "Pacific/Honolulu";
}

Reference referenceOf(const Request &request, Day today) {
    return {today, request.referenceTimezone, isAmerican(request.referenceTimezone)};
}

void addEvidence(Reply &reply, const Document &document, Fact fact, TokenSpan span) {
    if (!span.empty())
        reply.evidence.push_back(
            {fact, document.tokens[span.begin].begin, document.tokens[span.end - 1].end});
}

/// Writes days, times and zone of the choice into the draft; a text that names no zone means the
/// user's own.
void fillMoments(Draft &draft, const Choice &choice, std::string_view ownZone) {
    constexpr int kMinutesInDay = 24 * 60;
    draft.startDate = formatDay(choice.start);
    draft.timeZone = choice.zone.empty() ? std::string(ownZone) : choice.zone;
    if (choice.startMinute)
        draft.startTime = formatMinute(*choice.startMinute);
    std::optional<Day> last = choice.last;
    if (choice.endMinute) {
        draft.endTime = formatMinute(*choice.endMinute);
        if (!last)
            last = choice.start + days(*choice.endMinute / kMinutesInDay);
    }
    if (last && (*last != choice.start || choice.endMinute))
        draft.endDate = formatDay(*last);
}

/// A clock change matters more than what else was assumed.
void noteClockChange(Choice &choice, std::string_view ownZone) {
    if (!choice.startMinute || choice.notice == Notice::WeekdayConflict)
        return;
    const std::string zone = choice.zone.empty() ? std::string(ownZone) : choice.zone;
    switch (clockChangeAt(choice.start, *choice.startMinute, zone)) {
    case ClockChange::Skipped:
        choice.notice = Notice::ClockSkipped;
        return;
    case ClockChange::Repeated:
        choice.notice = Notice::ClockRepeated;
        return;
    case ClockChange::None:
        return;
    }
}

/// A text and what it says of when.
struct Reading {
    Document document;
    Expressions expressions;
};

Reading readAll(std::string_view text, std::string_view zone) {
    Reading reading;
    reading.document = readDocument(text, zone);
    reading.expressions = findExpressions(reading.document);
    return reading;
}

/// Reads a text, and of a long list of dates only the head: it holds more of them than are
/// weighed, and whoever highlights the list should not wait for the rest.
Reading read(std::string_view text, std::string_view zone) {
    constexpr std::size_t kHead = 10'000; ///< bytes
    constexpr std::size_t kLong = 3 * kHead;
    if (text.size() > kLong) {
        std::size_t end = text.find('\n', kHead);
        if (end > kLong)
            end = text.find(' ', kHead);
        if (end > kLong)
            end = letterBegin(text, kHead);
        Reading head = readAll(text.substr(0, end), zone);
        if (head.expressions.dates.size() >= kMostExpressions)
            return head;
    }
    return readAll(text, zone);
}

Reply refuse(std::string error) {
    Reply reply;
    reply.error = std::move(error);
    return reply;
}

bool isLink(const Document &document, TokenSpan span) {
    return !span.empty() && document.tokens[span.begin].kind == TokenKind::Link;
}

/// "Check-in", for want of a better title.
bool isLabel(const Document &document, TokenSpan title) {
    return std::any_of(document.fields.begin(), document.fields.end(), [&](const Field &field) {
        return field.labelWords.begin == title.begin && field.labelWords.end == title.end;
    });
}

/// "Dzień Dziecka - 1 czerwca, godz. 9": a holiday that opens a line, beside its date, is what
/// the event is called.
void freeHoliday(Document &document, const Expressions &expressions, const Choice &choice) {
    for (const DateMention &date : expressions.dates) {
        const std::uint32_t begin = date.span.begin;
        if (!date.holiday || begin == choice.dateSpan.begin || choice.dateSpan.empty() ||
            document.fields[document.tokens[begin].field].begin != begin)
            continue;
        for (std::uint32_t i = begin; i < date.span.end; ++i)
            document.tokens[i].used = false;
    }
}

/// Only words of one sentence stand between a title and its place with its marker, "in the".
bool leadsTo(const Document &document, std::uint32_t from, std::uint32_t to) {
    constexpr std::uint32_t kReach = 12;
    constexpr std::uint32_t kMarker = 2;
    if (to <= from + kMarker || to > from + kReach || !document.sameSentence(from, to))
        return false;
    return std::all_of(document.tokens.begin() + from, document.tokens.begin() + to - kMarker,
                       [](const Token &token) { return !token.used; });
}

/// A booking or visit is called by its place as well: "stay at The Gull Inn".
TokenSpan titleWithPlace(const Document &document, const Choice &choice, TokenSpan title,
                         TokenSpan place) {
    constexpr std::uint32_t kLongestJoint = 3;
    // "NYE at Tasha's! 9pm"
    const std::uint32_t day = choice.dateSpan.begin;
    if (const Sense *holiday =
            title.empty() && !choice.dateSpan.empty()
                ? Reader(document, choice.dateSpan.end).sense(day, Meaning::Holiday)
                : nullptr)
        return {day, day + holiday->length};
    if (place.empty() || isLink(document, place))
        return title;
    if (title.empty() || isLabel(document, title))
        return place;
    const Reader reader(document, title.end);
    // "Check in Friday 3pm, check out Sunday. The Old Mill"
    if (const Sense *role = reader.sense(title.begin, Meaning::RoleWord);
        role && role->value == static_cast<int>(Role::Collect) &&
        title.begin + role->length == title.end)
        return place;
    const Sense *general = reader.sense(title.begin, Meaning::GeneralEvent);
    const bool follows = place.begin >= title.end && place.begin <= title.end + kLongestJoint &&
                         document.sameSentence(title.begin, place.begin);
    if (!general || title.begin + general->length != title.end)
        return title;
    // "【予約確認】さくら歯科"
    if (follows && document.token(title.end).symbol == ']')
        return place;
    if (follows)
        return {title.begin, place.end};
    // "An appointment has been made for you in the Eye Clinic"
    if (leadsTo(document, title.end, place.begin))
        return place;
    // "施設予約完了のお知らせ ... テニスコート": without spaces the words beside it are no name.
    return document.tokens[place.begin].unspaced ? place : title;
}

} // namespace

Reply convert(const Request &request) {
    const auto today = parseDay(request.referenceDate);
    if (!today)
        return refuse("The reference date is not a valid date.");
    const Reference reference = referenceOf(request, *today);
    auto [document, expressions] = read(request.text, request.referenceTimezone);
    Choice choice = chooseEvent(document, expressions, reference);
    if (!choice.found) {
        Reply reply = refuse(refusalText(document, choice.notice));
        reply.cleanText = std::move(document.text);
        return reply;
    }
    noteClockChange(choice, request.referenceTimezone);
    freeHoliday(document, expressions, choice);
    Reply reply;
    const TokenSpan place = findPlace(document, choice);
    const TokenSpan named =
        findTitle(document, choice, isLink(document, place) ? TokenSpan{} : place);
    const TokenSpan title = titleWithPlace(document, choice, named, place);
    Draft draft;
    fillMoments(draft, choice, request.referenceTimezone);
    draft.location = spanText(document, place);
    draft.title = titleText(document, title);
    draft.description = describe(document, title, place);
    constexpr std::size_t kFacts = 6;
    reply.evidence.reserve(kFacts);
    addEvidence(reply, document, Fact::Title, title);
    addEvidence(reply, document, Fact::Location, place);
    addEvidence(reply, document, Fact::Date, choice.dateSpan);
    addEvidence(reply, document, Fact::Time, choice.timeSpan);
    addEvidence(reply, document, Fact::End, choice.endSpan);
    addEvidence(reply, document, Fact::Zone, choice.zoneSpan);
    reply.draft = std::move(draft);
    reply.userMessage = noticeText(document, choice);
    reply.cleanText = std::move(document.text);
    return reply;
}

} // namespace pindle::conversion
