#include "PindleConversion/layout/Sentences.h"

namespace pindle::conversion {

namespace {

/// "6. November", "vom 3. bis 5.": the full stop makes an ordinal.
bool isOrdinal(const Reader &reader, std::uint32_t i) {
    return reader.has(i, Meaning::OrdinalMark) &&
           (reader.has(i + 1, Meaning::Month) || reader.has(i + 1, Meaning::Weekday) ||
            (reader.word(i + 1) && !reader.token(i + 1).capital));
}

/// "Lindenstr. 11": a number that nothing but a mark follows belongs to the name.
bool isHouse(const Reader &reader, std::uint32_t i) {
    const Token *next = reader.at(i + 2);
    const bool open = next && (next->kind != TokenKind::Symbol || next->symbol == ':' ||
                               next->symbol == '.' || next->symbol == '-');
    return reader.token(i - 1).capital && reader.number(i + 1, 1, 999, 3) && !open;
}

/// "der 5. Klassen", ", 2. Stock": the number belongs to the noun behind it.
bool isCountedNoun(const Reader &reader, std::uint32_t begin, std::uint32_t i) {
    if (!reader.has(i, Meaning::OrdinalMark) || !reader.number(i - 1, 1, 99) || !reader.word(i + 1))
        return false;
    const bool place = reader.has(i + 1, Meaning::PlaceNoun) && !reader.has(i + 1, Meaning::Event);
    if (i - 1 == begin)
        return place || reader.has(i + 1, Meaning::Event);
    return (place && !reader.has(i - 2, Meaning::DateMarker)) ||
           (reader.has(i - 2, Meaning::The) && i >= begin + 3 && reader.word(i - 3) &&
            !reader.has(i - 3, Meaning::Weekday));
}

/// "Hafenstraße 12. Hüpfburg und Grill": the number of a house is no ordinal.
bool endsAddress(const Reader &reader, std::uint32_t begin, std::uint32_t i) {
    static constexpr Meanings kDate{Meaning::Month, Meaning::Weekday};
    return i >= begin + 2 && reader.number(i - 1, 1, 999, 3) && reader.token(i - 2).capital &&
           reader.has(i - 2, Meaning::StreetWord) && reader.word(i + 1) &&
           !reader.mayHave(i + 1, kDate);
}

/// "4518 Pecan Valley Dr. Baby clothes ...": behind a house number the abbreviation is no person's.
bool isStreetEnd(const Reader &reader, std::uint32_t begin, std::uint32_t i) {
    static constexpr Meanings kShort{Meaning::Person, Meaning::StreetWord};
    static constexpr Meanings kOther{Meaning::Meridiem, Meaning::Month};
    constexpr std::uint32_t kMostWords = 3;
    if (!reader.mayHave(i - 1, kShort) || !reader.token(i - 1).upper() ||
        !reader.token(i + 1).upper() || reader.has(i + 1, Meaning::PlaceNoun))
        return false;
    std::uint32_t name = i - 1;
    while (name > begin && i - name <= kMostWords && reader.word(name - 1) &&
           reader.token(name - 1).upper() && !reader.mayHave(name - 1, kOther))
        --name;
    return name < i - 1 && name > begin && reader.number(name - 1, 1, 99999, 5) &&
           reader.token(name).spaceBefore;
}

/// "VILLAGE GREEN >>> bring your own plate <<<"
bool opensAside(const Reader &reader, std::uint32_t begin, std::uint32_t i) {
    constexpr std::uint32_t kMarks = 3;
    return reader.symbol(i, '>') && i >= begin + kMarks && reader.symbol(i - 1, '>') &&
           reader.symbol(i - 2, '>') && reader.word(i - kMarks) && reader.word(i + 1);
}

bool endsSentence(const Reader &reader, std::uint32_t begin, std::uint32_t i) {
    if (opensAside(reader, begin, i))
        return true;
    if (reader.symbol(i, '!') || reader.symbol(i, '?') || reader.symbol(i, kIdeographicStop))
        return true;
    if (!reader.symbol(i, '.') || reader.glued(i + 1) || i == begin)
        return false;
    const Token &before = reader.document().tokens[i - 1];
    // "19.05. 16 Uhr", "19.1. - Fr 23.1."
    const bool dotted = i >= begin + 3 && before.kind == TokenKind::Number &&
                        reader.symbol(i - 2, '.') && reader.glued(i - 1) &&
                        reader.number(i - 3, 1, 31);
    if (dotted && reader.at(i + 1) &&
        (reader.token(i + 1).kind == TokenKind::Number || reader.symbol(i + 1, '-') ||
         isShape(reader.token(i + 1).symbol) || i == begin + 3))
        return false;
    if (before.kind == TokenKind::Word && isHouse(reader, i))
        return false;
    if (before.kind != TokenKind::Word)
        return endsAddress(reader, begin, i) ||
               (!isOrdinal(reader, i) && !isCountedNoun(reader, begin, i));
    // "Hall C." is no abbreviation.
    if (before.end - before.begin == 1 && i > begin + 1 && reader.token(i - 1).capital &&
        reader.has(i - 2, Meaning::PlaceNoun))
        return true;
    if (isStreetEnd(reader, begin, i))
        return true;
    // "à 11h. Spectacle à 13h"
    const bool hour = i > begin + 1 && reader.has(i - 1, Meaning::HourMark) &&
                      reader.token(i - 2).kind == TokenKind::Number && reader.word(i + 1) &&
                      reader.token(i + 1).capital;
    if (hour)
        return true;
    // "at 5 p.m. Wednesday", "at 5 p.m. EST"
    static constexpr Meanings kGoesOn{Meaning::Weekday, Meaning::ZoneAfterTime};
    if (before.end - before.begin == 1)
        // "at 5 p.m. Bring ..." ends one, "P.A. Day" does not.
        return i > begin + 2 && reader.symbol(i - 2, '.') && reader.at(i + 1) &&
               reader.token(i + 1).capital && !reader.mayHave(i + 1, kGoesOn) &&
               (!reader.token(i - 1).capital || reader.has(i - 3, Meaning::Meridiem));
    // "opens 1 Dec. The course itself"
    const bool article = reader.has(i + 1, Meaning::The) && reader.token(i + 1).capital &&
                         reader.has(i - 1, Meaning::Month);
    return article || !reader.has(i - 1, Meaning::Abbreviation);
}

} // namespace

void numberSentences(Document &document) {
    std::uint32_t sentence = 0;
    for (std::uint32_t f = 0; f < document.fields.size(); ++f) {
        const Field &field = document.fields[f];
        const Reader reader(document, field.end);
        ++sentence;
        for (std::uint32_t i = field.begin; i < field.end; ++i) {
            document.tokens[i].sentence = sentence;
            document.tokens[i].field = f;
            if (document.tokens[i].kind == TokenKind::Symbol &&
                endsSentence(reader, field.begin, i))
                ++sentence;
        }
    }
}

} // namespace pindle::conversion
