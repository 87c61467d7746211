#include "PindleConversion/compose/PlaceNames.h"

#include <algorithm>

#include "PindleConversion/clean/Utf8.h"
#include "PindleConversion/tokens/Unspaced.h"

namespace pindle::conversion {

Shape PlaceNames::shapeOf(TokenSpan span) const {
    Shape shape;
    const Reader reader(m_document, span.end);
    for (std::uint32_t i = span.begin; i < span.end; ++i) {
        if (const Sense *event = shape.event ? nullptr : reader.sense(i, Meaning::Event)) {
            // "bus loop", "dance studio"
            const Sense *kind = reader.sense(i, Meaning::PlaceNoun);
            shape.event = !(kind && kind->length > event->length) && !namesRoom(reader, i);
        }
        if (!reader.word(i))
            continue;
        const bool noun = isPlaceNoun(reader, i);
        const bool filler = reader.has(i, Meaning::The) || reader.has(i, Meaning::Of) ||
                            reader.has(i, Meaning::And) ||
                            (shape.words > 0 && reader.has(i, Meaning::PlaceMarker)) ||
                            joinsForeignName(reader, i, span.begin);
        const bool inNumber = reader.glued(i) && i > span.begin;
        shape.noun = shape.noun || noun;
        shape.street = shape.street || isStreet(reader, i, span.begin);
        shape.capital = shape.capital || token(i).capital;
        shape.title = shape.title && (token(i).capital || filler || inNumber);
        ++shape.words;
    }
    shape.title = shape.title && shape.words > 0 && shape.capital;
    return shape;
}

bool PlaceNames::joinsForeignName(const Reader &reader, std::uint32_t i,
                                  std::uint32_t begin) const {
    // "la" is a city as well.
    const auto isSmall = [&](std::uint32_t k) {
        const Token &small = token(k);
        return !small.capital && (small.senses == 0 || reader.has(k, Meaning::ZoneWord)) &&
               small.word != 0 && !small.unspaced && !small.used;
    };
    if (i == begin || !isSmall(i) || !reader.word(i + 1))
        return false;
    // "Masia de la Font": two such words may follow each other.
    const std::uint32_t before = isSmall(i - 1) && i > begin + 1 ? i - 2 : i - 1;
    const std::uint32_t next = isSmall(i + 1) ? i + 2 : i + 1;
    static constexpr Meanings kSmall{Meaning::The, Meaning::Of, Meaning::And};
    return token(before).capital && reader.word(next) && token(next).capital && !token(next).used &&
           std::ranges::any_of(sensesOf(lexiconWord(token(i).word)),
                               [](const Sense &sense) { return kSmall.has(sense.meaning); });
}

bool PlaceNames::leadsToPlace(const Reader &reader, std::uint32_t i) {
    // "老街的聚福楼": a name of some signs before its kind.
    constexpr std::uint32_t kLongestName = 4;
    for (std::uint32_t k = i; k <= i + kLongestName; ++k) {
        if (reader.has(k, Meaning::PlaceNoun))
            return true;
        if (!reader.word(k) || reader.token(k).senses != 0 || (k > i && !reader.token(k).unspaced))
            return false;
    }
    return false;
}

bool PlaceNames::startsAside(const Reader &reader, std::uint32_t i) {
    return reader.at(i) && reader.token(i).unspaced && reader.token(i).spaceBefore &&
           reader.has(i, Meaning::Chatter) && !reader.has(i, Meaning::PlaceNoun) &&
           !reader.has(i, Meaning::Event);
}

bool PlaceNames::opensWord(const Reader &reader, std::uint32_t i) {
    return goesOnUnknown(reader, i) && !reader.has(i, Meaning::Connector);
}

bool PlaceNames::isInsideName(const Reader &reader, std::uint32_t i) {
    return goesOnUnknown(reader, i) && reader.token(i + 1).isOneSign() && i > 0 &&
           reader.glued(i) && reader.token(i - 1).unspaced && reader.token(i - 1).senses == 0;
}

bool PlaceNames::goesOnUnknown(const Reader &reader, std::uint32_t i) {
    const auto isHiragana = [&](std::uint32_t k) {
        const std::string_view text = reader.document().slice(reader.token(k));
        return unspacedScript(decodeAt(text, 0).value) == Unspaced::Hiragana;
    };
    const Token *next = reader.at(i + 1);
    return reader.token(i).isOneSign() && next && next->unspaced && !next->spaceBefore &&
           next->senses == 0 && isHiragana(i) && isHiragana(i + 1);
}

bool PlaceNames::namesRoom(const Reader &reader, std::uint32_t i) {
    // "仁愛牙醫" is who works there.
    if (reader.token(i).unspaced && i > 0 && reader.glued(i) && isPlaceNoun(reader, i) &&
        reader.has(i, Meaning::Event) && reader.document().tokens[i - 1].word == 0)
        return true;
    const Sense *event = reader.sense(i, Meaning::Event);
    std::uint32_t next = i + (event ? event->length : 1U);
    // "悦动健身三楼"
    if (reader.has(next, Meaning::Number) && reader.glued(next))
        ++next;
    return reader.token(i).unspaced && reader.glued(next) && isPlaceNoun(reader, next);
}

bool PlaceNames::isPlaceNoun(const Reader &reader, std::uint32_t i) {
    if (!reader.has(i, Meaning::PlaceNoun))
        return false;
    const Token &sign = reader.token(i);
    const Token *next = reader.at(i + 1);
    return !(sign.isOneSign() && next && next->unspaced && !next->spaceBefore &&
             next->kind == TokenKind::Word && next->word == 0);
}

bool PlaceNames::isFiller(const Reader &reader, std::uint32_t i) {
    return reader.has(i, Meaning::The) || reader.has(i, Meaning::Of) ||
           reader.has(i, Meaning::And) || reader.has(i, Meaning::PlaceMarker) ||
           reader.has(i, Meaning::PlaceNoun);
}

bool PlaceNames::isStreet(const Reader &reader, std::uint32_t i, std::uint32_t begin) const {
    const Sense *street = reader.sense(i, Meaning::StreetWord);
    if (!street)
        return false;
    // "ul. Krzywa"
    const std::uint32_t at = reader.skipSymbol(i + street->length, '.');
    const Token *next = reader.at(at);
    const bool numbered = next && street->value == 1 && next->kind == TokenKind::Number;
    return i > begin || token(i).word == 0 || numbered ||
           (next && (next->capital || reader.has(at, Meaning::Of)));
}

bool PlaceNames::leadsToPurpose(const Reader &reader, std::uint32_t i) {
    const Sense *kind =
        reader.has(i, Meaning::PlaceStop) ? reader.sense(i - 1, Meaning::PlaceNoun) : nullptr;
    return kind && kind->length == 2 && !reader.token(i).unspaced && reader.word(i + 1) &&
           !reader.token(i + 1).used;
}

bool PlaceNames::goesOnWithoutName(const Reader &reader, std::uint32_t i) const {
    const Token &current = token(i);
    // "在信義威秀看電影": what happens there follows its name.
    if (current.unspaced && reader.has(i, Meaning::Event) && !reader.has(i, Meaning::PlaceNoun) &&
        !reader.has(i + 1, Meaning::PlaceNoun))
        return true;
    // Where words are not spaced, a space ends a name.
    if (current.unspaced && current.spaceBefore && token(i - 1).unspaced &&
        reader.has(i - 1, Meaning::PlaceNoun))
        return true;
    static constexpr Meanings kAside{Meaning::LabelWord, Meaning::Chatter, Meaning::RoleWord};
    if (current.unspaced && current.spaceBefore && reader.mayHave(i, kAside) &&
        !reader.has(i, Meaning::PlaceNoun))
        return true;
    // "in der Mensa essen": where nouns are capitals, a small word goes on with the sentence.
    // "im Klassenraum Karneval feiern"
    const bool kind = current.kind == TokenKind::Word && current.word != 0 && current.capital &&
                      reader.has(i, Meaning::Event) && !reader.has(i, Meaning::PlaceNoun) &&
                      reader.has(i - 1, Meaning::PlaceNoun) && !reader.has(i - 1, Meaning::Event) &&
                      reader.language(i).capitalNouns && current.spaceBefore &&
                      !(reader.word(i + 1) && reader.token(i + 1).capital);
    if (kind)
        return true;
    const bool small = current.kind == TokenKind::Word && !current.capital &&
                       token(i - 1).capital && token(i - 1).kind == TokenKind::Word &&
                       reader.language(i).capitalNouns && current.spaceBefore;
    return small && !isFiller(reader, i);
}

bool PlaceNames::stops(const Reader &reader, std::uint32_t i, std::uint32_t begin) const {
    const Token &current = token(i);
    if (current.used || current.kind == TokenKind::Link || current.kind == TokenKind::Mail ||
        current.sentence != token(begin).sentence)
        return true;
    constexpr char32_t kDegree = 0xB0; ///< "2° piano"
    if (current.kind == TokenKind::Symbol)
        return !(current.symbol == '&' || (current.symbol == kDegree && reader.glued(i)) ||
                 current.symbol == '\'' || current.symbol == '#' || current.symbol == '.' ||
                 // "サロン・ド・ルミエール"
                 (current.symbol == kMiddleDot && reader.glued(i) && reader.glued(i + 1) &&
                  token(i + 1).unspaced && !reader.has(i + 1, Meaning::Event)) ||
                 (current.symbol == '-' && reader.glued(i)) ||
                 ((current.symbol == '/' || current.symbol == '+') && reader.glued(i)));
    if (i == begin)
        return false;
    // "at the bay 20 min prior", "in the tower ten minutes ahead"
    if (reader.has(i + 1, Meaning::UnitWord) && !token(i + 1).capital && !current.unspaced &&
        !token(i + 1).unspaced && !current.capital &&
        (current.kind == TokenKind::Number || reader.has(i, Meaning::Number)))
        return true;
    // "in banca la settimana prima"
    if (reader.has(i, Meaning::The) && reader.has(i + 1, Meaning::UnitWord) && !current.unspaced &&
        !token(i + 1).capital && !token(i + 1).unspaced)
        return true;
    if (leadsToPurpose(reader, i))
        return false;
    if (goesOnWithoutName(reader, i))
        return true;
    // "駅の改札前"
    if (current.unspaced && reader.has(i, Meaning::Of) && leadsToPlace(reader, i + 1))
        return false;
    // "hal van blok B", "Rua das Acácias"
    static constexpr Meanings kKinds{Meaning::PlaceNoun, Meaning::StreetWord};
    if (reader.has(i, Meaning::Of) && reader.mayHave(i - 1, kKinds) && reader.word(i + 1) &&
        !token(i + 1).used && (token(i + 1).capital || reader.has(i + 1, Meaning::PlaceNoun)))
        return false;
    // "amphi A"
    const bool letter = current.end - current.begin == 1 && reader.has(i - 1, Meaning::PlaceNoun);
    // "Igreja de São Pedro"
    const bool ofName = i > begin + 1 && reader.has(i - 1, Meaning::Of) && token(i - 2).capital;
    const bool goesOn = token(i - 1).capital || reader.symbol(i - 1, ',') || letter || ofName;
    const bool stopWord =
        (reader.has(i, Meaning::PlaceStop) && !opensWord(reader, i) && !isInsideName(reader, i)) ||
        reader.has(i, Meaning::Greeting);
    if (!stopWord || !current.unspaced)
        return stopWord && !(current.capital && goesOn);
    // "多功能厅召开": a longer word ends the name, a lone sign may belong to it.
    return !(current.capital && goesOn) || !current.isOneSign() ||
           reader.has(i - 1, Meaning::PlaceNoun);
}

std::uint32_t PlaceNames::nameEnd(const Reader &reader, std::uint32_t begin) const {
    constexpr int kLongestAside = 8; ///< words
    std::uint32_t i = begin;
    const std::uint32_t limit = std::min(reader.end(), begin + kLongestName);
    while (i < limit && !stops(reader, i, begin))
        i = std::min(limit, behindKind(reader, i));
    // "at the hall the evening before"
    while (i > begin + 1 && reader.has(i - 1, Meaning::The) && !token(i - 1).upper() &&
           !token(i - 1).unspaced)
        --i;
    if (reader.symbol(i, '"') && i > begin)
        i = behindQuotedName(reader, i);
    if (reader.symbol(i, '(') && i < limit) {
        const std::uint32_t close = closing(reader, i);
        const Shape inner = shapeOf({i + 1, close});
        if (close != i && inner.words > 0 && inner.words <= kLongestAside &&
            (inner.noun || inner.street))
            i = close + 1;
    }
    while (i < limit && reader.symbol(i, ',')) {
        const std::uint32_t next = addressGoesOn(reader, i + 1, begin);
        if (next == i + 1)
            break;
        i = next;
    }
    // "ul. Polna, Krótka i Długa"
    const Token &other = token(i + 1);
    if (i < limit && reader.has(i, Meaning::And) && reader.word(i + 1) && other.capital &&
        !other.used && !reader.word(i + 2) && !reader.has(i + 1, Meaning::Event) &&
        shapeOf({begin, i}).street && reader.has(begin, Meaning::StreetWord))
        i += 2;
    // "Orchard Rise and Quince Close"
    else if (i < limit && reader.has(i, Meaning::And) && other.upper() && !other.used &&
             token(i + 2).upper() && !token(i + 2).used && reader.has(i + 2, Meaning::StreetWord) &&
             reader.has(i - 1, Meaning::StreetWord))
        i += 3;
    return i;
}

std::uint32_t PlaceNames::behindKind(const Reader &reader, std::uint32_t i) const {
    const Sense *kind = token(i).unspaced ? nullptr : reader.sense(i, Meaning::PlaceNoun);
    const std::uint32_t end = kind ? i + kind->length : i + 1;
    for (std::uint32_t k = i + 1; k < end; ++k)
        if (token(k).used || !m_document.sameSentence(i, k))
            return i + 1;
    return end;
}

std::uint32_t PlaceNames::behindQuotedName(const Reader &reader, std::uint32_t open) const {
    constexpr std::uint32_t kLongest = 6;
    // "im Theater "Faust"" is what is played there.
    if (token(open - 1).unspaced || reader.has(open - 1, Meaning::Event) ||
        !(reader.has(open - 1, Meaning::PlaceNoun) || token(open - 1).upper()) ||
        !token(open).spaceBefore || !token(open + 1).upper())
        return open;
    for (std::uint32_t i = open + 1; i < open + kLongest && reader.at(i); ++i) {
        if (reader.symbol(i, '"'))
            return i + 1;
        if (token(i).used || !m_document.sameSentence(i, open) || reader.has(i, Meaning::Event))
            return open;
    }
    return open;
}

std::uint32_t PlaceNames::addressGoesOn(const Reader &reader, std::uint32_t i,
                                        std::uint32_t begin) const {
    // "..., 5 à 7" tells hours.
    static constexpr Meanings kCounted{Meaning::UnitWord, Meaning::RangeTo, Meaning::HourMark};
    if (token(i).kind == TokenKind::Number && reader.word(i + 1) && reader.mayHave(i + 1, kCounted))
        return i;
    // "at the Grange, 7 for 7.30pm"
    if (token(i).kind == TokenKind::Number && reader.word(i + 1) &&
        reader.has(i + 1, Meaning::DateMarker))
        return i;
    // "Ferndale Reserve, oval's being reseeded"
    if (token(i).possessive && !token(i).capital)
        return i;
    const bool name =
        token(i).upper() && !token(i).used && reader.at(i + 1) && reader.token(i + 1).upper();
    std::uint32_t end = name ? i + 1 : i;
    const std::uint32_t limit = std::min(reader.end(), i + kLongestName);
    while (end < limit && !stops(reader, end, begin))
        ++end;
    const bool stop = (reader.has(i, Meaning::PlaceStop) && !name && !token(i).upper()) ||
                      (token(i).unspaced && reader.has(i, Meaning::Chatter));
    if (end == i || stop || reader.has(i, Meaning::Greeting))
        return i;
    // "Dorfplatz Obertrum, Beginn 11 Uhr", "Buchhandlung Seitenweise, Eintritt 8 €"
    static constexpr Meanings kMoment{Meaning::RoleWord, Meaning::TimeMarker};
    if ((end == i + 1 && token(end).used && reader.mayHave(i, kMoment) &&
         !reader.has(i, Meaning::PlaceNoun)) ||
        isCurrencySign(token(end).symbol))
        return i;
    // ", wesele w Dworku Lipowym"
    const Sense *event = reader.sense(i, Meaning::Event);
    if (event && (!token(i).upper() || reader.language(i).capitalNouns) && !token(i).unspaced &&
        !reader.has(i, Meaning::PlaceNoun) && reader.has(i + event->length, Meaning::PlaceMarker))
        return i;
    const Shape shape = shapeOf({i, end});
    if (shape.event && !shape.noun && !shape.street)
        return i;
    // "Las Vegas, hotel block closes"
    static constexpr Meanings kTells{Meaning::Opening, Meaning::PresentVerb};
    if (reader.mayHave(end - 1, kTells) && !token(end - 1).capital && !token(i).unspaced)
        return i;
    const bool number = token(i).kind == TokenKind::Number;
    // "Autohaus Ranft, Ersatzwagen bestellt" goes on with something else.
    const bool goesOn = reader.language(i).capitalNouns && end == i + 1 && reader.word(end) &&
                        !token(end).capital && !token(end).used && !shape.noun && !shape.street;
    if (goesOn)
        return i;
    const bool address = (number && (shape.street || shape.capital || shape.words == 0)) ||
                         (shape.street && shape.capital);
    // Scripts without spaces have no capitals that tell a name.
    const bool named = shape.title && !token(i).unspaced;
    const bool fits = address || named || shape.noun || shape.street;
    return fits && shape.words <= 5 ? end : i;
}

std::uint32_t PlaceNames::closing(const Reader &reader, std::uint32_t open) {
    for (std::uint32_t i = open + 1; i < open + kLongestName && reader.at(i); ++i)
        if (reader.symbol(i, ')'))
            return i;
    return open;
}

bool PlaceNames::joinsName(const Reader &reader, std::uint32_t i, std::uint32_t with) const {
    const Token &current = token(i);
    if (current.used || current.sentence != token(with).sentence)
        return false;
    if (current.kind == TokenKind::Number)
        return true;
    if (current.kind == TokenKind::Symbol)
        return current.symbol == '#' || current.symbol == '&' || ownsNext(reader, i) ||
               (current.symbol == kMiddleDot && reader.glued(i) && reader.glued(i + 1)) ||
               (current.symbol == '-' && reader.glued(i) && reader.glued(i + 1));
    if (i > 0 && token(i - 1).symbol == '-' && reader.glued(i))
        return true;
    // "枕河客栈 临水大床房": where words are not spaced, a space ends a name.
    if (i > with && current.unspaced && current.spaceBefore &&
        reader.has(i - 1, Meaning::PlaceNoun))
        return false;
    // "3号楼于": the sentence goes on.
    const bool over = reader.has(i, Meaning::DateMarker) ||
                      (i > with && reader.has(i, Meaning::PlaceStop) && !opensWord(reader, i));
    const bool joined =
        current.unspaced && !over && (current.capital || !reader.has(i, Meaning::TitleLead));
    // "やまびこ公園": a train's name may be a house's as well.
    const Sense *event = reader.sense(i, Meaning::Event);
    const bool train = event && current.unspaced && reader.glued(i + 1) && reader.word(i + 1) &&
                       event->value == static_cast<int>(EventKind::Travel) && i + 1 == with;
    return current.kind == TokenKind::Word &&
           (current.upper() || joined || reader.has(i, Meaning::PlaceNoun)) && (!event || train);
}

bool PlaceNames::ownsNext(const Reader &reader, std::uint32_t i) const {
    const Token *next = reader.at(i + 1);
    return reader.symbol(i, '\'') && reader.glued(i) && i > 0 && token(i - 1).capital && next &&
           next->spaceBefore && next->capital && !next->used;
}

bool PlaceNames::endsCompound(const Reader &reader, std::uint32_t i) {
    return i > 1 && reader.symbol(i - 1, '-') && reader.glued(i) && reader.glued(i - 1) &&
           !reader.has(i, Meaning::PlaceNoun) && !reader.token(i).capital;
}

} // namespace pindle::conversion
