#include "PindleConversion/expressions/RelativeWords.h"

#include <algorithm>

#include "PindleConversion/expressions/Starts.h"

namespace pindle::conversion {

namespace {

/// "kommst du Mi zum Bouldern", "hast du Do Zeit": where nouns are capitals, among small words only
/// a day is written so; "Fr. Kern" is a person.
bool isDayAmongSmall(const Reader &reader, std::uint32_t i, std::uint32_t next) {
    const Token &word = reader.token(i);
    if (!word.capital || i == 0 || !reader.language(i).capitalNouns)
        return false;
    const Token &before = reader.document().tokens[i - 1];
    const Token *behind = reader.at(next);
    const bool inside = before.symbol == ',' || (before.kind == TokenKind::Word && !before.capital);
    return inside && reader.document().sameSentence(i - 1, i) &&
           !reader.has(i - 1, Meaning::Person) && !reader.has(i - 1, Meaning::The) &&
           !reader.has(i - 1, Meaning::Of) && behind && behind->kind == TokenKind::Word &&
           (!behind->capital || behind->word != 0);
}

/// "choir Wed quarter to eight": a clock time in words starts at `time`.
bool isBeforeSpokenClock(const Reader &reader, std::uint32_t time) {
    std::uint32_t end = time;
    if (!reader.word(time) || !mayStartSpokenClock(reader, time))
        return false;
    const auto clock = readSpokenClock(reader, time, end);
    return clock && clock->sure;
}

/// "can't do sun. sat?", "sat works": in a conversation a day is turned down or agreed on.
bool isWeighedDay(const Reader &reader, std::uint32_t i, std::uint32_t next) {
    constexpr std::uint32_t kLongestRole = 3;
    if (reader.has(next, Meaning::RoleBehind))
        return true;
    return (reader.symbol(next, '.') || reader.has(next, Meaning::Or)) &&
           reader.senseBefore(i, Meaning::RoleWord, kLongestRole);
}

/// A weekday word that is also an everyday word needs company.
/// "lun-ven 9:00", "ma t/m vr 10.00", "mar. - sam. de 10 h à 19 h": the day before token `next`
/// goes on to another.
bool opensDayRange(const Reader &reader, std::uint32_t next) {
    next = reader.skipSymbol(next, '.');
    const Sense *to = reader.sense(next, Meaning::RangeTo);
    const std::uint32_t last = next + (to ? to->length : 0U);
    if (!to || !reader.mayHave(last, kWeekdayNames))
        return false;
    const std::uint32_t behind = reader.skipSymbol(last + 1, '.');
    return reader.number(reader.skip(reader.skipSymbol(behind, ','), Meaning::TimeMarker), 0, 24);
}

bool isCertainWeekday(const Reader &reader, std::uint32_t i, std::uint32_t next) {
    if (opensDayRange(reader, next))
        return true;
    // "so" is a Sunday in "So 14.6.", but hardly in "so gegen sechs".
    constexpr std::uint32_t kShort = 2;
    const Token &word = reader.token(i);
    if (word.end - word.begin <= kShort && !word.capital && !word.unspaced)
        return reader.number(reader.skipSymbol(next, '.'), 1, 31) ||
               (!reader.has(i, Meaning::Common) &&
                reader.number(reader.skip(next, Meaning::TimeMarker), 0, 24));
    // "are you free sat" closes a line of a conversation.
    const Field &field = reader.document().fields[word.field];
    // and "yup sat" may be all of it.
    static constexpr Meanings kTalk{Meaning::Greeting, Meaning::Chatter};
    if (field.spoken && word.end - word.begin > kShort &&
        (((i != field.begin + 1 || reader.mayHave(field.begin, kTalk)) &&
          (next >= reader.end() || reader.symbol(next, ','))) ||
         isWeighedDay(reader, i, next)))
        return true;
    // "Hotel Sol de Mar" is named so.
    if (i > 0 && word.capital && reader.has(i - 1, Meaning::Of) && !reader.number(next, 1, 31))
        return false;
    // "na Quinta das Flores", but "na Sexta do Mês"
    if (i > 0 && word.capital && reader.has(next, Meaning::Of) && reader.word(next + 1) &&
        reader.token(next + 1).capital && !reader.has(next + 1, Meaning::Month) &&
        !reader.has(next + 1, Meaning::UnitWord))
        return false;
    if (isDayAmongSmall(reader, i, next))
        return true;
    // "Hast du Mo Zeit? So gegen drei?"
    const bool opens = i > field.begin && !reader.document().sameSentence(i - 1, i);
    if (opens && word.end - word.begin <= kShort && reader.has(next, Meaning::TimeMarker) &&
        reader.word(reader.skip(next, Meaning::TimeMarker)))
        return false;
    // "ferry 9:20 sat, lunch in Cowes", "9:30 sat Hillside bakery"
    // and "4:10 (check in 3:55) mon"
    const std::uint32_t before = i > 1 && reader.symbol(i - 1, ')') ? i - 2 : i - 1;
    if (i > 0 && reader.document().tokens[before].used && !reader.glued(i) &&
        (!reader.word(next) || (reader.token(next).upper() && !reader.language(i).capitalNouns)))
        return true;
    // "8am Sat from Dawson's", "3pm Sat v Rovers"
    static constexpr Meanings kGoOn{Meaning::PlaceMarker, Meaning::Person, Meaning::Connector};
    if (i > 0 && word.end - word.begin > kShort && reader.has(i - 1, Meaning::Meridiem) &&
        reader.document().tokens[i - 1].used && reader.mayHave(next, kGoOn))
        return true;
    // "Dentist 2:30 Wed w/ Dr Patel"
    if (i > 2 && word.upper() && word.end - word.begin > kShort &&
        reader.document().tokens[i - 1].used && reader.symbol(i - 2, ':') &&
        reader.document().tokens[i - 2].used && !reader.glued(i))
        return true;
    // "moved to Sat bc of the storm"
    constexpr std::uint32_t kLongestRole = 4;
    const Sense *role =
        i > 0 && word.upper() ? reader.senseBefore(i, Meaning::RoleWord, kLongestRole) : nullptr;
    const bool moved = role && (role->value == static_cast<int>(Role::MovedTo) ||
                                role->value == static_cast<int>(Role::MovedFrom));
    const bool announced = moved || (i > 0 && reader.has(i - 1, Meaning::DateMarker));
    // "quinta que vem"
    if (const Sense *behind = reader.sense(next, Meaning::Behind); behind && behind->length > 1)
        return true;
    // "sex, 20h15"
    if (const std::uint32_t clock = next + 1;
        reader.symbol(next, ',') && reader.number(clock, 0, 24) && reader.glued(clock + 1) &&
        (reader.symbol(clock + 1, ':') || reader.has(clock + 1, Meaning::HourMark)))
        return true;
    const std::uint32_t time = reader.skip(next, Meaning::TimeMarker);
    const bool timed = reader.number(time, 0, 31) || reader.has(time, Meaning::ClockWord) ||
                       (time != next && reader.has(time, Meaning::Number));
    // "fitters Wed AM"
    const bool half = word.capital && reader.has(next, Meaning::Meridiem) && !reader.glued(next);
    if (announced || timed || half || reader.has(next, Meaning::PartOfDay) ||
        reader.has(next, Meaning::Month) || isBeforeSpokenClock(reader, time))
        return true;
    return (reader.token(i).capital && !reader.word(next)) || reader.symbol(next, '?');
}

} // namespace

DateMention mentionOf(std::uint32_t begin, std::uint32_t end, DateSpec::Base base) {
    DateMention result;
    result.span = {begin, end};
    result.first.base = base;
    return result;
}

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

const Sense *readUnit(const Reader &reader, std::uint32_t i, Unit wanted) {
    const Sense *sense = reader.sense(i, Meaning::UnitWord);
    return sense && sense->value == static_cast<int>(wanted) ? sense : nullptr;
}

DayName readDayName(const Reader &reader, std::uint32_t i, bool qualified) {
    if (const Sense *sense = reader.sense(i, Meaning::Repeated))
        return {sense->value, i + sense->length, true};
    if (const Sense *sense = reader.sense(i, Meaning::Weekday))
        return {sense->value, i + sense->length};
    const Sense *weak = reader.sense(i, Meaning::WeakWeekday);
    // A lone sign for a weekday counts only in brackets, which dates read themselves.
    if (weak && !reader.token(i).unspaced &&
        (qualified || isCertainWeekday(reader, i, i + weak->length)))
        return {weak->value, i + weak->length};
    return {};
}

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

std::optional<Amount> readUnits(const Reader &reader, std::uint32_t i, int count) {
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

std::optional<Amount> readAmount(const Reader &reader, std::uint32_t i) {
    constexpr int kMostUnits = 1000;
    std::uint32_t next = i;
    const auto count = readCount(reader, i, next);
    if (!count || *count > kMostUnits)
        return std::nullopt;
    return readUnits(reader, next, *count);
}

std::optional<int> readCount(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
    if (reader.number(i, 1, 9999, 4)) {
        next = i + 1;
        return static_cast<int>(reader.token(i).number);
    }
    const Sense *word = reader.sense(i, Meaning::Number);
    if (!word)
        return std::nullopt;
    next = i + word->length;
    return word->value;
}

} // namespace pindle::conversion
