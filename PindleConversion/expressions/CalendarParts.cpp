#include "PindleConversion/expressions/CalendarParts.h"

namespace pindle::conversion {

namespace {

constexpr std::uint32_t kFirstOldYear = 1000;

/// "9 May 1749": long ago, and no time such as "1745".
bool isOldYear(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kStep = 5;
    const Token *token = reader.at(i);
    return token && token->kind == TokenKind::Number && token->digits == 4 &&
           token->number >= kFirstOldYear && token->number < kFirstYear &&
           (token->number % 100 > 59 || token->number % kStep != 0 ||
            reader.has(i + 1, Meaning::YearMark)) &&
           !spoilsDay(reader, i + 1);
}

/// "2100-0700": two hours on a roster, since no year comes before 1000.
bool isHourBeforeOther(const Reader &reader, std::uint32_t i) {
    const Token *last = reader.at(i + 2);
    return reader.symbol(i + 1, '-') && reader.glued(i + 1) && reader.glued(i + 2) && last &&
           last->kind == TokenKind::Number && last->digits == 4 && last->number < kFirstOldYear &&
           reader.token(i).number % 100 < 60 && last->number % 100 < 60;
}

} // namespace

void beginMonthBefore(DateSpec &first) {
    constexpr int kLastMonth = 12;
    if (first.month == 0 || first.eitherOrder)
        return;
    first.year -= first.month == 1 && first.year != 0 ? 1 : 0;
    first.month = first.month == 1 ? kLastMonth : first.month - 1;
}

DateMention mentionOf(std::uint32_t begin, std::uint32_t end, int month, int day, int year) {
    DateMention result;
    result.span = {begin, end};
    result.first.month = month;
    result.first.day = day;
    result.first.year = year;
    return result;
}

std::uint32_t skipOrdinalMark(const Reader &reader, std::uint32_t i) {
    const Sense *mark = reader.glued(i) ? reader.sense(i, Meaning::OrdinalMark) : nullptr;
    if (!mark)
        return i;
    const std::uint32_t behind = i + mark->length;
    const Token *next = reader.at(behind);
    return next && next->kind == TokenKind::Number && reader.glued(behind) ? i : behind;
}

bool spoilsDay(const Reader &reader, std::uint32_t next) {
    if (reader.symbol(next, ':') && reader.glued(next) && reader.number(next + 1, 0, 59))
        return true;
    const Sense *hour = reader.sense(next, Meaning::HourMark);
    return reader.symbol(next, '%') || reader.has(next, Meaning::Meridiem) ||
           (hour && (hour->value == 1 || reader.glued(next)));
}

int yearOfEra(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kFirst = 100;
    constexpr std::uint32_t kLast = 199;
    const Token *token = reader.at(i);
    const int before = token ? reader.language(i).eraYears : 0;
    const bool year = before != 0 && token->digits == 3 && reader.number(i, kFirst, kLast, 3);
    return year ? before + static_cast<int>(token->number) : 0;
}

bool isYear(const Reader &reader, std::uint32_t i) {
    const Token *token = reader.at(i);
    return token && token->kind == TokenKind::Number && token->digits == 4 &&
           token->number >= kFirstYear && token->number <= kLastYear && !spoilsDay(reader, i + 1) &&
           !isHourBeforeOther(reader, i);
}

std::uint32_t readYear(const Reader &reader, std::uint32_t i, int &year) {
    const std::uint32_t j = reader.skip(reader.skipSymbol(i, ','), Meaning::Of);
    if (isYear(reader, j) || isOldYear(reader, j)) {
        year = static_cast<int>(reader.token(j).number);
        return reader.skip(j + 1, Meaning::YearMark);
    }
    if (const Sense *words = reader.sense(j, Meaning::Number);
        words && words->value >= static_cast<int>(kFirstYear)) {
        year = words->value;
        return reader.skip(j + words->length, Meaning::YearMark);
    }
    if (const Sense *words = reader.sense(j, Meaning::YearWord)) {
        year = words->value;
        return reader.skip(j + words->length, Meaning::YearMark);
    }
    const Sense *thisYear = reader.sense(i, Meaning::YearMark);
    if (thisYear && thisYear->value == 1)
        return i + thisYear->length;
    const Token *digits = reader.at(j + 1);
    if (reader.symbol(j, '\'') && digits && digits->digits == 2 && reader.glued(j + 1)) {
        year = 2000 + static_cast<int>(digits->number);
        return j + 2;
    }
    return i;
}

} // namespace pindle::conversion
