#include "PindleConversion/expressions/Expression.h"

#include <array>

namespace pindle::conversion {

namespace {

constexpr std::string_view kUniversal = "UTC";

struct Offset {
    int minutes = 0;
    std::uint32_t next = 0;
};

/// "+02:00", "-6", "+0530", "+ 2".
Offset readOffset(const Reader &reader, std::uint32_t i) {
    const bool minus = reader.symbol(i, '-');
    const Token *hours = reader.at(i + 1);
    if (!(minus || reader.symbol(i, '+')) || !hours || hours->kind != TokenKind::Number ||
        (!reader.glued(i + 1) && minus))
        return {0, i};
    int minutes = 0;
    std::uint32_t next = i + 2;
    if (hours->digits == 4) {
        minutes = static_cast<int>(hours->number / 100 * 60 + hours->number % 100);
    } else if (hours->digits <= 2 && hours->number <= 14) {
        minutes = static_cast<int>(hours->number) * 60;
        if (reader.symbol(next, ':') && reader.number(next + 1, 0, 59)) {
            minutes += static_cast<int>(reader.token(next + 1).number);
            next += 2;
        }
    } else {
        return {0, i};
    }
    constexpr int kLargest = 14 * 60;
    return minutes > kLargest ? Offset{0, i} : Offset{minus ? -minutes : minutes, next};
}

/// "5:14 AM +1": so many days later, and no offset.
bool isDayMark(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kMostDays = 2;
    return reader.glued(i + 1) && reader.number(i + 1, 1, kMostDays, 1) &&
           !reader.symbol(i + 2, ':') && !reader.symbol(i + 2, '.');
}

/// "Central" before "Library" is no zone.
bool namesSomethingElse(const Reader &reader, std::uint32_t i, const Sense &sense) {
    const bool capitals = allCapitals(reader.document().slice(reader.token(i)));
    if (capitals)
        return false;
    const Token *next = reader.at(i + sense.length);
    return sense.value == 1 ||
           (next && next->kind == TokenKind::Word &&
            (next->capital || reader.has(i + sense.length, Meaning::PlaceNoun)));
}

/// "Amsterdam, Berlin, Bern": the cities behind an offset; the first known one names the zone.
std::uint32_t readCities(const Reader &reader, std::uint32_t i, TimeMention &mention) {
    constexpr std::uint32_t kMostCityTokens = 16;
    std::uint32_t end = i;
    bool found = false;
    for (std::uint32_t j = i; j < i + kMostCityTokens && reader.at(j);) {
        const Sense *city = reader.sense(j, Meaning::ZoneWord);
        if (!reader.word(j) || !reader.token(j).capital)
            break;
        if (city && city->value == 0 && !found) {
            mention.zone = noteOf(*city);
            mention.hasOffset = false;
            found = true;
        }
        j += city ? city->length : 1;
        end = j;
        if (!reader.symbol(j, ','))
            break;
        ++j;
    }
    return found ? end : i;
}

/// "Data: 19 mag 2026, 11:00 Roma": nothing but a zone can end a field that says when.
bool endsMoment(const Reader &reader, std::uint32_t i, std::uint32_t length) {
    const Label label = reader.document().fields[reader.token(i).field].label;
    return i + length == reader.end() &&
           (label == Label::When || label == Label::Date || label == Label::Time);
}

/// "2pm Amsterdam, Berlin, Rome": as calendars name a zone by its cities.
bool isListOfCities(const Reader &reader, std::uint32_t i, const Sense &city) {
    constexpr int kFewest = 2; ///< beside the first
    int others = 0;
    for (std::uint32_t j = i + city.length; reader.symbol(j, ',') && others < kFewest;) {
        const Sense *other = reader.sense(j + 1, Meaning::ZoneWord);
        if (!other || other->value != 0)
            return false;
        ++others;
        j += 1 + other->length;
    }
    return others == kFewest;
}

/// "4pm Berlin / 10am New York": another time follows the mark at `i`.
bool isPaired(const Reader &reader, std::uint32_t i) {
    if (!reader.symbol(i, '/') && !reader.symbol(i, '(') && !reader.symbol(i, '=') &&
        !reader.symbol(i, '|'))
        return false;
    std::uint32_t next = i + 1;
    const auto clock = reader.number(i + 1, 0, 23) ? readClock(reader, i + 1, next) : std::nullopt;
    return clock && clock->sure;
}

/// "(16h à Paris)": a city that ends brackets is where the clock shows that time.
std::uint32_t readPlaceOfTime(const Reader &reader, std::uint32_t i, TimeMention &mention) {
    std::uint32_t name = reader.skip(i, Meaning::In);
    name = name != i ? name : reader.skip(i, Meaning::PlaceMarker);
    const Sense *city = reader.sense(name, Meaning::ZoneWord);
    const std::uint32_t close = city ? name + city->length : i;
    if (!city || city->value != 0 || !reader.symbol(close, ')'))
        return i;
    mention.zone = noteOf(*city);
    mention.hasOffset = false;
    return close;
}

/// "às 14h30 de Lisboa, dia 11": a city that ends the phrase is where the clock shows that time.
std::uint32_t readCityOfTime(const Reader &reader, std::uint32_t i, TimeMention &mention) {
    const Sense *of = reader.sense(i, Meaning::Of);
    const Sense *city = of ? reader.sense(i + of->length, Meaning::ZoneWord) : nullptr;
    if (!city || city->value != 0 || !reader.token(i + of->length).upper())
        return i;
    const std::uint32_t next = i + of->length + city->length;
    if (reader.word(next) || reader.symbol(next, '-') || reader.symbol(next, U'→'))
        return i;
    mention.zone = noteOf(*city);
    mention.hasOffset = false;
    return next;
}

std::uint32_t readNamed(const Reader &reader, std::uint32_t i, bool afterTime,
                        TimeMention &mention) {
    if (const Sense *zone = reader.sense(i, Meaning::Zone)) {
        mention.zone = noteOf(*zone);
        mention.hasOffset = false;
        return i + zone->length;
    }
    const Sense *brief = afterTime ? reader.sense(i, Meaning::ZoneAfterTime) : nullptr;
    if (brief && !namesSomethingElse(reader, i, *brief)) {
        mention.zone = noteOf(*brief);
        const Sense *word = reader.sense(i + brief->length, Meaning::ZoneWord);
        return i + brief->length + (word && word->value == 1 ? word->length : 0U);
    }
    if (const std::uint32_t end = afterTime ? readPlaceOfTime(reader, i, mention) : i; end != i)
        return end;
    if (const std::uint32_t end = afterTime ? readCityOfTime(reader, i, mention) : i; end != i)
        return end;
    const Sense *city = reader.sense(i, Meaning::ZoneWord);
    if (city && city->value >= 1) {
        const std::uint32_t name =
            reader.skip(reader.skip(i + city->length, Meaning::Of), Meaning::The);
        const Sense *of = reader.sense(name, Meaning::ZoneWord);
        if (of && of->value == 0) {
            mention.zone = noteOf(*of);
            return name + of->length;
        }
    }
    if (city && city->value == 0 && afterTime &&
        (endsMoment(reader, i, city->length) || isPaired(reader, i + city->length) ||
         isListOfCities(reader, i, *city))) {
        mention.zone = noteOf(*city);
        return isListOfCities(reader, i, *city) ? readCities(reader, i, mention) : i + city->length;
    }
    if (!city || city->value != 0)
        return i;
    // "Toronto-Zeit"
    std::uint32_t next = i + city->length;
    next = reader.symbol(next, '-') && reader.glued(next) ? next + 1 : next;
    const Sense *time = reader.sense(next, Meaning::ZoneWord);
    if (!time || time->value != 1)
        return i;
    mention.zone = noteOf(*city);
    return next + time->length;
}

/// "UTC", "GMT+2", "UTC-06:00) Central Time".
std::uint32_t readUniversal(const Reader &reader, std::uint32_t i, TimeMention &mention) {
    const Sense *universal = reader.sense(i, Meaning::ZoneOffset);
    if (!universal)
        return i;
    std::uint32_t next = i + universal->length;
    mention.zone = kUniversal;
    const Offset offset = readOffset(reader, next);
    if (offset.next == next)
        return next;
    mention.hasOffset = true;
    mention.offsetMinutes = offset.minutes;
    next = offset.next;
    const std::uint32_t name = reader.skipSymbol(next, ')');
    std::uint32_t after = readNamed(reader, name, true, mention);
    if (after == name)
        after = readCities(reader, name, mention);
    return after == name ? next : after;
}

/// "Europe/Berlin", as the tz database spells it.
std::uint32_t readIdentifier(const Reader &reader, std::uint32_t i, TimeMention &mention) {
    constexpr std::array<std::string_view, 10> areas{
        "Africa",    "America", "Antarctica", "Asia",   "Atlantic",
        "Australia", "Etc",     "Europe",     "Indian", "Pacific"};
    if (!reader.word(i) || !reader.symbol(i + 1, '/') || !reader.word(i + 2))
        return i;
    bool known = false;
    for (std::string_view area : areas)
        known = known || reader.document().slice(reader.token(i)) == area;
    if (!known)
        return i;
    std::uint32_t end = i + 3;
    while ((reader.symbol(end, '_') || reader.symbol(end, '/')) && reader.glued(end) &&
           reader.word(end + 1))
        end += 2;
    mention.zone = reader.document().slice(TokenSpan{i, end});
    mention.zoneWritten = true;
    return end;
}

} // namespace

std::uint32_t readZone(const Reader &reader, std::uint32_t i, bool afterTime,
                       TimeMention &mention) {
    const std::uint32_t begin = reader.skipSymbol(i, '(');
    const TimeMention before = mention;
    std::uint32_t end = afterTime || begin != i ? readUniversal(reader, begin, mention) : begin;
    if (end == begin)
        end = readIdentifier(reader, begin, mention);
    if (end == begin)
        end = readNamed(reader, begin, afterTime, mention);
    if (end == begin && afterTime && reader.symbol(begin, '+') && !isDayMark(reader, begin)) {
        const Offset offset = readOffset(reader, begin);
        if (offset.next != begin) {
            mention.hasOffset = true;
            mention.offsetMinutes = offset.minutes;
            end = offset.next;
        }
    }
    if (end == begin)
        return i;
    // "(Central European Time, CET)": the same zone once more.
    if (const Sense *again = reader.symbol(end, ',') && !reader.symbol(end + 2, ',')
                                 ? reader.sense(end + 1, Meaning::ZoneAfterTime)
                                 : nullptr;
        again && allCapitals(reader.document().slice(reader.token(end + 1))))
        end += 1 + again->length;
    // "IST (Mumbai)": the city says no more than the abbreviation.
    if (const Sense *city = reader.symbol(end, '(') && begin == i && end == begin + 1
                                ? reader.sense(end + 1, Meaning::ZoneWord)
                                : nullptr;
        city && city->value == 0 && reader.symbol(end + 1 + city->length, ')'))
        end += 2 + city->length;
    // "（伦敦时间13:00）" tells the same moment elsewhere.
    if (begin != i && reader.at(end) && reader.token(begin).unspaced &&
        (reader.token(end).kind == TokenKind::Number || reader.has(end, Meaning::PartOfDay))) {
        mention = before;
        return i;
    }
    mention.zoneSpan = {begin, end};
    return begin != i ? reader.skipSymbol(end, ')') : end;
}

} // namespace pindle::conversion
