#include <algorithm>

#include "PindleConversion/clean/Utf8.h"
#include "PindleConversion/compose/PlaceFinder.h"
#include "PindleConversion/tokens/Unspaced.h"

namespace pindle::conversion {

void PlaceFinder::pieceBefore(const Reader &reader, const Field &field, TokenSpan part) {
    constexpr int kScore = 30;
    constexpr int kTown = 22;
    constexpr int kMostWords = 6;
    const Shape shape = shapeOf(part);
    // "Methodist Hall, Saturday 14th November" below the event's name.
    if (part.begin == field.begin) {
        if (part.end - part.begin > 1 && part.end + 1 == m_choice.dateSpan.begin &&
            isKindOfPlace(reader, part) && shape.title && !shape.event)
            offer(part, kScore, part.begin);
        return;
    }
    // "Hen do! Whitstable, Fri 4 - Sun 6 June": a stay of some days names its town.
    if (isTownOfStay(reader, part))
        return offer(part, kTown, part.begin);
    if (part.end - part.begin < 2 || !reader.symbol(part.begin - 1, ',') ||
        !reader.has(part.begin, Meaning::PlaceNoun) || reader.has(part.begin, Meaning::Event) ||
        shape.event || !shape.capital || shape.words > kMostWords ||
        nameEnd(reader, part.begin) != part.end)
        return;
    offer(part, kScore, part.begin);
}

std::uint32_t PlaceFinder::withHouse(const Reader &reader, const Field &field,
                                     TokenSpan part) const {
    constexpr std::uint32_t kLongestBranch = 3;
    constexpr std::uint32_t kLongestHouse = 6;
    static constexpr Meanings kOther{Meaning::Event, Meaning::Person, Meaning::Chatter,
                                     Meaning::LabelWord, Meaning::Greeting};
    const std::uint32_t begin = part.begin;
    if (begin < field.begin + 2 || part.end > begin + kLongestBranch || !token(begin).unspaced ||
        !token(begin).spaceBefore || token(begin - 1).used || !token(part.end - 1).isOneSign() ||
        !isPlaceNoun(reader, part.end - 1))
        return begin;
    std::uint32_t name = begin;
    bool unknown = false;
    do {
        --name;
        if (!reader.word(name) || !token(name).unspaced || token(name).used ||
            reader.mayHave(name, kOther) || begin - name > kLongestHouse)
            return begin;
        // "資料配布 渋谷店": ideographs alone may be anything in Japanese.
        const auto letter = decodeAt(m_document.slice(token(name)), 0).value;
        unknown =
            unknown || (token(name).word == 0 && (reader.language(name).script == Script::Chinese ||
                                                  unspacedScript(letter) != Unspaced::Ideograph));
    } while (name > field.begin && !token(name).spaceBefore);
    // The event is told before, or its day.
    return unknown && name > field.begin && m_choice.anchor() < begin ? name : begin;
}

bool PlaceFinder::isTownOfStay(const Reader &reader, TokenSpan part) const {
    constexpr std::uint32_t kMostWords = 3;
    const std::uint32_t begin = part.begin;
    // "Annual leave - Hemi - 21 Dec to 8 Jan": who.
    if (!m_choice.last || m_choice.startMinute || reader.symbol(begin - 1, '-') ||
        part.end + 1 != m_choice.dateSpan.begin || part.end - begin > kMostWords || begin < 2)
        return false;
    for (std::uint32_t i = begin; i < part.end; ++i)
        if (!token(i).upper() || token(i).word != 0)
            return false;
    // The event is named before the town.
    std::uint32_t before = begin - 1;
    while (before > 0 && token(before).kind == TokenKind::Symbol)
        --before;
    return before + 1 < begin && (reader.has(before, Meaning::Event) ||
                                  (before > 0 && reader.has(before - 1, Meaning::Event)));
}

void PlaceFinder::behindDash(const Reader &reader, const Field &field) {
    constexpr int kScore = 24;
    constexpr std::uint32_t kLongestHeading = 20;
    if (field.spoken || field.label != Label::None || field.end - field.begin > kLongestHeading)
        return;
    for (std::uint32_t i = field.begin + 1; i + 2 < field.end; ++i) {
        if (!reader.symbol(i, '-') || reader.glued(i) || reader.glued(i + 1))
            continue;
        std::uint32_t end = i + 1;
        while (end < field.end && reader.word(end) && !token(end).used)
            ++end;
        const Shape shape = shapeOf({i + 1, end});
        if (shape.title && !shape.event && isKindOfPlace(reader, {i + 1, end}))
            offer({i + 1, nameEnd(reader, i + 1)}, kScore, i + 1);
        return;
    }
}

void PlaceFinder::venueBeforeDash(const Reader &reader, const Field &field) {
    constexpr int kScore = 24;
    constexpr std::uint32_t kReach = 8;
    std::uint32_t dash = field.begin;
    while (dash < field.end && dash - field.begin < kReach && reader.word(dash) &&
           !token(dash).used)
        ++dash;
    const TokenSpan venue{field.begin, dash};
    if (dash < field.begin + 2 || !reader.symbol(dash, '-') || reader.glued(dash) ||
        reader.glued(dash + 1) || !reader.has(dash - 1, Meaning::PlaceNoun))
        return;
    const Shape shape = shapeOf(venue);
    std::uint32_t event = dash + 1;
    while (event < dash + kReach && reader.word(event) && !reader.has(event, Meaning::Event))
        ++event;
    if (shape.title && !shape.event && reader.has(event, Meaning::Event))
        offer(venue, kScore, field.begin);
}

void PlaceFinder::venueSpeaks(const Reader &reader, const Field &field) {
    constexpr int kScore = 22;
    constexpr std::uint32_t kReach = 8;
    std::uint32_t colon = field.begin;
    while (colon < field.end && colon - field.begin < kReach && !token(colon).used &&
           (reader.word(colon) || reader.symbol(colon, '.')))
        ++colon;
    static constexpr Meanings kSpeaks{Meaning::TitleLead, Meaning::Greeting, Meaning::Chatter};
    // "Ordination Dr. Haslinger: Ihr Termin"
    const bool names = token(colon + 1).capital && (!reader.has(colon + 1, Meaning::TitleLead) ||
                                                    reader.has(colon + 1, Meaning::The));
    if (colon < field.begin + 2 || !reader.symbol(colon, ':') || names ||
        token(colon + 1).unspaced || !m_choice.startMinute || !reader.mayHave(colon + 1, kSpeaks))
        return;
    const Shape shape = shapeOf({field.begin, colon});
    if (shape.title && shape.noun)
        offer({field.begin, colon}, kScore, field.begin);
}

void PlaceFinder::venueAbove(const Reader &reader, std::uint32_t f) {
    constexpr int kScore = 30;
    constexpr int kMostWords = 7;
    const Field &field = m_document.fields[f];
    if (isBookedHouse(reader, f))
        return offer({field.begin, field.end}, kScore, field.begin);
    const bool heading = f == 0 || m_document.fields[f - 1].ignored;
    const std::uint32_t end = beforeRegion(reader, field);
    const bool numbered = reader.number(end - 1, 1, 9999, 4) && !token(end - 1).used;
    const bool capital = token(field.begin).unspaced ||
                         (token(field.begin).upper() && (token(end - 1).upper() || numbered));
    // "2209 Juniper Way, Boise, ID"
    if (f > 0 && !field.spoken && token(field.begin).kind == TokenKind::Number &&
        field.label == Label::None && nameEnd(reader, field.begin) == field.end &&
        shapeOf({field.begin, field.end}).street)
        return offer({field.begin, field.end}, kScore, field.begin);
    if (f > 0 && isAddressLine(reader, field))
        return offer({field.begin, field.end}, kScore, field.begin);
    if (heading || field.spoken || !capital ||
        !(reader.has(token(field.begin).unspaced ? field.end - 1 : field.begin,
                     Meaning::PlaceNoun) ||
          isVenueLine(reader, field)) ||
        nameEnd(reader, field.begin) != end ||
        (m_document.fields[f - 1].line + 1 != field.line && !isBelowBooking(f)))
        return;
    const Shape shape = shapeOf({field.begin, end});
    if (numbered && !shape.street && !isVenueLine(reader, field))
        return;
    if (shape.words > 1 && shape.words <= kMostWords)
        offer({field.begin, field.end}, kScore, field.begin);
}

bool PlaceFinder::isBelowPromise(std::uint32_t f) const {
    constexpr std::uint32_t kReach = 8;
    if (f == 0 || !m_document.meanings.has(Meaning::PageHead) ||
        m_document.fields[f - 1].line > 1 ||
        shapeOf({m_document.fields[f].begin, m_document.fields[f].end}).noun)
        return false;
    const Field &before = m_document.fields[f - 1];
    return before.line != m_document.fields[f].line &&
           promises(m_document, {before.begin, std::min(before.end, before.begin + kReach)});
}

bool PlaceFinder::opensStreet(std::uint32_t i) const {
    const Token &word = token(i);
    if (word.word == 0 || !word.upper())
        return false;
    const auto senses = sensesOf(lexiconWord(word.word));
    return std::any_of(senses.begin(), senses.end(), [](const auto &sense) {
        return sense.meaning == Meaning::StreetWord && sense.value == 1;
    });
}

bool PlaceFinder::endsInStreet(std::uint32_t i) const {
    constexpr std::size_t kShortest = 4;
    constexpr std::size_t kLongest = 8;
    constexpr std::size_t kName = 3; ///< "Elm" of "Elmstraße"
    const std::string_view text = m_document.slice(token(i));
    if (!token(i).upper())
        return false;
    for (std::size_t length = kShortest; length <= kLongest && length + kName <= text.size();
         ++length) {
        const std::uint32_t tail = findWord(text.substr(text.size() - length));
        if (tail == 0)
            continue;
        const auto senses = sensesOf(lexiconWord(tail));
        const auto compounds = [](const Sense &sense) {
            return sense.meaning == Meaning::StreetWord && !sense.isOf(kSharedWords);
        };
        if (std::any_of(senses.begin(), senses.end(), compounds))
            return true;
    }
    return false;
}

bool PlaceFinder::isAddressLine(const Reader &reader, const Field &field) const {
    constexpr std::uint32_t kLongest = 16;
    constexpr std::uint32_t kLongestKind = 5;
    constexpr std::uint32_t kParticle = 3; ///< bytes: "das", "di"
    if (field.spoken || field.label != Label::None || field.end - field.begin > kLongest ||
        !token(field.begin).upper() || !token(field.end - 1).upper() || token(field.end - 1).used)
        return false;
    for (std::uint32_t i = field.begin; i + 2 < field.end; ++i) {
        if (i > field.begin && !reader.symbol(i - 1, '-') && !reader.symbol(i - 1, ','))
            continue;
        // "The Lower Third — 26 Mill Street, London"
        if (i > field.begin && reader.number(i, 1, 9999, 4) && !token(i).used &&
            nameEnd(reader, i) == field.end && shapeOf({i, field.end}).street)
            return true;
        const bool opens = opensStreet(i);
        std::uint32_t house = i + 1;
        while (opens && house < i + kLongestKind && reader.word(house) && !token(house).used &&
               (token(house).capital || token(house).end - token(house).begin <= kParticle))
            ++house;
        // "Rua das Janelas 41, Lisbon": behind the number stands the town.
        if (reader.number(house, 1, 9999, 4) && !token(house).used &&
            reader.symbol(house + 1, ',') && (opens ? house > i + 1 : endsInStreet(i)))
            return true;
    }
    return false;
}

std::uint32_t PlaceFinder::beforeRegion(const Reader &reader, const Field &field) const {
    constexpr std::uint32_t kLongest = 3; ///< bytes
    constexpr std::uint32_t kTokens = 3;  ///< with its brackets
    if (field.end < field.begin + kTokens + 1 || !reader.symbol(field.end - 1, ')') ||
        !reader.symbol(field.end - kTokens, '('))
        return field.end;
    const Token &region = token(field.end - 2);
    return region.upper() && region.end - region.begin <= kLongest &&
                   allCapitals(m_document.slice(region))
               ? field.end - kTokens
               : field.end;
}

bool PlaceFinder::isBelowBooking(std::uint32_t f) const {
    const Field &field = m_document.fields[f];
    const Field &before = m_document.fields[f - 1];
    const Reader reader(m_document, before.end);
    static constexpr Meanings kBooked{Meaning::GeneralEvent, Meaning::Chatter, Meaning::Greeting};
    return token(field.begin).unspaced && m_document.fields[m_anchorField].line == field.line + 1 &&
           reader.mayHave(before.begin, kBooked);
}

bool PlaceFinder::isBookedHouse(const Reader &reader, std::uint32_t f) const {
    constexpr std::uint32_t kMostTokens = 8;
    constexpr std::uint32_t kReach = 4;
    const Field &field = m_document.fields[f];
    if (!token(field.begin).unspaced || field.end - field.begin > kMostTokens || field.spoken ||
        field.cell || field.label != Label::None ||
        !(isPlaceNoun(reader, field.begin) || isPlaceNoun(reader, field.end - 1)))
        return false;
    // "ご予約内容の確認" above, or "次回のご予約" below.
    const auto tellsBooking = [&](std::uint32_t k) {
        const Field &other = m_document.fields[k];
        const Reader beside(m_document, other.end);
        const std::uint32_t begin = other.begin + (token(other.begin).symbol == '[' ? 1U : 0U);
        for (std::uint32_t i = begin; i < std::min(other.end, begin + kReach); ++i)
            if (beside.has(i, Meaning::GeneralEvent))
                return true;
        return false;
    };
    // but "ヨガ教室 体験"
    for (std::uint32_t i = field.begin; i < field.end; ++i)
        if (token(i).used || (reader.has(i, Meaning::Event) && !isPlaceNoun(reader, i)))
            return false;
    return (f > 0 && tellsBooking(f - 1)) || (f == 0 && m_anchorField > 1 && tellsBooking(1));
}

bool PlaceFinder::isVenueLine(const Reader &reader, const Field &field) const {
    const Field &anchor = m_document.fields[m_anchorField];
    const Shape shape = shapeOf({field.begin, field.end});
    // "Odeon Hall, Hobart"
    std::uint32_t comma = field.begin;
    while (comma < field.end && !reader.symbol(comma, ','))
        ++comma;
    if (anchor.line != field.line + 1 || m_choice.anchor() != anchor.begin)
        return false;
    // "Foreigners' Office Freiburg, counter 12"
    const std::uint32_t room = comma + 1;
    const Shape house = shapeOf({field.begin, comma});
    if (room + 2 == field.end && reader.has(room, Meaning::PlaceNoun) &&
        token(room + 1).kind == TokenKind::Number && house.title && house.noun &&
        (!house.event || isKindOfPlace(reader, {field.begin, comma})))
        return true;
    return isKindOfPlace(reader, {field.begin, comma}) && shape.title && !shape.event;
}

} // namespace pindle::conversion
