#include <algorithm>

#include "PindleConversion/compose/PlaceFinder.h"

namespace pindle::conversion {

namespace {

constexpr std::uint32_t kLongestStreet = 6; ///< tokens with the number

} // namespace

bool PlaceFinder::isKindOfPlace(const Reader &reader, TokenSpan part) {
    constexpr std::uint32_t kMost = 5;
    std::uint32_t last = part.end - 1;
    if (last > part.begin && reader.token(last).kind == TokenKind::Number)
        --last;
    return last > part.begin && part.end - part.begin <= kMost && reader.word(last) &&
           !reader.token(last).unspaced && reader.has(last, Meaning::PlaceNoun) &&
           !reader.has(last - 1, Meaning::Of) && !reader.has(last - 1, Meaning::The);
}

bool PlaceFinder::isNamedKind(const Reader &reader, TokenSpan part) {
    if (!reader.has(part.begin, Meaning::PlaceNoun) || !reader.token(part.begin).capital ||
        part.end < part.begin + 2)
        return false;
    for (std::uint32_t i = part.begin + 1; i < part.end; ++i)
        if (!reader.word(i) || !reader.token(i).capital || reader.has(i, Meaning::Event))
            return false;
    return true;
}

bool PlaceFinder::isTradeOfPlace(const Reader &reader, TokenSpan part) {
    const std::uint32_t trade = part.begin + 1;
    const std::uint32_t name = reader.skip(reader.skip(trade + 1, Meaning::Of), Meaning::The);
    if (name >= part.end || !reader.word(trade) || reader.token(trade).capital ||
        !reader.word(name) || !reader.token(name).capital)
        return false;
    for (std::uint32_t i = name; i < part.end; ++i)
        if (reader.has(i, Meaning::Event))
            return false;
    return true;
}

bool PlaceFinder::closesLowNote(const Reader &reader, TokenSpan part) const {
    const Field &field = m_document.fields[token(part.begin).field];
    if (part.end != field.end || part.end < part.begin + 2 || part.begin <= field.begin ||
        !token(part.begin - 1).used || !reader.has(part.begin, Meaning::PlaceNoun) ||
        token(field.begin).capital)
        return false;
    for (std::uint32_t i = part.begin + 1; i < part.end; ++i)
        if (!reader.word(i) || token(i).word != 0)
            return false;
    return m_choice.anchor() > field.begin && reader.word(field.begin);
}

bool PlaceFinder::isNamedBefore(std::uint32_t i) const {
    const Field &field = m_document.fields[token(i).field];
    const std::uint32_t end = std::max(m_choice.anchor(), m_choice.timeSpan.begin);
    const Reader reader(m_document, std::min(end, i));
    for (std::uint32_t k = field.begin; k < std::min(end, i); ++k)
        if (reader.has(k, Meaning::Event) && !token(k).used)
            return true;
    return false;
}

bool PlaceFinder::opensWithPlace(const Reader &reader, TokenSpan part) const {
    const std::uint32_t begin = part.begin;
    if (isKindOfPlace(reader, part) || isNamedKind(reader, part) || closesLowNote(reader, part))
        return true;
    if (!reader.has(begin, Meaning::PlaceNoun) && !reader.has(begin, Meaning::StreetWord))
        return false;
    const Sense *event = reader.sense(begin, Meaning::Event);
    if (!event)
        return reader.has(begin + 1, Meaning::Of) || reader.has(begin + 1, Meaning::The) ||
               leadsToPurpose(reader, begin + 1) || isTradeOfPlace(reader, part);
    // "revisão da moto, 9 e meia da manhã, oficina do Tião": where an event was named.
    if (event->length == 1 && part.end == begin + 3 && reader.has(begin + 1, Meaning::Of) &&
        token(begin + 2).upper() && isNamedBefore(begin))
        return true;
    // "corso Garibaldi 101": a street, though a course is called so too.
    const Sense *street = reader.sense(begin, Meaning::StreetWord);
    if (street && street->value == 1 && !token(begin).capital && token(begin + 1).upper() &&
        part.end > begin + 2 && part.end <= begin + kLongestStreet &&
        token(part.end - 1).kind == TokenKind::Number)
        return true;
    // "Pub Quiz" is no pub.
    const std::uint32_t last = part.end - (reader.symbol(part.end - 1, '.') ? 2 : 1);
    return token(begin).upper() && begin < last && token(last).upper() &&
           !reader.has(last, Meaning::Event) && event->length == 1;
}

} // namespace pindle::conversion
