#include "PindleConversion/lexicons/compiler/MeaningNames.h"

#include <array>
#include <span>

#include "PindleConversion/lexicons/compiler/LexiconFile.h"

namespace pindle::conversion {

namespace {

constexpr TableKind kTableKinds[] = {
    {"common", Meaning::Common, Values::Number},
    {"month", Meaning::Month, Values::Number},
    {"weekday", Meaning::Weekday, Values::Number},
    {"weak-weekday", Meaning::WeakWeekday, Values::Number},
    {"repeated", Meaning::Repeated, Values::Number},
    {"number", Meaning::Number, Values::Number},
    {"ordinal", Meaning::Ordinal, Values::Number},
    {"ordinal-mark", Meaning::OrdinalMark, Values::Number},
    {"relative-day", Meaning::RelativeDay, Values::Number},
    {"unit", Meaning::UnitWord, Values::Unit},
    {"this", Meaning::This, Values::Number},
    {"next", Meaning::Next, Values::Number},
    {"last", Meaning::Last, Values::Number},
    {"after-next", Meaning::AfterNext, Values::Number},
    {"behind", Meaning::Behind, Values::Which},
    {"period", Meaning::Period, Values::Period},
    {"in", Meaning::In, Values::Number},
    {"from-now", Meaning::FromNow, Values::Number},
    {"from", Meaning::From, Values::Number},
    {"ago", Meaning::Ago, Values::Number},
    {"of", Meaning::Of, Values::Number},
    {"the", Meaning::The, Values::Number},
    {"date-marker", Meaning::DateMarker, Values::Number},
    {"day-lead", Meaning::DayLead, Values::Number},
    {"month-end", Meaning::MonthEnd, Values::Number},
    {"day-word", Meaning::DayWord, Values::Number},
    {"year-mark", Meaning::YearMark, Values::Number},
    {"year", Meaning::YearWord, Values::Number},
    {"month-mark", Meaning::MonthMark, Values::Number},
    {"day-mark", Meaning::DayMark, Values::Number},
    {"era", Meaning::Era, Values::Number},
    {"holiday", Meaning::Holiday, Values::Holiday},
    {"half-past", Meaning::HalfPast, Values::Number},
    {"half-bare", Meaning::HalfBare, Values::Number},
    {"towards-hour", Meaning::TowardsHour, Values::Number},
    {"spoken-clock", Meaning::SpokenClock, Values::Number},
    {"quarter-word", Meaning::QuarterWord, Values::Number},
    {"past-word", Meaning::PastWord, Values::Number},
    {"to-word", Meaning::ToWord, Values::Number},
    {"minutes-behind", Meaning::MinutesBehind, Values::Number},
    {"plus-minutes", Meaning::PlusMinutes, Values::Number},
    {"minus-minutes", Meaning::MinusMinutes, Values::Number},
    {"time-marker", Meaning::TimeMarker, Values::Number},
    {"approximate", Meaning::Approximate, Values::Number},
    {"o-clock", Meaning::OClock, Values::Number},
    {"meridiem", Meaning::Meridiem, Values::Number},
    {"hour-mark", Meaning::HourMark, Values::Number},
    {"minute-mark", Meaning::MinuteMark, Values::Number},
    {"clock-word", Meaning::ClockWord, Values::Number},
    {"part-of-day", Meaning::PartOfDay, Values::Part},
    {"range-to", Meaning::RangeTo, Values::Number},
    {"range-from", Meaning::RangeFrom, Values::Number},
    {"and", Meaning::And, Values::Number},
    {"connector", Meaning::Connector, Values::Number},
    {"zone", Meaning::Zone, Values::Note},
    {"zone-offset", Meaning::ZoneOffset, Values::Note},
    {"label", Meaning::LabelWord, Values::Label},
    {"place-marker", Meaning::PlaceMarker, Values::Number},
    {"place-behind", Meaning::PlaceBehind, Values::Number},
    {"place-noun", Meaning::PlaceNoun, Values::Number},
    {"street-word", Meaning::StreetWord, Values::Number},
    {"place-stop", Meaning::PlaceStop, Values::Number},
    {"not-a-place", Meaning::NotAPlace, Values::Number},
    {"online", Meaning::Online, Values::Number},
    {"event", Meaning::Event, Values::Event},
    {"role", Meaning::RoleWord, Values::Role},
    {"role-behind", Meaning::RoleBehind, Values::Role},
    {"greeting", Meaning::Greeting, Values::Number},
    {"chatter", Meaning::Chatter, Values::Number},
    {"title-lead", Meaning::TitleLead, Values::Number},
    {"title-tail", Meaning::TitleTail, Values::Number},
    {"person", Meaning::Person, Values::Number},
    {"abbreviation", Meaning::Abbreviation, Values::Number},
    {"past-verb", Meaning::PastVerb, Values::Number},
    {"present-verb", Meaning::PresentVerb, Values::Number},
    {"duration-mark", Meaning::DurationMark, Values::Number},
    {"duration-tail", Meaning::DurationTail, Values::Number},
    {"no-duration", Meaning::NoDuration, Values::Number},
    {"wrote", Meaning::Wrote, Values::Number},
    {"daily", Meaning::Daily, Values::Number},
    {"cancelled", Meaning::Cancelled, Values::Number},
    {"online-event", Meaning::OnlineEvent, Values::Number},
    {"general-event", Meaning::GeneralEvent, Values::Number},
    {"aside-lead", Meaning::AsideLead, Values::Number},
    {"due-marker", Meaning::DueMarker, Values::Number},
    {"page-head", Meaning::PageHead, Values::Number},
    {"opening", Meaning::Opening, Values::Number},
    {"night-to", Meaning::NightTo, Values::None},
    {"moving", Meaning::Moving, Values::Number},
    {"habit", Meaning::Habit, Values::Number},
    {"incident", Meaning::Incident, Values::Number},
    {"measure", Meaning::Measure, Values::Number},
    {"week-of", Meaning::WeekOf, Values::None},
    {"or", Meaning::Or, Values::None},
    {"counter", Meaning::Counter, Values::Number},
    {"numbered", Meaning::Numbered, Values::Number},
    {"inviting", Meaning::Inviting, Values::Number},
    {"host", Meaning::Host, Values::Number},
    {"zone-abbreviation", Meaning::ZoneAfterTime, Values::Note},
    {"zone-in-capitals", Meaning::ZoneAfterTime, Values::Note, 1},
    {"zone-city", Meaning::ZoneWord, Values::Note},
    {"zone-time", Meaning::ZoneWord, Values::None, 1},
    {"zone-time-of", Meaning::ZoneWord, Values::None, 2},
};

constexpr std::string_view kUnits[] = {"minute", "hour", "day",     "week", "fortnight",
                                       "month",  "year", "weekend", "night"};
constexpr std::string_view kParts[] = {"none", "morning", "noon", "afternoon", "evening", "night"};
constexpr std::string_view kLabels[] = {"none",     "title", "place",    "when", "date", "time",
                                        "start",    "end",   "zone",     "sent", "mail", "sender",
                                        "duration", "link",  "deadline", "note", "price"};
constexpr std::string_view kEvents[] = {"none",   "neutral", "work",  "morning",
                                        "midday", "evening", "travel"};
constexpr std::string_view kRoles[] = {"none",     "deadline", "posted", "moved-from",
                                       "moved-to", "end",      "side",   "show",
                                       "collect",  "later",    "eve"};
constexpr std::string_view kWhich[] = {"nearest", "this", "next", "last", "after-next"};
constexpr std::string_view kNoticeNames[] = {"none",          "no-date",        "only-past",
                                             "today-assumed", "in-past",        "weekday-conflict",
                                             "order-assumed", "half-assumed",   "several-dates",
                                             "more-events",   "one-more-event", "repeats",
                                             "clock-skipped", "clock-repeated"};
static_assert(std::size(kNoticeNames) == kNotices);

int indexOf(std::span<const std::string_view> names, std::string_view name) {
    for (std::size_t i = 0; i < names.size(); ++i)
        if (names[i] == name)
            return static_cast<int>(i);
    return -1;
}

/// "next-week": which one, then the unit.
int period(std::string_view word) {
    const auto dash = word.rfind('-');
    if (dash == std::string_view::npos)
        return -1;
    const int which = indexOf(kWhich, word.substr(0, dash));
    const int unit = indexOf(kUnits, word.substr(dash + 1));
    return which < 0 || unit < 0 ? -1 : which * 16 + unit;
}

} // namespace

const TableKind *findTable(std::string_view name) {
    for (const TableKind &kind : kTableKinds)
        if (kind.name == name)
            return &kind;
    return nullptr;
}

std::string_view tableName(Meaning meaning) {
    for (const TableKind &kind : kTableKinds)
        if (kind.meaning == meaning)
            return kind.name;
    return {};
}

int valueNamed(Values values, std::string_view word) {
    switch (values) {
    case Values::Unit:
        return indexOf(kUnits, word);
    case Values::Part:
        return indexOf(kParts, word);
    case Values::Label:
        return indexOf(kLabels, word);
    case Values::Event:
        return indexOf(kEvents, word);
    case Values::Role:
        return indexOf(kRoles, word);
    case Values::Which:
        return indexOf(kWhich, word);
    case Values::Period:
        return period(word);
    case Values::Number:
    case Values::None:
    case Values::Note:
    case Values::Holiday:
        break;
    }
    return -1;
}

Notice noticeNamed(std::string_view name) {
    const int index = indexOf(kNoticeNames, name);
    return index < 0 ? Notice::None : static_cast<Notice>(index);
}

std::string_view noticeName(Notice notice) {
    return kNoticeNames[static_cast<std::size_t>(notice)];
}

} // namespace pindle::conversion
