#include <algorithm>
#include <array>

#include "PindleConversion/compose/PlaceFinder.h"

namespace pindle::conversion {

std::uint32_t PlaceFinder::beforePerson(const Reader &reader, TokenSpan span) const {
    constexpr std::uint32_t kLongest = 2;
    static constexpr std::array kMoments{Label::When, Label::Date, Label::Time};
    // "前の時間帯"
    const Sense *label = reader.sense(span.end - 1, Meaning::LabelWord);
    if (label && !reader.has(span.end - 1, Meaning::PlaceNoun) &&
        std::any_of(kMoments.begin(), kMoments.end(),
                    [&](Label each) { return label->value == static_cast<int>(each); }))
        return span.begin;
    // "夕方で", "午後一で"
    // and "9時～12時の間"
    for (const Meaning meaning : {Meaning::PartOfDay, Meaning::NotAPlace})
        if (const Sense *other = reader.sense(span.begin, meaning);
            other && span.begin + other->length == span.end)
            return span.begin;
    // but "お蕎麦屋さん"
    if (token(span.end - 1).isOneSign() ||
        !reader.senseBefore(span.end, Meaning::Person, kLongest) ||
        reader.senseBefore(span.end, Meaning::PlaceNoun, kLongest + 1))
        return span.end;
    // "仁康口腔门诊部郭医生": a kind of place ends before the name.
    const auto endsPlace = [&](std::uint32_t i) {
        return i + 1 < span.end && !reader.has(i, Meaning::Person) && !token(i - 1).isOneSign() &&
               isPlaceNoun(reader, i - 1);
    };
    std::uint32_t name = span.end - 1;
    while (name > span.begin && !token(name).spaceBefore && !endsPlace(name))
        --name;
    return name;
}

std::uint32_t PlaceFinder::beforePhone(const Reader &reader, TokenSpan span) const {
    constexpr std::uint32_t kShortest = 7; ///< digits
    for (std::uint32_t i = span.begin + 1; i < span.end; ++i) {
        const Sense *label = reader.sense(i, Meaning::LabelWord);
        if (!label || label->value != static_cast<int>(Label::Sender) || !token(i).spaceBefore)
            continue;
        std::uint32_t number = i + label->length;
        for (const char32_t mark : {U'.', U':', U'+', U'('})
            number = reader.skipSymbol(number, mark);
        const Token &digits = token(number);
        const bool parted = token(number + 1).symbol == '-' || token(number + 1).symbol == ')';
        if (digits.kind == TokenKind::Number && (digits.digits >= kShortest || parted))
            return i;
    }
    return span.end;
}

bool PlaceFinder::isWork(TokenSpan span) const {
    return span.begin > 0 && token(span.begin - 1).symbol == '"' &&
           m_document.slice(token(span.begin - 1)) == "\u300A";
}

std::uint32_t PlaceFinder::beforeSeat(const Reader &reader, TokenSpan part) const {
    for (std::uint32_t i = part.begin; i + 2 < part.end; ++i) {
        const Sense *counter = token(i).kind == TokenKind::Number && token(i + 1).isOneSign()
                                   ? reader.sense(i + 1, Meaning::Counter)
                                   : nullptr;
        if (!counter || counter->value != 1 || token(i + 2).kind != TokenKind::Number ||
            !reader.glued(i + 1) || !reader.glued(i + 2))
            continue;
        while (i > part.begin && !token(i).spaceBefore)
            --i;
        return i;
    }
    return part.end;
}

bool PlaceFinder::closesName(TokenSpan span) const {
    if (token(span.end - 1).symbol != '"')
        return false;
    for (std::uint32_t i = span.begin + 1; i + 1 < span.end; ++i)
        if (token(i).symbol == '"')
            return true;
    return false;
}

bool PlaceFinder::opensName(TokenSpan span) const {
    const std::uint32_t close = quoteClosing(Reader(m_document, span.end), span.begin);
    return close != span.begin && close + 1 < span.end;
}

bool PlaceFinder::dangles(const Reader &reader, TokenSpan span) const {
    const Token &last = token(span.end - 1);
    // "場所は5階のけやき会議室で。"
    if (last.isOneSign() && span.end > span.begin + 1 &&
        !reader.has(span.end - 1, Meaning::PlaceNoun))
        return reader.has(span.end - 1, Meaning::PlaceBehind);
    // "chega a Viseu no sábado"
    const bool leadsOn = token(span.end).used && reader.has(span.end - 1, Meaning::DateMarker) &&
                         !reader.has(span.end - 1, Meaning::PlaceNoun);
    return span.end > span.begin + 1 && reader.word(span.end - 1) && !last.capital &&
           !last.unspaced && (leadsOn || reader.has(span.end - 1, Meaning::Of));
}

std::uint32_t PlaceFinder::behindBranch(const Reader &reader, std::uint32_t begin,
                                        std::uint32_t end) const {
    if (!token(begin).unspaced || end == begin || !reader.symbol(end, '(') ||
        !token(end - 1).unspaced)
        return end;
    const std::uint32_t close = closing(reader, end);
    for (std::uint32_t i = end + 1; i < close; ++i)
        if (token(i).used || !token(i).unspaced)
            return end;
    return close > end + 1 && isPlaceNoun(reader, close - 1) ? close + 1 : end;
}

} // namespace pindle::conversion
