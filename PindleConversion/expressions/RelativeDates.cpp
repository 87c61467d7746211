#include "PindleConversion/expressions/Expression.h"

namespace pindle::conversion {

namespace {

using Base = DateSpec::Base;

DateMention mention(std::uint32_t begin, std::uint32_t end, Base base) {
    DateMention result;
    result.span = {begin, end};
    result.first.base = base;
    return result;
}

struct Qualifier {
    Which which = Which::Nearest;
    std::uint32_t next = 0;
};

Qualifier readQualifier(const Reader &reader, std::uint32_t i) {
    if (const Sense *sense = reader.sense(i, Meaning::Next))
        return {Which::Next, i + sense->length};
    if (const Sense *sense = reader.sense(i, Meaning::This))
        return {Which::This, i + sense->length};
    if (const Sense *sense = reader.sense(i, Meaning::Last))
        return {Which::Last, i + sense->length};
    if (const Sense *sense = reader.sense(i, Meaning::AfterNext))
        return {Which::AfterNext, i + sense->length};
    return {Which::Nearest, i};
}

const Sense *unit(const Reader &reader, std::uint32_t i, Unit wanted) {
    const Sense *sense = reader.sense(i, Meaning::UnitWord);
    return sense && sense->value == static_cast<int>(wanted) ? sense : nullptr;
}

/// A weekday word that is also an everyday word needs company.
bool isCertainWeekday(const Reader &reader, std::uint32_t i, std::uint32_t next) {
    // "so" is a Sunday in "So 14.6.", but hardly in "so gegen sechs".
    constexpr std::uint32_t kShort = 2;
    const Token &word = *reader.at(i);
    if (word.end - word.begin <= kShort && !word.capital && !word.unspaced)
        return reader.number(reader.skipSymbol(next, '.'), 1, 31);
    // "are you free sat" closes a line of a conversation.
    const Field &field = reader.document().fields[word.field];
    if (field.spoken && word.end - word.begin > kShort && i > field.begin + 1 &&
        (next >= reader.end() || reader.symbol(next, ',')))
        return true;
    // "Hotel Sol de Mar" is named so.
    if (i > 0 && word.capital && reader.has(i - 1, Meaning::Of) && !reader.number(next, 1, 31))
        return false;
    const bool announced = i > 0 && reader.has(i - 1, Meaning::DateMarker);
    const std::uint32_t time = reader.skip(next, Meaning::TimeMarker);
    const bool timed = reader.number(time, 0, 31) || reader.has(time, Meaning::ClockWord) ||
                       (time != next && reader.has(time, Meaning::Number));
    if (announced || timed || reader.has(next, Meaning::PartOfDay) ||
        reader.has(next, Meaning::Month))
        return true;
    return (reader.at(i)->capital && !reader.word(next)) || reader.symbol(next, '?');
}

struct DayName {
    int weekday = 0;
    std::uint32_t next = 0;
    bool repeated = false;
};

DayName readDayName(const Reader &reader, std::uint32_t i, bool qualified) {
    if (const Sense *sense = reader.sense(i, Meaning::Repeated))
        return {sense->value, i + sense->length, true};
    if (const Sense *sense = reader.sense(i, Meaning::Weekday))
        return {sense->value, i + sense->length};
    const Sense *weak = reader.sense(i, Meaning::WeakWeekday);
    // A lone sign for a weekday counts only in brackets, which dates read themselves.
    if (weak && !reader.at(i)->unspaced &&
        (qualified || isCertainWeekday(reader, i, i + weak->length)))
        return {weak->value, i + weak->length};
    return {};
}

struct Period {
    Which which = Which::Nearest;
    Unit unit = Unit::Day; ///< Day: there is none
    std::uint32_t next = 0;
};

/// "next week", "la semaine prochaine", "来週".
Period readPeriodWord(const Reader &reader, std::uint32_t i) {
    if (const Sense *period = reader.sense(i, Meaning::Period))
        return {static_cast<Which>(period->value / 16), static_cast<Unit>(period->value % 16),
                i + period->length};
    const std::uint32_t article = reader.skip(i, Meaning::The);
    const Qualifier qualifier = readQualifier(reader, i);
    const bool qualified = qualifier.next != i;
    const Sense *sense = reader.sense(qualified ? qualifier.next : article, Meaning::UnitWord);
    if (!sense)
        return {};
    const auto kind = static_cast<Unit>(sense->value);
    const std::uint32_t next = (qualified ? qualifier.next : article) + sense->length;
    if (qualified)
        return {qualifier.which, kind, next};
    if (const Sense *behind = reader.sense(next, Meaning::Behind))
        return {static_cast<Which>(behind->value), kind, next + behind->length};
    if (article != i && kind == Unit::Weekend)
        return {Which::This, kind, next};
    return {};
}

struct Amount {
    int days = 0;
    int months = 0;
    std::uint32_t next = 0;
};

std::optional<Amount> unitsOf(const Reader &reader, std::uint32_t i, int count) {
    const Sense *sense = reader.sense(i, Meaning::UnitWord);
    if (!sense)
        return std::nullopt;
    Amount amount;
    amount.next = i + sense->length;
    switch (static_cast<Unit>(sense->value)) {
    case Unit::Day:
        amount.days = count;
        return amount;
    case Unit::Week:
        amount.days = 7 * count;
        return amount;
    case Unit::Fortnight:
        amount.days = 14 * count;
        return amount;
    case Unit::Month:
        amount.months = count;
        return amount;
    case Unit::Year:
        amount.months = 12 * count;
        return amount;
    case Unit::Minute:
    case Unit::Hour:
    case Unit::Weekend:
    case Unit::Night:
        break;
    }
    return std::nullopt;
}

/// "two weeks", "3 days".
std::optional<Amount> readAmount(const Reader &reader, std::uint32_t i) {
    constexpr int kMostUnits = 1000;
    std::uint32_t next = i;
    const auto count = readCount(reader, i, next);
    if (!count || *count > kMostUnits)
        return std::nullopt;
    return unitsOf(reader, next, *count);
}

/// "in a week", "in 14 Tagen" behind a weekday: so many weeks after the nearest such day.
std::uint32_t readWeeksAhead(const Reader &reader, std::uint32_t i, DateSpec &spec) {
    const Sense *ahead = reader.sense(i, Meaning::In);
    if (!ahead)
        return i;
    auto amount = readAmount(reader, i + ahead->length);
    if (!amount && ahead->value == 1)
        amount = unitsOf(reader, i + ahead->length, 1);
    if (!amount || amount->days == 0 || amount->days % 7 != 0)
        return i;
    spec.which = Which::This;
    spec.days += amount->days;
    return amount->next;
}

/// "next week", "of next week", "week" (British: a week later), "after next" behind a weekday.
std::uint32_t readWeekBehind(const Reader &reader, std::uint32_t i, DateSpec &spec) {
    if (const Sense *sense = reader.sense(i, Meaning::AfterNext)) {
        spec.which = Which::AfterNext;
        return i + sense->length;
    }
    if (const std::uint32_t ahead = readWeeksAhead(reader, i, spec); ahead != i)
        return ahead;
    if (const Sense *behind = reader.sense(i, Meaning::Behind)) {
        spec.which = static_cast<Which>(behind->value);
        return i + behind->length;
    }
    const Period of = readPeriodWord(reader, reader.skip(reader.skipSymbol(i, ','), Meaning::Of));
    if (of.unit == Unit::Week && of.which != Which::Last) {
        spec.which = of.which;
        return of.next;
    }
    if (const Sense *week = unit(reader, i, Unit::Week)) {
        spec.days += 7;
        return i + week->length;
    }
    if (const Sense *weeks = unit(reader, i, Unit::Fortnight)) {
        spec.days += 14;
        return i + weeks->length;
    }
    return i;
}

std::optional<DateMention> readWeekday(const Reader &reader, std::uint32_t i) {
    const Qualifier qualifier = readQualifier(reader, i);
    const DayName day = readDayName(reader, qualifier.next, qualifier.next != i);
    if (day.weekday == 0)
        return std::nullopt;
    DateMention result = mention(i, day.next, Base::Weekday);
    result.first.weekday = day.weekday;
    result.first.which = qualifier.which;
    result.repeated = day.repeated;
    result.span.end = readWeekBehind(reader, day.next, result.first);
    return result;
}

/// A day of the month without its month: "3日", and with `lead` "le 3".
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
    day = static_cast<int>(reader.at(i)->number);
    return i + 1 + mark->length;
}

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
    if (reader.number(i, 1, 31) && reader.has(i + 1, Meaning::OrdinalMark) && reader.glued(i + 1))
        return {static_cast<int>(reader.at(i)->number), i + 2};
    return {};
}

/// "second Saturday", "last day": the position behind it, or `i`.
std::uint32_t readNthDay(const Reader &reader, std::uint32_t i, DateSpec &spec) {
    const Rank rank = readRank(reader, i);
    if (rank.nth == 0 || rank.nth > 5)
        return i;
    const DayName day = readDayName(reader, rank.next, true);
    const std::uint32_t next =
        day.weekday > 0 ? day.next : reader.skip(rank.next, Meaning::DayWord);
    if (next == rank.next)
        return i;
    spec.base = Base::NthWeekday;
    spec.nth = rank.nth;
    spec.weekday = day.weekday;
    return next;
}

/// "6月の第2土曜日": the month stands first.
std::optional<DateMention> readNthInMonth(const Reader &reader, std::uint32_t i) {
    // "6月底": the end of that month.
    const Sense *end = reader.number(i, 1, 12) ? reader.sense(i + 1, Meaning::MonthEnd) : nullptr;
    if (end && reader.at(i + 1)->unspaced) {
        DateMention last = mention(i, i + 1 + end->length, Base::NthWeekday);
        last.first.nth = -1;
        last.first.month = static_cast<int>(reader.at(i)->number);
        return last;
    }
    const Sense *month = reader.sense(i, Meaning::Month);
    const Sense *mark = reader.number(i, 1, 12) ? reader.sense(i + 1, Meaning::MonthMark) : nullptr;
    if (!month && !mark)
        return std::nullopt;
    const std::uint32_t behind = mark ? i + 1 + mark->length : i + month->length;
    DateMention result = mention(i, behind, Base::NthWeekday);
    result.span.end = readNthDay(reader, reader.skip(behind, Meaning::Of), result.first);
    result.first.month = mark ? static_cast<int>(reader.at(i)->number) : month->value;
    return result.first.nth != 0 ? std::optional(result) : std::nullopt;
}

/// "next week Tuesday", "next week on Tuesday", "this weekend", "next month", "来月の3日".
std::optional<DateMention> readPeriod(const Reader &reader, std::uint32_t i) {
    const Period period = readPeriodWord(reader, i);
    if (period.unit == Unit::Weekend) {
        DateMention result = mention(i, period.next, Base::Weekend);
        result.first.which = period.which;
        return result;
    }
    if (period.unit != Unit::Week && period.unit != Unit::Month)
        return std::nullopt;
    DateMention result = mention(i, period.next, Base::Week);
    result.first.which = period.which;
    if (period.unit == Unit::Month)
        result.first.months = period.which == Which::Next        ? 1
                              : period.which == Which::AfterNext ? 2
                                                                 : 0;
    // "来月末"
    if (const Sense *end = reader.sense(period.next, Meaning::MonthEnd);
        end && period.unit == Unit::Month && reader.at(period.next)->unspaced) {
        result.first.base = Base::NthWeekday;
        result.first.nth = -1;
        result.first.monthGiven = true;
        result.span.end = period.next + end->length;
        return result;
    }
    result.weak = true;
    std::uint32_t next = reader.skip(reader.skipSymbol(period.next, ','), Meaning::DateMarker);
    next = reader.skip(next, Meaning::Of);
    next = reader.skip(next, Meaning::The);
    if (period.unit == Unit::Month) {
        if (const std::uint32_t nth = readNthDay(reader, next, result.first); nth != next) {
            result.weak = false;
            result.span.end = nth;
            return result;
        }
        int day = 0;
        const std::uint32_t end = readBareDay(reader, next, day);
        if (end == next)
            return result;
        result.first.base = Base::DayOnly;
        result.first.day = day;
        result.first.monthGiven = true;
        result.weak = false;
        result.span.end = end;
        return result;
    }
    const DayName day = readDayName(reader, next, true);
    if (day.weekday > 0) {
        result.weak = false;
        result.first.base = Base::Weekday;
        result.first.weekday = day.weekday;
        result.span.end = day.next;
    }
    return result;
}

void shift(DateSpec &spec, const Amount &amount, int sign) {
    spec.days += sign * amount.days;
    spec.months += sign * amount.months;
}

std::optional<DateMention> fromAmount(const Reader &reader, std::uint32_t i, const Amount &amount,
                                      int sign, std::uint32_t end) {
    DateMention result = mention(i, end, Base::Today);
    shift(result.first, amount, sign);
    // "in two weeks on Tuesday": the weekday of that week.
    const std::uint32_t on = reader.skip(reader.skipSymbol(end, ','), Meaning::DateMarker);
    const DayName day = readDayName(reader, on, true);
    if (sign > 0 && day.weekday > 0 && amount.days % 7 == 0 && amount.days > 0) {
        result.first.base = Base::Weekday;
        result.first.weekday = day.weekday;
        result.first.which = Which::This;
        result.span.end = day.next;
    }
    return result;
}

/// "in two weeks", "two weeks from Friday", "3 days ago", "a week tomorrow".
std::optional<DateMention> readDistance(const Reader &reader, std::uint32_t i) {
    const Sense *ahead = reader.sense(i, Meaning::In);
    const std::uint32_t in = ahead ? i + ahead->length : i;
    auto amount = readAmount(reader, in);
    if (!amount && ahead && ahead->value == 1)
        amount = unitsOf(reader, in, 1);
    if (!amount || reader.has(i, Meaning::Period))
        return std::nullopt;
    std::uint32_t next = amount->next;
    if (const Sense *ago = reader.sense(next, Meaning::Ago))
        return fromAmount(reader, i, *amount, -1, next + ago->length);
    if (const Sense *now = reader.sense(next, Meaning::FromNow))
        return fromAmount(reader, i, *amount, 1, next + now->length);
    if (in != i)
        return fromAmount(reader, i, *amount, 1, next);
    next = reader.skip(next, Meaning::From);
    std::optional<DateMention> base;
    if (const Sense *day = reader.sense(next, Meaning::RelativeDay)) {
        base = mention(next, next + day->length, Base::Today);
        base->first.days = day->value;
    } else if (next != amount->next) {
        base = readWeekday(reader, next);
        if (!base)
            base = readCalendarDate(reader, next);
    }
    if (!base)
        return std::nullopt;
    base->span.begin = i;
    shift(base->first, *amount, 1);
    return base;
}

/// The month behind an ordinal: "of June", "of next month", "of the month", "next month".
std::uint32_t readMonthBehind(const Reader &reader, std::uint32_t i, DateSpec &spec) {
    std::uint32_t j = reader.skip(i, Meaning::Of);
    if (const Sense *month = reader.sense(j, Meaning::Month)) {
        spec.month = month->value;
        j += month->length;
        const std::uint32_t year = reader.skipSymbol(j, ',');
        if (!reader.number(year, 1900, 2199, 4))
            return j;
        spec.year = static_cast<int>(reader.at(year)->number);
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
    const Sense *month = unit(reader, word, Unit::Month);
    // "of the month", "do mês", "del mese", but no bare "month".
    if (!month || (word == j && j == i) || qualifier.which == Which::Last)
        return i;
    spec.monthGiven = true;
    spec.months = qualifier.which == Which::Next ? 1 : 0;
    return word + month->length;
}

/// "the last Thursday of the month", "first Monday in June", "last day of May", "end of June".
std::optional<DateMention> readNthWeekday(const Reader &reader, std::uint32_t i) {
    const std::uint32_t begin = reader.skip(i, Meaning::The);
    DateMention result = mention(i, begin, Base::NthWeekday);
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
    // "第3土曜日" is one of this month.
    const bool bare = result.first.nth > 0 && result.first.weekday > 0 &&
                      reader.language(i).script != Script::Latin;
    if (result.span.end == next && !bare)
        return std::nullopt;
    return result;
}

/// What may follow "the 14th" when that is all that is said of the day.
bool endsDayOnly(const Reader &reader, std::uint32_t next) {
    const Token *token = reader.at(next);
    if (!token || token->kind == TokenKind::Symbol || token->kind == TokenKind::Number)
        return !reader.symbol(next, '-');
    return reader.has(next, Meaning::Connector) || reader.has(next, Meaning::PartOfDay) ||
           reader.has(next, Meaning::TimeMarker);
}

/// "le 14", "el día 14", "am 14.": a bare day behind a word that leads to one.
std::optional<DateMention> readLedDay(const Reader &reader, std::uint32_t i) {
    const Sense *lead = reader.sense(i, Meaning::DayLead);
    const std::uint32_t number = lead ? i + lead->length : i;
    if (!lead || !reader.number(number, 1, 31))
        return std::nullopt;
    // "dia 31/10", "il giorno 2 set": the month is said as well.
    if (auto date = readCalendarDate(reader, number)) {
        date->span.begin = i;
        date->weak = false;
        return date;
    }
    std::uint32_t next = number + 1;
    const bool ordinal = reader.has(next, Meaning::OrdinalMark) && reader.glued(next);
    if (lead->value == 1 && !ordinal)
        return std::nullopt;
    next += ordinal ? 1 : 0;
    // "al 14' e al 78'": the minutes of a game.
    if (const Token *behind = reader.at(next);
        behind && behind->kind == TokenKind::Symbol && !behind->spaceBefore &&
        (behind->symbol == '\'' || behind->symbol == '"' || behind->symbol == '%'))
        return std::nullopt;
    // "de 12e en 77e minuut": such a row counts something else.
    if (isCounted(reader, next) || skipNumberRow(reader, number) != number ||
        reader.has(next, Meaning::StreetWord))
        return std::nullopt;
    // "do 13.04" goes on.
    if (ordinal && reader.glued(next) && reader.number(next, 0, 9999, 4))
        return std::nullopt;
    const bool time =
        reader.symbol(next, ':') || reader.has(next, Meaning::HourMark) ||
        (ordinal && reader.glued(next) && reader.number(next, 0, 9999, 4)) ||
        (reader.symbol(next, '.') && reader.glued(next) && reader.number(next + 1, 0, 59));
    if (time || (reader.word(next) && !endsDayOnly(reader, next) &&
                 !reader.has(next, Meaning::Of) && !readDayRange(reader, next)))
        return std::nullopt;
    DateMention result = mention(i, next, Base::DayOnly);
    result.first.day = static_cast<int>(reader.at(number)->number);
    result.span.end = readMonthBehind(reader, next, result.first);
    return result;
}

/// "the 14th", "the 14th of next month", "Friday the 13th" without its weekday.
std::optional<DateMention> readDayOnly(const Reader &reader, std::uint32_t i) {
    int bare = 0;
    if (const std::uint32_t end = readBareDay(reader, i, bare); end != i) {
        DateMention counted = mention(i, end, Base::DayOnly);
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
    DateMention result = mention(i, rank.next, Base::DayOnly);
    result.first.day = rank.nth;
    result.span.end = readMonthBehind(reader, rank.next, result.first);
    if (result.span.end != rank.next)
        return result;
    if (isCounted(reader, rank.next))
        return std::nullopt;
    const Token *before = i > 0 ? &reader.document().tokens[i - 1] : nullptr;
    const bool digits = reader.at(begin)->kind == TokenKind::Number;
    const Reader all(reader.document(), reader.end());
    const bool introduced =
        before && (all.has(i - 1, Meaning::DateMarker) || all.has(i - 1, Meaning::Weekday) ||
                   all.has(i - 1, Meaning::WeakWeekday));
    if (!endsDayOnly(reader, rank.next) || !(introduced || (begin != i && digits)))
        return std::nullopt;
    if (!digits && begin == i)
        return std::nullopt;
    result.weak = !introduced;
    return result;
}

} // namespace

std::optional<int> readCount(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
    if (reader.number(i, 1, 9999, 4)) {
        next = i + 1;
        return static_cast<int>(reader.at(i)->number);
    }
    const Sense *word = reader.sense(i, Meaning::Number);
    if (!word)
        return std::nullopt;
    next = i + word->length;
    return word->value;
}

std::optional<DateMention> readRelativeDate(const Reader &reader, std::uint32_t i) {
    if (const Sense *day = reader.sense(i, Meaning::RelativeDay)) {
        DateMention result = mention(i, i + day->length, Base::Today);
        result.first.days = day->value;
        // "tomorrow week" is a week later.
        if (const Sense *week = unit(reader, result.span.end, Unit::Week)) {
            result.first.days += 7;
            result.span.end += week->length;
        }
        return result;
    }
    if (auto date = readNthWeekday(reader, i))
        return date;
    if (auto date = readNthInMonth(reader, i))
        return date;
    if (auto date = readDistance(reader, i))
        return date;
    if (auto date = readWeekday(reader, i))
        return date;
    if (auto date = readPeriod(reader, i))
        return date;
    return readDayOnly(reader, i);
}

} // namespace pindle::conversion
