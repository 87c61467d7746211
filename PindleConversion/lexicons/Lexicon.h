#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace pindle::conversion {

/// What a word or phrase can mean to the engine. A phrase may have several meanings.
enum class Meaning : std::uint8_t {
    Month,         ///< value 1 to 12
    Weekday,       ///< value 1 (Monday) to 7
    WeakWeekday,   ///< a weekday that is also an everyday word
    Repeated,      ///< a weekday in the plural: the event repeats
    Number,        ///< value of the number word
    Ordinal,       ///< value of the ordinal word, -1 for "last"
    OrdinalMark,   ///< what follows the digits of an ordinal
    RelativeDay,   ///< value: days from today
    UnitWord,      ///< value: a `Unit`
    This,          ///< "this" before a weekday or unit
    Next,          ///< "next"
    Last,          ///< "last", in the past
    AfterNext,     ///< "after next", behind a weekday or week
    In,            ///< "in" before an amount of time
    FromNow,       ///< behind an amount of time, counting from today
    From,          ///< behind an amount of time, counting from the date that follows
    Ago,           ///< behind an amount of time, counting back
    Of,            ///< between ordinal and month
    The,           ///< an article
    DateMarker,    ///< a word that a date may follow: "on", "by"
    MonthEnd,      ///< "end of", before a month
    DayWord,       ///< "day", in "last day of June"
    Holiday,       ///< value: month * 100 + day; `note` "easter" counts from Easter Sunday
    HalfPast,      ///< minutes past, value
    HalfBare,      ///< "half" directly before the hour it follows
    QuarterWord,   ///< value: minutes
    PastWord,      ///< between minutes and hour, counting up
    ToWord,        ///< between minutes and hour, counting down
    TimeMarker,    ///< a word that a clock time may follow
    Approximate,   ///< directly behind a time, or between day and time
    OClock,        ///< behind a full hour
    Meridiem,      ///< value 0: before noon, 1: after noon
    HourMark,      ///< "h", "hrs" behind a 24-hour time
    ClockWord,     ///< value: minute of the day
    PartOfDay,     ///< value: a `DayPart`
    RangeTo,       ///< between start and end
    RangeFrom,     ///< before start and end
    And,           ///< joins two things
    Connector,     ///< may follow a bare hour
    Zone,          ///< `note`: identifiers; the user's own if listed, else the first
    ZoneAfterTime, ///< as Zone, but only behind a clock time; value 1: only in capitals
    ZoneWord,      ///< value 0: a city, value 1: "time" behind a city
    ZoneOffset,    ///< "UTC", "GMT": an offset may follow
    LabelWord,     ///< value: a `Label`
    PlaceMarker,   ///< value 1: strong ("at"), 0: weak ("in")
    PlaceNoun,     ///< a kind of place
    StreetWord,    ///< a kind of street
    PlaceStop,     ///< a word that ends a place
    NotAPlace,     ///< what follows "at" or "in" without being a place
    Online,        ///< a way to meet without a place
    Event,         ///< value: an `EventKind`
    RoleWord,      ///< value: a `Role`
    Greeting,      ///< a piece that greets or thanks
    Chatter,       ///< a piece that is no title: requests, prices, conditions
    TitleLead,     ///< dropped from the front of a title
    TitleTail,     ///< dropped from the end of a title
    Person,        ///< "with", before a person
    Abbreviation,  ///< its full stop ends no sentence
    PastVerb,      ///< tells of the past
    PresentVerb,   ///< tells of now or the future
    DurationMark,  ///< "for", before an amount of time that is a length
    NoDuration,    ///< behind an amount of time that is no length
    Wrote,         ///< ends the line that introduces a quoted mail
    Daily,         ///< "daily", behind hours
};

enum class Unit : std::uint8_t { Minute, Hour, Day, Week, Fortnight, Month, Year, Weekend };
enum class DayPart : std::uint8_t { None, Morning, Noon, Afternoon, Evening, Night };
enum class EventKind : std::uint8_t { None, Neutral, Work, Morning, Midday, Evening, Travel };
enum class Role : std::uint8_t { None, Deadline, Posted, MovedFrom, MovedTo, End, Side, Show };
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

/// How "5/6" is read.
enum class DayOrder : std::uint8_t { DayFirst, MonthFirst, ByZone };

/// One meaning of words: alternatives are separated by '|'.
struct Entry {
    std::string_view words;
    Meaning meaning;
    int value = 0;
    std::string_view note = {};
};

/// Everything the engine knows of one language.
struct Lexicon {
    std::string_view language; ///< ISO 639-1
    DayOrder dayOrder;
    std::span<const Entry> calendar;
    std::span<const Entry> zones;
    std::span<const Entry> context;
};

} // namespace pindle::conversion
