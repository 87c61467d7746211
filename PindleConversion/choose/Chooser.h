#pragma once

#include "PindleConversion/choose/ChooseEvent.h"

namespace pindle::conversion {

/// What stands around a token: its field, its sentence, and what these say about it.
class Surroundings {
public:
    Surroundings(const Document &document, const Expressions &expressions)
        : m_document(document)
        , m_found(expressions) {}

    const Field &fieldOf(std::uint32_t token) const;
    /// The last role word before a token in its sentence, or on its label.
    Role roleOf(std::uint32_t token) const;
    bool sentenceHas(std::uint32_t token, Meaning meaning) const;
    /// A verb of the past leads to the date, none of the present or future does.
    bool toldInPast(const Field &field, std::uint32_t token) const;
    bool hasDateMarker(std::uint32_t token) const;
    /// Tokens between two places, as a measure of belonging together.
    static int distance(std::uint32_t a, std::uint32_t b);
    static int gap(TokenSpan a, TokenSpan b);
    /// A verb of the past stands in the token's sentence.
    bool speaksOfPast(std::uint32_t token) const;

protected:
    /// "must be received" and "the signed form" tell nothing of the past.
    /// "Please return the signed forms by Monday": asked for, whatever was done before.
    bool isAskedBy(const Field &field, std::uint32_t token) const;
    static bool isPastVerb(const Reader &reader, std::uint32_t i);

    /// Dates to come with their time, which cannot tell when something was written: "our talk of
    /// Tuesday 26 May at 11:15".
    std::vector<TokenSpan> m_ahead;
    /// Moments that end what begins with the day before them.
    std::vector<TokenSpan> m_ends;
    const Document &m_document;
    const Expressions &m_found;

private:
    Role saidRole(std::uint32_t token) const;
    bool isAhead(std::uint32_t token) const;
    /// "move our call from Tuesday 2pm to Wednesday": what moves goes to the day at `token`.
    bool isMovedTo(std::uint32_t token) const;
    /// "moved from Tuesday to Thursday": a date at `token`, another one since `from`;
    /// or two times.
    bool isSecondDate(std::uint32_t from, std::uint32_t token) const;
    /// Nothing but the expression at `token` stands between it and the role word.
    bool standsBehind(std::uint32_t role, std::uint32_t token) const;
    /// A comma, dash or another date or time ends what a role word says.
    bool cutOff(const RoleMention &mention, std::uint32_t to) const;
    bool joins(std::uint32_t i) const;
};

/// Weighs the dates and times of a text against each other.
class Chooser : private Surroundings {
public:
    Chooser(const Document &document, const Expressions &expressions, const Reference &reference)
        : Surroundings(document, expressions)
        , m_reference(reference) {}

    Choice run();

private:
    struct Dated {
        const DateMention *mention;
        ResolvedDate date;
        int score = 0;
        bool again = false; ///< a weekday that stands for a date named before
    };

    // ChooseDate.cpp
    void resolveDates();
    /// "6/3, 6/10, 6/17 (all Wednesdays)": the weekday of the days before it.
    bool explainsDays(const Dated &dated) const;
    /// "before 1 May, so on 30 April at the latest": the day behind the last one.
    bool isDayAfterLast(const Dated &dated) const;
    bool hasTimeNear(std::uint32_t token) const;
    bool hasTimeBeside(TokenSpan span) const;
    /// "Booked on the 23rd, 13.30 to 15.00": nobody writes something so long.
    bool hasRangeBeside(TokenSpan span) const;
    int scoreDate(const Dated &dated, int index);
    /// "on 5th" is a day where no other is named; else it may be a street.
    bool isOnlyDay(const Dated &dated) const;
    /// "by Friday": until when something is to be done.
    bool isDue(std::uint32_t token) const;
    /// "Blue Door on 5th": an ordinal behind a name.
    bool mayBeStreet(TokenSpan span) const;
    /// "Saturdays, starts 21 March"
    bool hasFirstDay(const Dated &dated) const;
    /// "Arrival 3 April, departure 10 April": who stays arrives first.
    bool opensStay(const Dated &dated) const;
    /// "Delivered on 16 October", said some days later.
    bool isLongPast(const Dated &dated) const;
    void pickDate();
    bool isPast(const Dated &dated) const;

    // AcceptDate.cpp
    bool acceptDate();
    /// A number that nothing else tells to be a date.
    bool isUntold(const Dated &dated) const;
    /// "Published on 3 May", "2026-04-08 03:12:44 ERROR": when something was written.
    bool tellsOfWriting(const Dated &dated) const;
    /// "I never liked Mondays": a day that comes round, no time, and nothing that happens then.
    bool isHabit(const Dated &dated) const;
    /// A written, dated appointment stays one when its day is over; a report of the past is none.
    bool isPastAppointment(const Dated &dated) const;
    /// "press 1 for sales, the 2 for support": a number that goes on with a word counts something.
    bool countsOnly(const Dated &dated) const;
    /// Between these tokens stands the sign of a currency.
    bool namesMoney(std::uint32_t begin, std::uint32_t end) const;
    /// "The 8:12 train was late this morning".
    bool isThisMorningsReport(const Dated &dated) const;
    /// "We arrived late on Sunday, had dinner at nine": a story.
    bool isNarrated(const Dated &dated) const;
    /// The token's sentence tells of the past alone.
    bool isReport(std::uint32_t token) const;
    /// "on Monday after a debate that lasted until 11 pm"
    bool isToldWithTimes(const Field &field, std::uint32_t token) const;
    /// Some time is not one of a report: "They had us over at six".
    bool hasTimeAhead() const;
    /// "Engineers put up a bridge in nine days", in a story of long ago: how long it took.
    bool isFeat(const Dated &dated) const;
    /// "2026-04-08 03:12:44 ERROR connection lost (attempt 3/5)"
    bool followsStamp(const Dated &dated) const;
    /// "Issued 2 March / Paid 5 March"
    bool isAllPosted() const;
    /// "The bridge was built in 1947.", before token `end`.
    bool tellsOfPastYear(std::uint32_t end) const;
    /// "was", "released" before a date that has no time: a report, unless an event is named.
    bool hasFutureSense(std::uint32_t token) const;
    /// "from 1 to 10", "page 3 of 12"
    bool isScale(const TimeMention &time) const;
    /// "じゃあ5時半に改札前で": an hour and a place is all that is said.
    bool saysHourAlone(const TimeMention &time) const;
    /// "営業時間 10:00〜20:00"
    bool tellsOpening(const TimeMention &time) const;
    /// Without any date: today, if a time is clearly an appointment's.
    bool acceptBareTime();

    // ChooseRanges.cpp
    /// "Camp is 19-21 June. Drop off 6pm Fri", "8-9 May. Start at 9 on the 8th": a weekday or day
    /// behind a range of days is one of them.
    void settleDaysInRanges();
    /// Notes the days that end what begins on the day named before them.
    void joinRanges();
    /// "24 Dec 19:00 – 25 Dec 7:00", "Friday (drop-off 6pm) to Sunday (collect 2pm)".
    bool isRangeOver(const Dated &first, const Dated &second) const;
    /// On a ticket the line below the departure tells that one arrives on the next day.
    bool isArrivalBelow(const Dated &first, const Dated &second) const;
    /// "Berlin 18:52 (Thu 12 March) > Zagreb 07:36 (Fri 13 March)": each day behind its time.
    bool isArrivalBeside(const Dated &first, const Dated &second) const;
    /// Where the moment begins that has this day: with its day, or with a time right before it.
    std::uint32_t momentBegin(TokenSpan date) const;
    /// The token behind it: behind its day, or behind a time right after that.
    std::uint32_t momentEnd(TokenSpan date) const;
    /// The word between start and end that stands right before token `i` or starts there; else
    /// `i` + 1.
    std::uint32_t jointBefore(std::uint32_t i) const;
    /// Hardly a word stands between two places, but for those in brackets.
    bool fewWordsBetween(std::uint32_t begin, std::uint32_t end) const;

    // ChooseDays.cpp
    /// "next week's meeting is on Thursday": the weekday of that week.
    std::optional<ResolvedDate> inNamedWeek(std::size_t i) const;
    /// "Lunch next week?", "Thursday?" in a later turn of a conversation: the weekday of that week.
    std::optional<ResolvedDate> inAskedWeek(std::size_t i) const;
    /// "next week" or the one after it.
    static bool isLaterWeek(const DateMention &mention);
    /// "w/c 18 May, likely the Weds": the weekday of that week.
    std::optional<ResolvedDate> inWeekOf(const DateMention &week, const DateMention &day) const;
    /// "w/c 18 May"
    bool isFirstOfWeek(const DateMention &mention) const;
    /// "6月19号出发，21号回": the day is one of the month named before it.
    std::optional<ResolvedDate> inNamedMonth(std::size_t i) const;
    /// "the 8th", and nothing that says of which month.
    static bool isBareDay(const DateMention &mention);
    /// "Friday", and nothing that says which.
    static bool isBareWeekday(const DateMention &mention);
    /// "Run Sunday?", "can't do Sunday": a day that is turned down further on.
    bool isTurnedDown(const Dated &dated) const;
    /// "my Saturday shift? Not this one, the one after": the weekday of the week after.
    void settleLaterWeeks();
    /// The label of a token's field starts with a word of that meaning.
    bool labelHas(std::uint32_t token, Meaning meaning) const;
    /// "Wed 3 June, Wed 10 June, 6pm" begins with its first day; "6 November ... arrival 05:50
    /// (Saturday)" tells the day in full before.
    bool followsDate(const Dated &dated) const;
    /// "Abstracts closed 31 January. The symposium takes place 23 June", said in April: texts tell
    /// days in their order.
    bool isBeforeNearer(const Dated &dated) const;
    /// "2026-03-04 11:02:17 Connection reset": a machine wrote it down.
    bool isStamp(const Dated &dated) const;
    /// "Mo 19.1. - Fr 23.1. Abfahrt Mo 7:30": the weekday is that of the date before.
    void settleNamedDays();
    /// A date that opens a line, as an earlier one with a time does: of a list the first counts.
    bool isLaterItem(const Dated &dated) const;
    /// "Tue-Sun" beside the days of an exhibition.
    bool tellsOpeningHours(const Dated &dated) const;
    /// "Opening hours: Mon-Fri 9-5"
    bool isHoursOnly(const Dated &dated) const;
    /// "Mon-Fri 8-18, Sat 8-13, Sun closed": days of the week, words of opening, and no event.
    bool isTimetable() const;
    /// "Tuesday to Sunday", joined into one date or not.
    bool spansMostDays(const Dated &dated) const;

    // ChooseTime.cpp
    void noteClockStyle();
    /// Whether another date of the same sentence stands closer to a time.
    bool belongsToOther(const TimeMention &time) const;
    /// "Jan 20, Mar 17 and May 19, all at 6:30 PM": a time is that of every day in a list.
    bool isListed(TokenSpan a, TokenSpan b) const;
    int scoreTime(const TimeMention &time, int index);
    /// "4pm Berlin / 10am New York": the same time once more.
    bool isTranslated(const TimeMention &first, const TimeMention &second) const;
    /// "at 8:00 and 9:30": what happens twice begins with the first.
    bool isListed(const TimeMention &first, const TimeMention &second) const;
    /// "8 PM (talk at 7:15)": what stands in brackets comes second.
    bool isInBrackets(std::uint32_t at) const;
    /// "Nov 8 (at Ridgeview, 9am), Nov 22 (...)": in the brackets behind that date.
    bool isBracketBehind(TokenSpan date, std::uint32_t at) const;
    /// "tomorrow noon lunch, 12:30": the later time tells it to the minute.
    bool isRoughNoon(const TimeMention &time) const;
    /// A range that its line says no other time beside.
    bool isOnlyTimeOfField(const TimeMention &time) const;
    int roleScore(std::uint32_t at) const;
    /// "no food after 10 pm the night before"
    bool isOnEve(TokenSpan time) const;
    /// In a conversation a later proposal replaces the first.
    bool counterProposal(std::uint32_t at) const;
    bool dateIsElsewhere(std::uint32_t at) const;
    void pickTime();
    /// "In the night of 3 to 4 May at 2:00" is on the second day.
    void settleNight();
    /// "25:30" belongs to the day after the one it is said of.
    void startPastMidnight();
    /// "doors at 6 pm, show at 8": the half of the day is said once, for the first time.
    TimeMention inHalf(const TimeMention &time) const;
    /// Evening and morning kinds win over neutral ones; the event's own sentence comes first.
    EventKind eventKind() const;
    /// "and then drinks": words before token `i` tell that it comes after the event.
    bool isBehindAside(const Reader &reader, std::uint32_t i) const;
    /// "at the Railway Club": the kind of event at `i` is a word of a place's name.
    static bool isPartOfPlace(const Reader &reader, std::uint32_t i, const Sense &event);
    TimeContext contextOf(const TimeMention &time) const;
    /// "Saturday night" of another day says nothing about this one.
    bool belongsToOtherDate(std::uint32_t part) const;

    // ChooseEnd.cpp
    void pickEnd();
    /// "Check-out: Sunday 20 July, 11:00": a later day that ends the event.
    bool endOnLaterDay();
    /// "Regatta 9-10 May. Racing starts 10am Sat": the range's last day ends it.
    bool endOfNamedRange();
    /// "to Leeds Tuesday, back Thursday", said on a Wednesday: the Thursday behind that Tuesday.
    Day behindStart(const Dated &dated) const;
    /// "arrival 05:50 (Saturday)": the day in brackets is the end's.
    bool isDayOfEnd(const Dated &dated) const;
    /// The next line, or the next cell of the same one.
    static bool isBelowOrBeside(const Field &first, const Field &second);
    bool tellsEnd(std::uint32_t token) const;
    /// "Outbound: 4 August, Portsmouth 08:15, arrives Caen 15:00": whatever the next line says.
    bool endsInLine() const;
    /// "Opening on 3 October at 6pm. The exhibition runs until 29 November."
    bool isOpenUntil(const Dated &dated) const;
    /// A word such as "back" stands between them.
    bool saysRoleBetween(TokenSpan first, TokenSpan second) const;
    const TimeMention *timeBeside(const Dated &dated) const;
    /// "12-13 May. Start at 9 on the 12th and finish at 3 on the 13th."
    bool endOfLastDay();
    /// "17 April 18:00 - 19 April 16:00".
    bool endFromSecondDay();
    bool endFromTime();
    int endAfter(const ClockSpec &end, const ClockSpec &start) const;
    /// "Zaragoza 17:40 Barcelona Sants 19:21" on a ticket.
    bool isStationBetween(TokenSpan first, TokenSpan second) const;
    /// "MAD" of "MAD 18:05 LHR 19:35".
    bool isAirport(std::uint32_t i) const;
    /// "ATL 6:20 PM - MCO 7:52 PM": two times with a name between them make one range.
    bool isJoined(const TimeMention &first, const TimeMention &second) const;
    /// No date, time or zone stands between two expressions.
    bool nothingBetween(TokenSpan first, TokenSpan second) const;
    /// The second time of a journey is its end.
    bool travelEnd();
    /// "Perth (PER) T1 12:05": an airport's code in brackets stands before the time.
    bool isAtAirport(const TimeMention &time) const;
    /// On a ticket the line behind the departure tells the arrival.
    bool isArrival(const TimeMention &start, const TimeMention &next) const;
    bool nearStart(std::uint32_t token) const;
    void endFromLength();
    /// "for three days".
    void lengthInDays();

    // ChooseEvent.cpp
    Choice refuse(Notice why);
    void pickZone();
    /// Notes the lines of other events, whose places are theirs.
    void noteOtherFields();
    /// Notes the lines below the event's hour that have another: "Vin d'honneur à 17 h 30".
    void noteLaterFields();
    /// "Chem P1 Mon 18 May AM" below "Bio P1 Tue 12 May AM".
    bool isLineOfOther(const Dated &other) const;
    void notice();
    /// How many further days of the text have an event of their own.
    int otherEvents() const;
    /// Another date that would have made as good an event.
    bool hasRival() const;

    const Reference &m_reference;
    Choice m_choice;
    std::vector<Dated> m_dates;
    int m_date = -1; ///< index of the chosen date, -1 for none
    int m_time = -1; ///< index of the chosen time, -1 for none
    bool m_twentyFour = false;
    bool m_assumedToday = false;
    bool m_assumedHalf = false;
};

} // namespace pindle::conversion
