#include "PindleConversion/expressions/DaysOfMonth.h"

#include "PindleConversion/expressions/CalendarParts.h"
#include "PindleConversion/expressions/RelativeWords.h"

namespace pindle::conversion {

namespace {

using Base = DateSpec::Base;

struct Rank {
    int nth = 0;
    std::uint32_t next = 0;
};

Rank readRank(const Reader &reader, std::uint32_t i) {
    if (const Sense *ordinal = reader.sense(i, Meaning::Ordinal))
        return {ordinal->value, i + ordinal->length};
    // "na última sexta do mês": the word for a day that is past is the last of a month, too.
    if (const Sense *last = reader.sense(i, Meaning::Last))
        return {-1, i + last->length};
    if (const std::uint32_t next = reader.number(i, 1, 31) ? skipOrdinalMark(reader, i + 1) : i + 1;
        next != i + 1)
        return {static_cast<int>(reader.token(i).number), next};
    return {};
}

/// The month behind an ordinal: "of June", "of next month", "of the month", "next month".
std::uint32_t readMonthBehind(const Reader &reader, std::uint32_t i, DateSpec &spec) {
    std::uint32_t j = reader.skip(i, Meaning::Of);
    if (const Sense *month = reader.sense(j, Meaning::Month)) {
        spec.month = month->value;
        j += month->length;
        const std::uint32_t year = reader.skipSymbol(j, ',');
        if (!reader.number(year, kFirstYear, kLastYear, 4))
            return j;
        spec.year = static_cast<int>(reader.token(year).number);
        return year + 1;
    }
    if (const Period period = readPeriodWord(reader, j);
        period.unit == Unit::Month && period.which != Which::Last) {
        spec.monthGiven = true;
        spec.months = period.which == Which::Next ? 1 : 0;
        return period.next;
    }
    const Qualifier qualifier = readQualifier(reader, j);
    const std::uint32_t word = qualifier.next != j ? qualifier.next : reader.skip(j, Meaning::The);
    const Sense *month = readUnit(reader, word, Unit::Month);
    // "of the month", "do mês", "del mese", but no bare "month".
    if (!month || (word == j && j == i) || qualifier.which == Which::Last)
        return i;
    // "du mois de mai"
    const std::uint32_t name = reader.skip(word + month->length, Meaning::Of);
    if (const Sense *named = reader.sense(name, Meaning::Month)) {
        spec.month = named->value;
        return name + named->length;
    }
    spec.monthGiven = true;
    spec.months = qualifier.which == Which::Next ? 1 : 0;
    return word + month->length;
}

/// What may follow "the 14th" when that is all that is said of the day.
bool endsDayOnly(const Reader &reader, std::uint32_t next) {
    const Token *token = reader.at(next);
    if (!token || token->kind == TokenKind::Symbol || token->kind == TokenKind::Number)
        return !reader.symbol(next, '-');
    // "auf den 19. verschoben"
    static constexpr Meanings kGoesOn{Meaning::Connector, Meaning::PartOfDay, Meaning::TimeMarker,
                                      Meaning::Moving};
    return reader.mayHave(next, kGoesOn);
}

/// What stands behind the number that "le" or "am" leads to, and tells that it is no day.
bool isOtherNumber(const Reader &reader, std::uint32_t number, std::uint32_t next, bool ordinal) {
    // "al 14' e al 78'": the minutes of a game.
    if (const Token *behind = reader.at(next);
        behind && behind->kind == TokenKind::Symbol && !behind->spaceBefore &&
        (behind->symbol == '\'' || behind->symbol == '"' || behind->symbol == '%'))
        return true;
    // "de 12e en 77e minuut": such a row counts something else.
    if (isCounted(reader, next) || skipNumberRow(reader, number) != number ||
        reader.has(reader.skipSymbol(next, ','), Meaning::StreetWord))
        return true;
    // "do 13.04" goes on.
    if (ordinal && reader.glued(next) && reader.number(next, 0, 9999, 4))
        return true;
    const bool time =
        reader.symbol(next, ':') || reader.has(next, Meaning::HourMark) ||
        (reader.symbol(next, '.') && reader.glued(next) && reader.number(next + 1, 0, 59));
    // "el 23 es su santo", "dia 8 faz anos"
    static constexpr Meanings kSaysMore{Meaning::Of, Meaning::PresentVerb, Meaning::Event};
    return time || (reader.word(next) && !endsDayOnly(reader, next) &&
                    !reader.mayHave(next, kSaysMore) && !readDayRange(reader, next));
}

/// "dia quinze às três", "le quinze à midi": the day in words, where nothing else is counted.
std::optional<DateMention> readSpelledDay(const Reader &reader, std::uint32_t i,
                                          std::uint32_t number) {
    constexpr int kLastDay = 31;
    const Sense *word = reader.sense(number, Meaning::Number);
    if (!word || word->value < 1 || word->value > kLastDay || reader.token(number).unspaced)
        return std::nullopt;
    const std::uint32_t next = number + word->length;
    const std::uint32_t time = reader.skip(next, Meaning::TimeMarker);
    const bool timed =
        time != next && (reader.number(time, 0, 24) || reader.has(time, Meaning::Number) ||
                         reader.has(time, Meaning::ClockWord));
    if (!timed && !reader.has(next, Meaning::PartOfDay))
        return std::nullopt;
    DateMention result = mentionOf(i, next, Base::DayOnly);
    result.first.day = word->value;
    return result;
}

/// "le 14", "el día 14", "am 14.": a bare day behind a word that leads to one.
std::optional<DateMention> readLedDay(const Reader &reader, std::uint32_t i) {
    const Sense *lead = reader.sense(i, Meaning::DayLead);
    const std::uint32_t number = lead ? i + lead->length : i;
    if (lead && lead->value == 0 && reader.has(number, Meaning::Number))
        return readSpelledDay(reader, i, number);
    if (!lead || !reader.number(number, 1, 31))
        return std::nullopt;
    // "dia 31/10", "il giorno 2 set": the month is said as well.
    if (auto date = readCalendarDate(reader, number)) {
        date->span.begin = i;
        date->weak = false;
        return date;
    }
    const std::uint32_t next =
        reader.glued(number + 1) ? reader.skip(number + 1, Meaning::OrdinalMark) : number + 1;
    const bool ordinal = next != number + 1;
    if (lead->value == 1 && !ordinal)
        return std::nullopt;
    if (isOtherNumber(reader, number, next, ordinal))
        return std::nullopt;
    DateMention result = mentionOf(i, next, Base::DayOnly);
    result.first.day = static_cast<int>(reader.token(number).number);
    result.span.end = readMonthBehind(reader, next, result.first);
    // "la cour du 14" is a house's.
    const bool house = i > 0 && reader.has(i, Meaning::Of) && reader.has(i - 1, Meaning::PlaceNoun);
    if (house && result.span.end == next && !readDayRange(reader, next))
        return std::nullopt;
    return result;
}

} // namespace

std::uint32_t readBareDay(const Reader &reader, std::uint32_t i, int &day) {
    if (!reader.number(i, 1, 31))
        return i;
    const Sense *mark = reader.sense(i + 1, Meaning::DayMark);
    // "永和路18號" is a house number.
    const bool house = i > 0 && reader.glued(i) && reader.has(i - 1, Meaning::StreetWord);
    // "在3号会议室" numbers a room.
    const bool room = mark && i > 0 && reader.has(i - 1, Meaning::PlaceMarker) &&
                      reader.has(i + 1 + mark->length, Meaning::PlaceNoun);
    if (!mark || house || room)
        return i;
    day = static_cast<int>(reader.token(i).number);
    return i + 1 + mark->length;
}

std::uint32_t readNthDay(const Reader &reader, std::uint32_t i, DateSpec &spec) {
    const Rank rank = readRank(reader, i);
    constexpr int kMostWeeks = 5;
    constexpr int kMostWorkingDays = 23;
    if (rank.nth == 0 || rank.nth > kMostWorkingDays)
        return i;
    const DayName day = readDayName(reader, rank.next, true);
    const Sense *word = day.weekday > 0 ? nullptr : reader.sense(rank.next, Meaning::DayWord);
    const std::uint32_t next = word ? rank.next + word->length : day.next;
    const bool working = word && word->value == 1;
    if ((!word && day.weekday == 0) || (!working && rank.nth > kMostWeeks))
        return i;
    spec.base = Base::NthWeekday;
    spec.nth = rank.nth;
    spec.weekday = working ? kWorkingDay : day.weekday;
    return next;
}

std::optional<DateMention> readNthWeekday(const Reader &reader, std::uint32_t i) {
    const std::uint32_t begin = reader.skip(i, Meaning::The);
    DateMention result = mentionOf(i, begin, Base::NthWeekday);
    std::uint32_t next = i;
    if (const Sense *end = reader.sense(i, Meaning::MonthEnd)) {
        result.first.nth = -1;
        next = i + end->length;
        if (end->value == 1) {
            result.first.monthGiven = true;
            result.span.end = next;
            return result;
        }
    } else {
        next = readNthDay(reader, begin, result.first);
        if (next == begin)
            return std::nullopt;
    }
    result.span.end = readMonthBehind(reader, next, result.first);
    // "第3土曜日" is one of this month, and so is "on the last Thursday".
    const bool led =
        begin != i && i > 0 && reader.has(i - 1, Meaning::DateMarker) && endsDayOnly(reader, next);
    const bool bare = result.first.nth != 0 && result.first.weekday > 0 &&
                      (led || (result.first.nth > 0 && reader.language(i).script != Script::Latin));
    if (result.span.end == next && !bare)
        return std::nullopt;
    return result;
}

std::optional<DateMention> readNthInMonth(const Reader &reader, std::uint32_t i) {
    // "6月底": the end of that month.
    const Sense *end = reader.number(i, 1, 12) ? reader.sense(i + 1, Meaning::MonthEnd) : nullptr;
    if (end && reader.token(i + 1).unspaced) {
        DateMention last = mentionOf(i, i + 1 + end->length, Base::NthWeekday);
        last.first.nth = -1;
        last.first.month = static_cast<int>(reader.token(i).number);
        return last;
    }
    const Sense *month = reader.sense(i, Meaning::Month);
    const Sense *mark = reader.number(i, 1, 12) ? reader.sense(i + 1, Meaning::MonthMark) : nullptr;
    if (!month && !mark)
        return std::nullopt;
    const std::uint32_t behind = mark ? i + 1 + mark->length : i + month->length;
    DateMention result = mentionOf(i, behind, Base::NthWeekday);
    result.span.end = readNthDay(reader, reader.skip(behind, Meaning::Of), result.first);
    result.first.month = mark ? static_cast<int>(reader.token(i).number) : month->value;
    return result.first.nth != 0 ? std::optional(result) : std::nullopt;
}

std::optional<DateMention> readDayOnly(const Reader &reader, std::uint32_t i) {
    int bare = 0;
    if (const std::uint32_t end = readBareDay(reader, i, bare); end != i) {
        DateMention counted = mentionOf(i, end, Base::DayOnly);
        counted.first.day = bare;
        counted.weak = true;
        return counted;
    }
    if (const auto led = readLedDay(reader, i))
        return led;
    const std::uint32_t begin = reader.skip(i, Meaning::The);
    const Rank rank = readRank(reader, begin);
    if (rank.nth < 1)
        return std::nullopt;
    DateMention result = mentionOf(i, rank.next, Base::DayOnly);
    result.first.day = rank.nth;
    result.span.end = readMonthBehind(reader, rank.next, result.first);
    if (result.span.end != rank.next)
        return result;
    if (isCounted(reader, rank.next))
        return std::nullopt;
    const Token *before = i > 0 ? &reader.document().tokens[i - 1] : nullptr;
    const bool digits = reader.token(begin).kind == TokenKind::Number;
    const Reader all(reader.document(), reader.end());
    const bool introduced =
        before && (all.has(i - 1, Meaning::DateMarker) || all.has(i - 1, Meaning::Weekday) ||
                   all.has(i - 1, Meaning::WeakWeekday));
    // "am Neunundzwanzigsten Geburtstag": where nouns are capitals, the word stands for the day.
    // "am zwölften um sechs", "de elfde gaan we eten"
    constexpr int kRarelyCounted = 4;
    const bool timed = introduced && reader.has(rank.next, Meaning::TimeMarker);
    const bool told = begin != i && reader.has(rank.next, Meaning::PresentVerb);
    if (!digits && rank.nth >= kRarelyCounted && rank.next == begin + 1 && (timed || told))
        return result;
    const bool noun = introduced && !digits && begin == i && reader.token(i).capital &&
                      reader.language(i).capitalNouns;
    if (noun)
        return result;
    // "See you 18th, 2.15"
    const std::uint32_t time = rank.next + 1;
    const bool beside = digits && rank.next == begin + 2 && reader.symbol(rank.next, ',') &&
                        !reader.glued(time) &&
                        (isDottedTime(reader, time) ||
                         (reader.number(time, 0, 23) && reader.symbol(time + 1, ':') &&
                          reader.glued(time + 1) && reader.number(time + 2, 0, 59)) ||
                         (reader.number(time, 1, 12) && reader.has(time + 1, Meaning::Meridiem)));
    if (!endsDayOnly(reader, rank.next) || !(introduced || beside || (begin != i && digits)))
        return std::nullopt;
    if (!digits && begin == i)
        return std::nullopt;
    result.weak = !introduced && !beside;
    return result;
}

} // namespace pindle::conversion
