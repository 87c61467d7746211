#include <algorithm>

#include "PindleConversion/compose/PlaceFinder.h"

namespace pindle::conversion {

bool PlaceFinder::leadsHeading(TokenSpan place) const {
    const Field &field = m_document.fields[token(place.begin).field];
    const Token &next = token(place.end);
    if (place.begin != field.begin || place.end >= m_choice.anchor() || next.capital ||
        next.kind != TokenKind::Word || next.used || next.unspaced)
        return false;
    const Reader reader(m_document, m_choice.anchor());
    static constexpr Meanings kGoesOn{Meaning::PlaceStop,   Meaning::PresentVerb, Meaning::Opening,
                                      Meaning::PlaceMarker, Meaning::RoleWord,    Meaning::PastVerb,
                                      Meaning::TitleTail,   Meaning::And};
    // "High School reunion"
    const Sense *kind = reader.sense(place.begin, Meaning::PlaceNoun);
    return !reader.mayHave(place.end, kGoesOn) && shapeOf(place).title &&
           !(kind && place.begin + kind->length >= place.end);
}

bool PlaceFinder::isName(TokenSpan place) const {
    const Field &field = m_document.fields[token(place.begin).field];
    if (leadsHeading(place))
        return true;
    // "订单已确认：枕河客栈"
    const bool announced = token(place.begin).unspaced && place.begin > field.begin &&
                           field.begin < m_choice.anchor() && token(place.begin - 1).symbol == ':';
    // "Pick-up: Cairns Airport, Thu 9 July"
    const bool from = field.label == Label::Start && place.begin == field.begin;
    return isStay() && !from && (announced || isTitlePosition(field, place.begin));
}

bool PlaceFinder::isStay() const {
    return m_choice.last && m_choice.endSpan.begin >= m_choice.dateSpan.end;
}

bool PlaceFinder::isTitlePosition(const Field &field, std::uint32_t begin) const {
    return begin == field.begin && !field.cell && field.begin <= m_choice.anchor();
}

int PlaceFinder::headingPenalty(std::uint32_t i) const {
    constexpr int kPenalty = 12;
    const Field &field = m_document.fields[token(i).field];
    const bool above = token(i).field < m_anchorField && token(field.begin).capital;
    return above || isNameBeforeDate(field, i) ? kPenalty : 0;
}

int PlaceFinder::topicPenalty(std::uint32_t i) const {
    constexpr int kPenalty = 14;
    constexpr std::uint8_t kPhrase = 3;
    const Field &field = m_document.fields[token(i).field];
    const Sense *lead = token(i).field < m_anchorField
                            ? Reader(m_document, i).sense(field.begin, Meaning::TitleLead)
                            : nullptr;
    const bool names =
        lead && lead->length >= kPhrase && token(field.begin + lead->length).symbol == ':';
    return names ? kPenalty : 0;
}

bool PlaceFinder::isNameBeforeDate(const Field &field, std::uint32_t i) const {
    if (token(i).field != m_anchorField || i > m_choice.anchor() || field.begin == i)
        return false;
    const Reader reader(m_document, field.end);
    const std::uint32_t end = nameEnd(reader, i + 1);
    return (isBreak(reader, end) || reader.symbol(end, '|')) && shapeOf({field.begin, end}).title;
}

bool PlaceFinder::isOfSubject(TokenSpan place, std::uint32_t marker) const {
    constexpr std::uint32_t kLongest = 12;
    const std::uint32_t verb = place.end;
    const Reader reader(m_document, m_choice.anchor());
    if (verb >= m_choice.anchor() || marker == place.begin || token(verb).capital ||
        token(verb).unspaced || !reader.has(verb, Meaning::PresentVerb) ||
        !m_document.sameSentence(verb, m_choice.anchor()))
        return false;
    // "The quiz at the Crown is on Friday" is named without its place.
    const auto isNamed = [&](std::uint32_t i) {
        return reader.has(i, Meaning::Event) && !reader.has(i, Meaning::GeneralEvent);
    };
    std::uint32_t begin = marker;
    const std::uint32_t low = m_document.fields[token(marker).field].begin;
    for (; begin > low && m_document.sameSentence(begin - 1, verb); --begin)
        if (token(begin - 1).kind != TokenKind::Word || token(begin - 1).used ||
            isNamed(begin - 1) || marker - begin > kLongest)
            break;
    // What stands before is more than an article.
    return reader.skip(begin, Meaning::The) < marker &&
           (begin == low || token(begin - 1).symbol == ':' ||
            !m_document.sameSentence(begin - 1, verb));
}

namespace {

/// Where the words that lead to a place at `begin` start, or `begin`.
std::uint32_t markerBefore(const Reader &reader, std::uint32_t begin) {
    constexpr std::uint32_t kLongestMarker = 4;
    const Document &document = reader.document();
    for (std::uint32_t length = std::min(kLongestMarker, begin); length > 0; --length) {
        const std::uint32_t first = begin - length;
        const Sense *marker = reader.sense(first, Meaning::PlaceMarker);
        if (!marker || marker->length != length || !document.sameSentence(first, begin))
            continue;
        // "Budget meeting in the annex" names the event, "..., meeting at the gate" does not.
        const Sense *event = length > 1 ? reader.sense(first, Meaning::Event) : nullptr;
        const bool named = first == 0 ||
                           (reader.word(first - 1) && !document.token(first - 1).used) ||
                           document.token(first - 1).kind == TokenKind::LineBreak;
        if (event && event->length < length && named)
            continue;
        return first;
    }
    return begin;
}

} // namespace

TokenSpan findPlace(Document &document, const Choice &choice) {
    PlaceFinder finder(document, choice);
    const TokenSpan place = finder.run();
    if (place.empty() || finder.isName(place))
        return place;
    const Reader reader(document, static_cast<std::uint32_t>(document.tokens.size()));
    const std::uint32_t begin = markerBefore(reader, place.begin);
    if (finder.isOfSubject(place, begin))
        return place;
    // "在居委会开会": what happens there may be the event's name.
    const std::uint32_t end = reader.has(place.end, Meaning::Event)
                                  ? place.end
                                  : reader.skip(place.end, Meaning::PlaceBehind);
    for (std::uint32_t i = begin; i < end; ++i)
        document.tokens[i].used = true;
    return place;
}

} // namespace pindle::conversion
