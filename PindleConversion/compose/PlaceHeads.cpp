#include <algorithm>

#include "PindleConversion/compose/PlaceFinder.h"

namespace pindle::conversion {

namespace {

/// What was done with it: "booked".
constexpr Meanings kDone{Meaning::PastVerb, Meaning::TitleTail};

/// "in", "the": what stands before a name.
bool leadsIn(const Reader &reader, std::uint32_t i) {
    return reader.has(i, Meaning::PlaceMarker) || reader.has(i, Meaning::The);
}

} // namespace

std::uint32_t PlaceFinder::nameHead(std::uint32_t i) const {
    constexpr std::uint32_t kReach = 6;
    const Field &field = m_document.fields[token(i).field];
    const Reader reader(m_document, i);
    std::uint32_t head = i;
    const bool numbered = i > field.begin + 1 && token(i - 1).kind == TokenKind::Number &&
                          reader.has(i - 2, Meaning::PlaceNoun);
    // "Lindelaan 33 te Heerde"
    const bool house = i > field.begin + 1 && reader.number(i - 1, 1, 999, 3) &&
                       !token(i - 1).used && token(i - 2).capital &&
                       reader.has(i - 2, Meaning::StreetWord) && m_document.sameSentence(i - 2, i);
    if (house && !isTitlePosition(field, i - 2))
        return i - 2;
    if (const std::uint32_t street = streetHead(reader, i); street < i)
        return isTitlePosition(field, street) ? i : street;
    if (i == field.begin || token(i - 1).unspaced || !(token(i - 1).capital || numbered))
        return i;
    for (std::uint32_t k = i; k > field.begin && i - k < kReach; --k) {
        const Token &before = token(k - 1);
        if (numbered && k == i)
            continue;
        const bool part = before.kind == TokenKind::Word && !before.used &&
                          m_document.sameSentence(k - 1, i) &&
                          (before.capital || reader.has(k - 1, Meaning::PlaceNoun) ||
                           reader.has(k - 1, Meaning::Of) || reader.has(k - 1, Meaning::The));
        if (!part)
            break;
        // "Lecture Hall at the Museum"
        const Sense *kind = reader.sense(k - 1, Meaning::PlaceNoun);
        const Sense *event = kind ? reader.sense(k - 1, Meaning::Event) : nullptr;
        if (kind && (!event || event->length < kind->length))
            head = k - 1;
    }
    // "A Field Guide to Lichens"
    const bool articled = head > field.begin && isArticled(reader, head - 1);
    // "Swan Lake at the Alhambra": the kind of place ends a name of something else.
    const bool ends = head + 1 == i && head > field.begin && token(head).upper() &&
                      token(head - 1).upper() && !token(head - 1).used && reader.word(head - 1) &&
                      !reader.has(head - 1, Meaning::PlaceNoun) && !leadsIn(reader, head - 1);
    return articled || ends || isTitlePosition(field, head) ? i : head;
}

std::uint32_t PlaceFinder::streetHead(const Reader &reader, std::uint32_t i) const {
    constexpr std::uint32_t kReach = 6;
    const std::uint32_t low = m_document.fields[token(i).field].begin;
    if (i < low + 3 || token(i - 1).used || token(i - 1).unspaced ||
        !(reader.number(i - 1, 1, 9999, 4) || token(i - 1).capital))
        return i;
    for (std::uint32_t k = i - 1; k > low && i - k < kReach; --k) {
        const Token &before = token(k - 1);
        if (before.used || before.unspaced || !m_document.sameSentence(k - 1, i))
            return i;
        // "12 rue des Chantiers à Nantes"
        const bool house = k > low + 1 && reader.number(k - 2, 1, 9999, 4) && !token(k - 2).used;
        if (k < i - 1 && before.word != 0 && reader.has(k - 1, Meaning::StreetWord) &&
            (house || token(i - 1).kind == TokenKind::Number))
            return house ? k - 2 : k - 1;
        if (!before.capital && !reader.symbol(k - 1, '.') && !reader.has(k - 1, Meaning::Of) &&
            !reader.has(k - 1, Meaning::The))
            return i;
    }
    return i;
}

bool PlaceFinder::isInn(const Reader &reader, std::uint32_t i) const {
    constexpr std::uint32_t kName = 2; ///< with its article
    const std::uint32_t field = m_document.fields[token(i).field].begin;
    if (i < field + kName + 1 || !token(i - 1).upper() || token(i - 1).used ||
        !reader.has(i - kName, Meaning::The) || token(i - kName).used ||
        reader.has(i - 1, Meaning::Event) || reader.language(i).capitalNouns)
        return false;
    const std::uint32_t before = i - kName - 1;
    return isBreak(reader, before) || token(before).used;
}

std::uint32_t PlaceFinder::spokenHead(const Reader &reader, std::uint32_t i) const {
    constexpr std::uint32_t kMostWords = 3;
    const Field &field = m_document.fields[token(i).field];
    if (!field.spoken || token(i).field == m_anchorField)
        return i;
    std::uint32_t head = i;
    while (head > field.begin && i - head <= kMostWords && !token(head - 1).used &&
           token(head - 1).capital && token(head - 1).kind == TokenKind::Word &&
           !reader.has(head - 1, Meaning::Event) && !reader.has(head - 1, Meaning::Greeting) &&
           !reader.has(head - 1, Meaning::Chatter) && !reader.has(head - 1, Meaning::PlaceStop) &&
           m_document.sameSentence(head - 1, i))
        --head;
    const bool starts =
        head == field.begin || token(head - 1).used || token(head - 1).symbol == ',';
    return starts ? head : i;
}

std::uint32_t PlaceFinder::nounBefore(const Reader &reader, std::uint32_t marker,
                                      std::uint32_t begin) const {
    constexpr std::uint32_t kReach = 5;
    const std::uint32_t low = m_document.fields[token(marker).field].begin;
    for (std::uint32_t i = marker; i > low && marker - i < kReach; --i) {
        const Token &before = token(i - 1);
        if (reader.symbol(i - 1, '.') && !before.used)
            continue;
        if (before.used || before.kind != TokenKind::Word || before.unspaced ||
            !m_document.sameSentence(i - 1, marker) || reader.has(i - 1, Meaning::PlaceStop) ||
            reader.has(i - 1, Meaning::Event) ||
            // "huisje geboekt op Texel"
            (reader.mayHave(i - 1, kDone) && !before.capital))
            return begin;
        if (!reader.has(i - 1, Meaning::PlaceNoun))
            continue;
        // "open house at the new school" is no house.
        const Sense *event = i > low + 1 ? reader.sense(i - 2, Meaning::Event) : nullptr;
        if (event && event->length > 1)
            return begin;
        // "function room at the Railway Arms"
        const Sense *longer = i > low + 1 ? reader.sense(i - 2, Meaning::PlaceNoun) : nullptr;
        if (longer && longer->length == 2 && !token(i - 2).used)
            return i - 2;
        if (reader.language(i).capitalNouns || !token(i - 1).upper())
            return i - 1;
        // "Swan Lake at the Alhambra", but "in Lecture Hall at the Museum"
        std::uint32_t head = i - 1;
        while (head > low && token(head - 1).upper() && reader.word(head - 1) &&
               !token(head - 1).used && !leadsIn(reader, head - 1))
            --head;
        const bool led = head > low && leadsIn(reader, head - 1);
        return head == i - 1 || led ? head : begin;
    }
    return begin;
}

} // namespace pindle::conversion
