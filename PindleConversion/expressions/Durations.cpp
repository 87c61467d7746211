#include "PindleConversion/expressions/Expression.h"

namespace pindle::conversion {

namespace {

constexpr int kLongestMinutes = 7 * 24 * 60;

struct Part {
    int minutes = 0;
    int days = 0;
    std::uint32_t next = 0;
    bool hyphen = false;
    bool nights = false;
};

int unitMinutes(Unit unit) {
    return unit == Unit::Minute ? 1 : unit == Unit::Hour ? 60 : 0;
}

/// "half an hour".
std::optional<Part> readHalf(const Reader &reader, std::uint32_t i) {
    const Sense *half = reader.sense(i, Meaning::HalfBare);
    if (!half)
        return std::nullopt;
    std::uint32_t j = i + half->length;
    j = reader.symbol(j, '-') ? j + 1 : reader.skip(j, Meaning::Number);
    const Sense *unit = reader.sense(j, Meaning::UnitWord);
    if (!unit || unitMinutes(static_cast<Unit>(unit->value)) != 60)
        return std::nullopt;
    return Part{half->value, 0, j + unit->length, false};
}

/// "and a quarter" before "hours", in minutes; `i` is behind it then.
int readFraction(const Reader &reader, std::uint32_t &i) {
    const std::uint32_t both = reader.skip(i, Meaning::And);
    if (both == i)
        return 0;
    const std::uint32_t word =
        reader.has(both, Meaning::QuarterWord) ? both : reader.skip(both, Meaning::Number);
    const Sense *share = reader.sense(word, Meaning::QuarterWord);
    share = share ? share : reader.sense(word, Meaning::HalfBare);
    const Sense *unit = share ? reader.sense(word + share->length, Meaning::UnitWord) : nullptr;
    if (!unit || unit->value != static_cast<int>(Unit::Hour))
        return 0;
    i = word + share->length;
    return share->value;
}

/// "1/2" of "3 1/2 hours", in minutes; `i` is behind it then.
int readWrittenFraction(const Reader &reader, std::uint32_t &i) {
    constexpr std::uint32_t kQuarters = 4;
    constexpr int kHour = 60;
    if (!reader.symbol(i + 1, '/') || !reader.number(i, 1, kQuarters - 1, 1) ||
        !reader.number(i + 2, 2, kQuarters, 1))
        return 0;
    const Sense *unit = reader.sense(i + 3, Meaning::UnitWord);
    const std::uint32_t share = reader.token(i).number;
    const std::uint32_t whole = reader.token(i + 2).number;
    if (!unit || unit->value != static_cast<int>(Unit::Hour) || share >= whole)
        return 0;
    i += 3;
    return kHour * static_cast<int>(share) / static_cast<int>(whole);
}

/// "drei Viertelstunden", "trois quarts d'heure", behind their number.
std::optional<Part> readQuarters(const Reader &reader, std::uint32_t i, int count) {
    constexpr int kMostQuarters = 3;
    const Sense *quarter = reader.sense(i, Meaning::QuarterWord);
    static constexpr Meanings kClock{Meaning::PastWord, Meaning::ToWord, Meaning::Number};
    if (!quarter || count > kMostQuarters || reader.mayHave(i + quarter->length, kClock))
        return std::nullopt;
    return Part{count * quarter->value, 0, i + quarter->length};
}

/// "两三个小时": two or three, in two signs.
bool isEstimate(const Token &number) {
    constexpr std::uint32_t kTwoSigns = 6; ///< bytes
    return number.digits == 2 && number.end - number.begin == kTwoSigns &&
           number.number % 10 == number.number / 10 + 1;
}

std::optional<Part> readPart(const Reader &reader, std::uint32_t i) {
    std::uint32_t j = i;
    const auto count = readCount(reader, i, j);
    if (!count || isEstimate(reader.token(i)))
        return std::nullopt;
    int tenths = 0;
    if ((reader.symbol(j, '.') || reader.symbol(j, ',')) && reader.glued(j) &&
        reader.glued(j + 1) && reader.number(j + 1, 0, 9, 1)) {
        tenths = static_cast<int>(reader.token(j + 1).number);
        j += 2;
    } else if (const Sense *half = reader.sense(j, Meaning::HalfBare);
               half && (reader.glued(j) || !reader.word(j))) {
        // "一个半小时", "2 ½ hours"
        tenths = 5;
        j += half->length;
    }
    const int rest = readWrittenFraction(reader, j) + readFraction(reader, j);
    Part part;
    part.hyphen = reader.symbol(j, '-') && reader.glued(j) && reader.glued(j + 1);
    const Sense *unit = reader.sense(part.hyphen ? j + 1 : j, Meaning::UnitWord);
    if (!unit)
        return readQuarters(reader, j, *count);
    part.next = (part.hyphen ? j + 1 : j) + unit->length;
    const auto which = static_cast<Unit>(unit->value);
    if (const int minutes = unitMinutes(which); minutes > 0)
        part.minutes = *count * minutes + tenths * minutes / 10 + rest;
    else if (which == Unit::Day && tenths == 0)
        part.days = *count;
    else if (which == Unit::Night && tenths == 0)
        part.nights = true;
    else if (which == Unit::Week && tenths == 0)
        part.days = 7 * *count;
    else
        return std::nullopt;
    if (part.nights)
        part.days = *count + 1; // two nights are three days
    return part;
}

/// "1 hr 15": minutes without their unit, which nothing goes on with.
bool endsLength(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kStep = 5;
    const Token *next = reader.at(i + 1);
    return reader.token(i).number % kStep == 0 &&
           (!next || next->kind == TokenKind::LineBreak || next->symbol == ')' ||
            next->symbol == '|' || next->symbol == ';' ||
            ((next->symbol == '.' || next->symbol == ',') && !reader.glued(i + 2)));
}

/// "and a half", "30 min", "30" behind hours.
void readRest(const Reader &reader, Part &part) {
    if (const Sense *half = reader.sense(part.next, Meaning::MinutesBehind);
        half && half->value > 0) {
        part.minutes += half->value;
        part.next += half->length;
        return;
    }
    std::uint32_t j = reader.skip(part.next, Meaning::And);
    const std::uint32_t half = reader.skip(j, Meaning::Number);
    if (j != part.next && reader.has(half, Meaning::HalfBare)) {
        part.minutes += 30;
        part.next = reader.skip(half, Meaning::HalfBare);
        return;
    }
    if (!reader.number(j, 1, 59))
        return;
    const Sense *unit = reader.sense(j + 1, Meaning::UnitWord);
    // "1h 45m"
    if (!unit && reader.word(j + 1) && reader.glued(j + 1) &&
        reader.document().slice(reader.token(j + 1)) == "m") {
        part.minutes += static_cast<int>(reader.token(j).number);
        part.next = j + 2;
        return;
    }
    if (unit && unit->value == static_cast<int>(Unit::Minute)) {
        part.minutes += static_cast<int>(reader.token(j).number);
        part.next = j + 1 + unit->length;
    } else if (reader.token(j).digits == 2 &&
               (reader.glued(j) || (j == part.next && endsLength(reader, j)))) {
        part.minutes += static_cast<int>(reader.token(j).number);
        part.next = j + 1;
    }
}

/// "Sixty minutes on grant writing", "Ninety minutes of jazz": a length that opens a sentence and
/// goes on with what fills it. "6h15 na entrada" is an hour.
bool opensSentence(const Reader &reader, std::uint32_t i, const Part &part) {
    static constexpr Meanings kGoOn{Meaning::Of, Meaning::DateMarker, Meaning::Person};
    return reader.mayHave(part.next, kGoOn) && reader.word(part.next) && i > 0 &&
           part.minutes > 0 && !reader.glued(i + 1) && !reader.document().sameSentence(i - 1, i) &&
           reader.document().fields[reader.token(i).field].label == Label::None;
}

constexpr int kLongestTold = 6 * 60; ///< minutes; more of them are an hour of the day

/// "Réunion de 2h": so long is the event before it. "Missa das 9h30" begins then.
bool belongsToEvent(const Reader &reader, std::uint32_t i, const Part &part) {
    const bool hour = reader.has(i - 1, Meaning::TimeMarker) && part.minutes > kLongestTold;
    return i > 1 && part.minutes > 0 && !hour && reader.has(i - 1, Meaning::Of) &&
           reader.has(i - 2, Meaning::Event) && !reader.has(part.next, Meaning::RangeTo);
}

/// "18h" in a language that writes clock times so.
bool isHour(const Reader &reader, std::uint32_t i, const Part &part) {
    constexpr int kNoon = 12 * 60;
    const Sense *mark = reader.sense(i + 1, Meaning::HourMark);
    // "(21h30)" is one wherever hours are counted on.
    const bool late = part.minutes > kNoon && part.minutes < 2 * kNoon && reader.glued(i + 1) &&
                      reader.language(i).clock24;
    // "quarta 8h dentista", "za 10u tandarts"
    static constexpr Meanings kDays{Meaning::Weekday, Meaning::WeakWeekday, Meaning::RelativeDay};
    const bool behindDay = mark && i > 0 && part.minutes > kLongestTold && reader.glued(i + 1) &&
                           reader.language(i + 1).clock24 && reader.mayHave(i - 1, kDays);
    return mark && ((mark->value == 1 && part.minutes > kLongestTold) || late || behindDay);
}

/// "(90 min)", "(approx. 90 min)": nothing else stands before it in the brackets.
bool opensBracket(const Reader &reader, std::uint32_t i) {
    std::uint32_t open = i > 1 && reader.symbol(i - 1, '.') ? i - 1 : i;
    if (open > 1 && reader.has(open - 1, Meaning::Approximate))
        --open;
    else
        open = i;
    return open > 0 && reader.document().tokens[open - 1].symbol == '(';
}

/// "in my office, 45 minutes.", ", about 2 hours,": a length between marks.
bool isListed(const Reader &reader, std::uint32_t i, std::uint32_t next) {
    if (i > 1 && reader.word(i - 1) && reader.has(i - 1, Meaning::Approximate))
        --i;
    // "打羽毛球，两个小时" has no spaces, "3,000" is one number.
    const bool glued = reader.glued(i) && !(reader.token(next - 1).unspaced && i > 1 &&
                                            reader.token(i - 2).kind != TokenKind::Number);
    if (i == 0 || !reader.symbol(i - 1, ',') || glued)
        return false;
    // "13/1, 16u10" tells when.
    if (i > 1 && reader.document().tokens[i - 2].used)
        return false;
    return !reader.at(next) || reader.symbol(next, ',') || reader.symbol(next, '.') ||
           reader.symbol(next, ')') || reader.symbol(next, ';');
}

/// "打羽毛球，打两个小时": the verb before token `i` is said once more to tell how long it takes.
bool repeatsVerb(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kReach = 12;
    if (i < 2 || !reader.token(i - 1).isOneSign() || reader.token(i - 1).used)
        return false;
    const std::string_view verb = reader.document().slice(reader.token(i - 1));
    for (std::uint32_t k = i - 1; k > 0 && i - k < kReach; --k) {
        const Token &before = reader.token(k - 1);
        if (before.kind == TokenKind::LineBreak)
            return false;
        if (before.unspaced && reader.document().slice(before).substr(0, verb.size()) == verb)
            return true;
    }
    return false;
}

} // namespace

namespace {

/// "We hold tables for 15 minutes": what lasts so long is not the event.
bool isOfOther(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kReach = 4;
    for (std::uint32_t k = i; k > 0 && i - k < kReach; --k) {
        const Sense *verb = reader.sense(k - 1, Meaning::NoDuration);
        // "Running time 2 hrs"
        if (verb && verb->value == 1 && !reader.has(k - 1, Meaning::DurationMark))
            return reader.document().sameSentence(k - 1, i);
    }
    return false;
}

} // namespace

std::optional<DurationMention> readDuration(const Reader &reader, std::uint32_t i, bool marked) {
    auto part = readHalf(reader, i);
    if (!part)
        part = readPart(reader, i);
    if (!part)
        return std::nullopt;
    if (part->minutes >= 60 && part->minutes % 60 == 0)
        readRest(reader, *part);
    const bool bracket =
        !isHour(reader, i, *part) && reader.symbol(part->next, ')') && opensBracket(reader, i);
    constexpr int kShortest = 15;
    // "om twaalf uur lunch" tells the hour.
    const bool announced = i > 0 && reader.has(i - 1, Meaning::TimeMarker);
    const bool ofEvent = belongsToEvent(reader, i, *part);
    const bool opens = part->minutes >= kShortest && opensSentence(reader, i, *part);
    const bool again = part->minutes >= kShortest && repeatsVerb(reader, i);
    const bool told =
        part->minutes >= kShortest && (!announced || ofEvent) && !isHour(reader, i, *part) &&
        (ofEvent || opens || reader.has(part->next, Meaning::Event) ||
         reader.has(part->next, Meaning::Person) || reader.has(part->next, Meaning::DurationTail));
    const bool listed =
        part->minutes >= kShortest &&
        (!reader.has(i + 1, Meaning::HourMark) ||
         (part->minutes <= kLongestTold && !reader.language(i).clock24 && reader.glued(i + 1))) &&
        isListed(reader, i, part->next);
    if (!marked && !listed && !bracket && !part->hyphen && !told && !again)
        return std::nullopt;
    if ((reader.has(part->next, Meaning::NoDuration) && !part->nights && !opens) ||
        (part->days > 0 && !marked && !part->nights &&
         !(part->hyphen && reader.has(part->next, Meaning::Event))))
        return std::nullopt;
    if (isOfOther(reader, i))
        return std::nullopt;
    // "(16h à Paris)" is a time elsewhere.
    const bool elsewhere = isHour(reader, i, *part) && (reader.has(part->next, Meaning::RangeTo) ||
                                                        reader.has(part->next, Meaning::In));
    if (elsewhere || part->minutes > kLongestMinutes || part->days > 366)
        return std::nullopt;
    DurationMention mention;
    mention.span = {again ? i - 1 : i, part->next};
    mention.minutes = part->minutes;
    mention.days = part->days;
    return mention;
}

} // namespace pindle::conversion
