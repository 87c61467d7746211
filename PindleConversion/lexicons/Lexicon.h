#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace pindle::conversion {

/// What a word or phrase can mean to the engine. A phrase may have several meanings. Lexicons
/// spell these in lower case with hyphens: `[month]`, `[part-of-day]`.
enum class Meaning : std::uint8_t {
    Common,      ///< only tells the language, and keeps unspaced words whole
    Month,       ///< value 1 to 12
    Weekday,     ///< value 1 (Monday) to 7
    WeakWeekday, ///< a weekday that is also an everyday word
    Repeated,    ///< a weekday in the plural: the event repeats
    Number,      ///< value of the number word
    Ordinal,     ///< value of the ordinal word, -1 for "last"
    OrdinalMark, ///< what follows the digits of an ordinal
    RelativeDay, ///< value: days from today
    UnitWord,    ///< value: a `Unit`
    This,        ///< "this" before a weekday or unit
    Next,        ///< "next"
    Last,        ///< "last", in the past
    AfterNext,   ///< "after next", before or behind a weekday or week
    Behind,      ///< "next" and the like behind its weekday or unit; value: a `Which`
    Period,      ///< "next week" in one phrase; value: `Which` * 16 + `Unit`
    In,          ///< "in" before an amount of time
    FromNow,     ///< behind an amount of time, counting from today
    From,        ///< behind an amount of time or a weekday, counting from the date that follows;
                 ///< value 1: back from a holiday: "before"
    Ago,         ///< behind an amount of time, counting back
    Of,          ///< between ordinal and month
    The,         ///< an article
    DateMarker,  ///< a word that a date may follow: "on", "by"
    DayLead,     ///< a word that a bare day of the month may follow: "le 14"
    MonthEnd,    ///< "end of", before a month; value 1: the end of this month
    DayWord,     ///< "day", in "last day of June"; value 1: "working day"
    YearMark,    ///< behind the digits of a year; value 1: alone, for this year
    YearWord,    ///< a year in words; value
    MonthMark,   ///< behind the digits of a month
    DayMark,     ///< behind the digits of a day
    Era,         ///< before the year of an era; value: the year before its first
    Holiday,     ///< value: month * 100 + day; with a note: days from Easter Sunday; 0 and
             ///< less: days from the last Sunday of Advent; from `kNthHoliday` on: that times the
             ///< week + month * 100 + weekday
    HalfPast,      ///< minutes past, value
    HalfBare,      ///< "half" directly before the hour it follows
    TowardsHour,   ///< minutes of the hour before the one named: "halb acht"; value
    SpokenClock,   ///< value: minute of the half day
    QuarterWord,   ///< value: minutes
    PastWord,      ///< between minutes and hour, counting up
    ToWord,        ///< between minutes and hour, counting down
    MinutesBehind, ///< behind the hour: "e mezza" 30, "menos cuarto" -15
    PlusMinutes,   ///< between hour and minutes, counting up
    MinusMinutes,  ///< between hour and minutes, counting down
    TimeMarker,    ///< a word that a clock time may follow
    Approximate,   ///< directly behind a time (0), or between day and time (1)
    OClock,        ///< behind a full hour
    Meridiem,      ///< value 0: before noon, 1: after noon
    HourMark,      ///< "h" behind a 24-hour time; value 1: makes any hour a time, 2: where one is
                   ///< announced
    MinuteMark,    ///< behind the minutes of a time
    ClockWord,     ///< value: minute of the day
    PartOfDay,     ///< value: a `DayPart`
    RangeTo,       ///< between start and end; value 1: of times only
    RangeFrom,     ///< before start and end
    And,           ///< joins two things
    WeekOf,        ///< before the first day of a week: "w/c", "week of"
    Or,            ///< between two things of which one is chosen
    Connector,     ///< may follow a bare hour
    Zone,          ///< note: identifiers; the user's own if listed, else the first
    ZoneAfterTime, ///< as Zone, but only behind a clock time; value 1: only in capitals
    ZoneWord,      ///< value 0: a city, value 1: "time" behind a city, 2: "time of" before one
    ZoneOffset,    ///< "UTC", "GMT": an offset may follow
    LabelWord,     ///< value: a `Label`
    PlaceMarker,   ///< value 1: strong ("at"), 0: weak ("in")
    PlaceBehind,   ///< behind a place; value 1: only behind a kind of place: "reserved for your"
    PlaceNoun,     ///< a kind of place
    StreetWord,    ///< a kind of street; value 1: before its name
    PlaceStop,     ///< a word that ends a place
    NotAPlace,     ///< what follows "at" or "in" without being a place
    Online,        ///< a way to meet without a place
    Event,         ///< value: an `EventKind`
    RoleWord,      ///< value: a `Role`
    RoleBehind,    ///< a role said behind its date or time: "23時まで"; value: a `Role`
    Greeting,      ///< a piece that greets or thanks; value 1: says no to what was asked
    Chatter,       ///< a piece that is no title: requests, prices, conditions; value 1: also as
                   ///< the verb that ends a request: "Ausweis mitbringen"
    TitleLead,     ///< dropped from the front of a title; value 4: ends the line of a host, who
                   ///< "invites" to what follows
    TitleTail,     ///< dropped from the end of a title
    Person,        ///< "with", before a person; value 1: of the family, at whose home one meets
    Abbreviation,  ///< its full stop ends no sentence
    PastVerb,      ///< tells of the past
    PresentVerb,   ///< tells of now or the future
    DurationMark,  ///< "for", before an amount of time that is a length
    DurationTail,  ///< behind an amount of time that is a length
    NoDuration,    ///< behind an amount of time that is no length; value 1: before one: "hold"
    Wrote,         ///< ends the line that introduces a quoted mail; value 1: alone does
    Daily,         ///< "daily", behind hours
    Cancelled,     ///< the event does not take place
    OnlineEvent,   ///< a kind of event that is usually held online
    GeneralEvent,  ///< says too little alone: "stay", "booking"; the place completes it
    AsideLead,     ///< what follows is not the event itself: "followed by", "because of"
    DueMarker,     ///< before the last day for something: "by"
    PageHead,      ///< heads a page or a list, and is no event: "What's on"; a `HeadKind`
    Opening,       ///< tells when a place is open: "open", "closed"
    NightTo,       ///< between the two days of a night: "in der Nacht von Samstag auf Sonntag"
    Moving,        ///< moves an event from one day to another: "shift", "swap"
    Habit,         ///< what is done time and again, and no event: "I usually", "normally"
    Incident,      ///< of the police, the fire brigade and accidents, which are only told of once
                   ///< they are over: "collision", "burglary"
    Measure,       ///< a unit behind a number that is no time: "GB", "km"
    Counter,       ///< behind digits that are no time; value 0: they count something ("2名"), 1:
                   ///< they are its number ("0633次")
    Numbered,      ///< before digits that tell which one of how many: "attempt 4/5", "page 2/3"
    Inviting, ///< 0: a verb that names whom before what it invites to: "invite", "convocam-se",
              ///< 1: what leads to that event: "to", "para", 2: a verb whose object is the
              ///< event: "organises"
    Host,     ///< who heads their notices, in a line above the event's name; a `HostKind`
};

/// Parts the week of a holiday such as "the fourth Thursday of November" from month and weekday;
/// the last week of a month counts as `kLastWeek`.
inline constexpr int kNthHoliday = 2000;
inline constexpr int kLastWeek = 6;

inline constexpr std::size_t kMeanings = static_cast<std::size_t>(Meaning::Host) + 1;

enum class Unit : std::uint8_t { Minute, Hour, Day, Week, Fortnight, Month, Year, Weekend, Night };
enum class DayPart : std::uint8_t { None, Morning, Noon, Afternoon, Evening, Night };
enum class EventKind : std::uint8_t { None, Neutral, Work, Morning, Midday, Evening, Travel };
/// `Collect`: an `End` where a moment follows directly, and one went before: "collect Sunday 2pm".
/// `Later`: the weekday before it is the one a week later: "not this one, the one after".
/// `Eve`: the day before the event, which has hours of its own: "put it out the night before".
enum class Role : std::uint8_t {
    None,
    Deadline,
    Posted,
    MovedFrom,
    MovedTo,
    End,
    Side,
    Show,
    Collect,
    Later,
    Eve
};
/// `Ends`: the head is all there is. `Opens`: whatever follows it: "Sold out". `Alone`: as in a
/// menu: "Home". `Promise`: wherever in a line above the name of the event: "your webinar".
enum class HeadKind : std::uint8_t { Ends, Opens, Alone, Promise };
/// `Anywhere` in the line, `AtEnd` of it ("Primary School"), or beside a number ("Grade 9").
enum class HostKind : std::uint8_t { Anywhere, AtEnd, Numbered };
/// The value of a `Person` of the family.
inline constexpr int kKin = 1;
/// Which of several like days is meant.
enum class Which : std::uint8_t { Nearest, This, Next, Last, AfterNext };
enum class Label : std::uint8_t {
    None,
    Title,
    Place,
    When,
    Date,
    Time,
    Start,
    End,
    Zone,
    Sent,   ///< when the text itself was written
    Mail,   ///< sender and receivers in a mail's head
    Sender, ///< people and reference numbers
    Duration,
    Link,
    Deadline,
    Note,
    Price
};

/// Why a text has no event, or what was assumed about the one it has. Each language says these
/// in a sentence of its `[message]` table.
enum class Notice : std::uint8_t {
    None,
    NoDate,
    OnlyPast,
    TodayAssumed,
    InPast,
    WeekdayConflict,
    OrderAssumed,
    HalfAssumed,
    SeveralDates,
    MoreEvents,
    OneMoreEvent,
    Repeats,
    ClockSkipped,
    ClockRepeated,
};
inline constexpr std::size_t kNotices = static_cast<std::size_t>(Notice::ClockRepeated) + 1;

/// How "5/6" is read.
enum class DayOrder : std::uint8_t { DayFirst, MonthFirst, ByZone };

/// Which letters tell a language.
enum class Script : std::uint8_t { Latin, Japanese, Chinese };
inline constexpr std::size_t kScripts = static_cast<std::size_t>(Script::Chinese) + 1;

/// Number of a lexicon; 0 is the one that all languages share.
using LanguageId = std::uint8_t;
inline constexpr LanguageId kSharedWords = 0;

/// What the engine knows of a language besides its words.
struct LanguageInfo {
    std::string_view code; ///< ISO 639-1; "" for the shared words
    DayOrder dayOrder;
    Script script;
    bool clock24;      ///< written times are on the 24-hour clock
    bool dottedDates;  ///< "3.5." is a date
    bool capitalNouns; ///< nouns are written in capitals
    int eraYears;      ///< what a year of three digits counts from: 114 is 2025; 0: nothing
    bool hasTails;
    std::array<bool, kMeanings> tails; ///< meanings that the end of a compound word has
    std::array<std::string_view, kNotices> messages; ///< "{day}", "{time}", "{count}" are filled in
};

} // namespace pindle::conversion
