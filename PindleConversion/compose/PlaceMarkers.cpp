#include <algorithm>

#include "PindleConversion/compose/PlaceFinder.h"
#include "PindleConversion/tokens/Tokenizer.h"

namespace pindle::conversion {

namespace {

constexpr int kFrom = 30;    ///< where something comes from
constexpr int kUnnamed = 46; ///< "the park"

/// Who or what one goes to.
constexpr Meanings kPlaceWords{Meaning::PlaceNoun, Meaning::StreetWord, Meaning::Person};

} // namespace

void PlaceFinder::marked(const Reader &reader, std::uint32_t i, const Sense &marker) {
    // "à La Rochelle": a capital article belongs to the name.
    const std::uint32_t last = i + marker.length - 1;
    const bool article = marker.length > 1 && token(last).capital && reader.has(last, Meaning::The);
    const std::uint32_t begin = article ? last : last + 1;
    if (!reader.at(begin) || isInCompound(reader, i, begin) || endsPhrase(reader, i) ||
        refusesPlace(reader, begin) || token(begin).used)
        return;
    // but "chez Madame Poivre"
    if (reader.has(begin, Meaning::Greeting) &&
        !(reader.has(begin, Meaning::Person) && reader.word(begin + 1) &&
          token(begin + 1).upper() && !token(begin + 1).used))
        return;
    const std::uint32_t known = withoutDeed(reader, begin, nameEnd(reader, begin));
    const TokenSpan name{begin, withStreet(reader, {begin, known})};
    if (markedQuote(reader, i, marker, name))
        return;
    // "answers in April"
    if (reader.has(begin, Meaning::Month) && reader.skipSymbol(begin + 1, '.') >= name.end)
        return;
    if (isOfPerson(reader, i, begin))
        return;
    if (name.empty() || leadsToOther(reader, i, name) || offerWholeLine(reader, i, name.end) ||
        isAtEvent(reader, name) ||
        (reader.has(begin, Meaning::ZoneWord) && isWhereOthersAre(reader, i)))
        return;
    const Shape shape = shapeOf(name);
    if (isTownBehind(i, name, shape)) {
        m_best.end = name.end;
        while (isEdgeMark(token(m_best.end - 1)))
            --m_best.end;
        return;
    }
    // "Abbazia di Santa Maria al Bosco", "Boekhandel Letterlust te Leuven" are one name.
    if (shape.capital || token(begin).kind == TokenKind::Number) {
        if (const std::uint32_t head = spokenHead(reader, i); head < i)
            return offer({head, name.end}, 58, head);
        // "from Orchard Rd to Gatwick" names two.
        const bool route = reader.has(i, Meaning::RangeTo) && reader.has(i, Meaning::ToWord);
        if (const std::uint32_t head = route || isVerb(reader, i) ? i : nameHead(i); head < i)
            return offer({head, name.end}, 58, head);
        if (isInn(reader, i))
            return offer({i - 2, name.end}, 58, i);
    }
    const bool behindTime = i > 0 && token(i - 1).used && shape.title;
    if (marker.value == 1 && i > 0 && token(i).word != 0 && isFrom(reader, i) && !shape.noun &&
        !behindTime)
        return;
    // "pense au rdv véto de Minette"
    if (!shape.noun && !shape.street && reader.has(begin, Meaning::Event) && !token(begin).capital)
        return;
    // "Frogs in your garden pond: an online talk": what is talked about.
    if (reader.symbol(name.end, ':') && i < m_choice.anchor() && !shape.capital && heldOnline())
        return;
    if (marker.value == 1)
        offerBehindStrong(reader, i, name, shape);
    else if (marker.value == 0)
        offerBehindWeak(reader, i, marker, name, shape);
}

bool PlaceFinder::isTownBehind(std::uint32_t i, TokenSpan name, const Shape &shape) const {
    constexpr int kMostWords = 3;
    if (m_best.empty() || m_best.end + 1 != i || token(i - 1).symbol != ',' ||
        name.begin != i + 1 || !shape.title || shape.event || shape.noun || shape.street ||
        shape.words > kMostWords)
        return false;
    const Shape before = shapeOf(m_best);
    return before.noun || before.street;
}

bool PlaceFinder::isVerb(const Reader &reader, std::uint32_t i) {
    const Sense *marker = reader.sense(i, Meaning::PlaceMarker);
    const Sense *verb =
        marker && marker->length > 1 ? reader.sense(i, Meaning::TitleTail) : nullptr;
    return verb && verb->length == marker->length;
}

bool PlaceFinder::isInCompound(const Reader &reader, std::uint32_t i, std::uint32_t next) const {
    const auto joins = [&](std::uint32_t at) {
        return reader.symbol(at, '-') && reader.glued(at) && reader.glued(at + 1);
    };
    return joins(next) || (i > 0 && joins(i - 1));
}

bool PlaceFinder::countsPlaces(const Reader &reader, std::uint32_t begin) const {
    constexpr std::uint32_t kShortest = 3; ///< bytes; "a" is an article
    const Sense *count = reader.sense(begin, Meaning::Number);
    return count && reader.word(begin) && !token(begin).capital && !token(begin).unspaced &&
           !reader.language(begin).capitalNouns && !reader.has(begin, Meaning::The) &&
           token(begin).end - token(begin).begin >= kShortest &&
           !reader.token(begin + count->length).capital;
}

std::uint32_t PlaceFinder::withStreet(const Reader &reader, TokenSpan name) const {
    const Sense *on = reader.sense(name.end, Meaning::PlaceMarker);
    if (name.empty() || !on || on->value != 0 ||
        !(reader.has(name.begin, Meaning::The) || reader.has(name.begin, Meaning::NotAPlace)) ||
        !reader.has(name.end, Meaning::DateMarker) || reader.has(name.end, Meaning::TimeMarker) ||
        token(name.end - 1).capital)
        return name.end;
    // "my old place on Dunlap"
    const Sense *kind = reader.sense(name.end - 2, Meaning::PlaceNoun);
    if (!reader.has(name.end - 1, Meaning::PlaceNoun) &&
        !(name.end > name.begin + 2 && kind && kind->length == 2))
        return name.end;
    std::uint32_t end = name.end + on->length;
    while (reader.word(end) && token(end).upper() && !token(end).used)
        ++end;
    return end > name.end + on->length ? end : name.end;
}

std::uint32_t PlaceFinder::withoutDeed(const Reader &reader, std::uint32_t begin,
                                       std::uint32_t end) const {
    std::uint32_t last = end;
    while (last > begin && token(last - 1).unspaced && token(last - 1).senses == 0)
        --last;
    // In Japanese the name may follow: "居酒屋ほまれ".
    const bool kind = reader.language(begin).script == Script::Chinese && last > begin + 1 &&
                      last < end && token(last - 1).unspaced && isPlaceNoun(reader, last - 1) &&
                      !token(last).spaceBefore;
    return kind ? last : end;
}

bool PlaceFinder::leadsToOther(const Reader &reader, std::uint32_t i, TokenSpan name) const {
    const std::uint32_t begin = name.begin;
    if (countsPlaces(reader, begin))
        return true;
    // "to call the garage about the clutch": a deed.
    static constexpr Meanings kNames{Meaning::The,         Meaning::PlaceNoun, Meaning::NotAPlace,
                                     Meaning::PlaceMarker, Meaning::Of,        Meaning::Number};
    if (token(begin).kind == TokenKind::Word && token(begin).word != 0 && !token(begin).capital &&
        !token(begin).unspaced && reader.has(begin + 1, Meaning::The) &&
        token(begin + 1).spaceBefore &&
        (reader.has(begin, Meaning::TitleLead) || reader.has(begin, Meaning::Event)) &&
        !reader.mayHave(begin, kNames))
        return true;
    if (token(begin).kind == TokenKind::Number && reader.has(begin + 1, Meaning::UnitWord))
        return true;
    // "voor het 10-minutengesprek"
    if (isCounted(reader, begin) || isInsideWord(i))
        return true;
    // "去打疫苗": what one goes to do.
    const std::uint32_t verb = reader.has(begin, Meaning::PlaceStop) ? begin + 1 : begin;
    // "在聚福楼": a sign that is a kind of event alone may begin a name.
    const bool sign = token(begin).isOneSign() && isPlaceNoun(reader, name.end - 1);
    if (token(begin).unspaced && !sign && reader.has(verb, Meaning::Event) &&
        !isPlaceNoun(reader, verb))
        return true;
    // "Tickets £10 from the bar"
    constexpr std::uint32_t kReach = 3;
    for (std::uint32_t k = i; isFrom(reader, i) && k > 0 && i - k < kReach; --k)
        if (isCurrencySign(token(k - 1).symbol))
            return true;
    // "From the office: ..." tells who writes, "10am from the car park:" where a list begins.
    return isFrom(reader, i) && reader.symbol(name.end, ':') &&
           (m_choice.timeSpan.empty() || !m_document.sameSentence(i, m_choice.timeSpan.begin));
}

bool PlaceFinder::isFetched(const Reader &reader, std::uint32_t i) const {
    constexpr std::uint32_t kReach = 8;
    static constexpr Meanings kSetsOut{Meaning::Event, Meaning::RoleWord, Meaning::TimeMarker};
    if (token(i).unspaced || m_document.sameSentence(i, m_choice.anchor()) ||
        (!m_choice.timeSpan.empty() && m_document.sameSentence(i, m_choice.timeSpan.begin)))
        return false;
    const std::uint32_t low = m_document.fields[token(i).field].begin;
    std::uint32_t k = i;
    for (; k > low && i - k < kReach && m_document.sameSentence(k - 1, i); --k) {
        if (!token(k - 1).used && !reader.mayHave(k - 1, kSetsOut))
            continue;
        // but "Coaches leave from the school"
        const Sense *verb = reader.sense(k - 1, Meaning::Event);
        if (!verb)
            verb = reader.sense(k - 1, Meaning::RoleWord);
        return verb && k - 1 + verb->length < i &&
               (k - 1 == low || !m_document.sameSentence(k - 2, i));
    }
    return k < i;
}

bool PlaceFinder::isWhereOthersAre(const Reader &reader, std::uint32_t i) const {
    constexpr std::uint32_t kReach = 5;
    if (m_choice.zoneSpan.empty())
        return false;
    const std::uint32_t low = m_document.fields[token(i).field].begin;
    // "That's 9 on Monday for Ngaire in Wellington"
    if (i > low + 1 && token(i - 1).upper() && reader.has(i - 2, Meaning::DurationMark) &&
        !m_document.sameSentence(i, m_choice.anchor()))
        return true;
    for (std::uint32_t k = i; k > low && i - k < kReach; --k) {
        if (token(k - 1).kind != TokenKind::Word || token(k - 1).used)
            return false;
        if (reader.has(k - 1, Meaning::Person) && !token(k - 1).capital)
            return true;
    }
    return false;
}

bool PlaceFinder::isInsideWord(std::uint32_t i) const {
    if (i == 0 || !token(i).isOneSign() || !token(i - 1).isOneSign() || token(i).spaceBefore ||
        token(i - 1).used || token(i - 1).senses > 0)
        return false;
    return i == 1 || token(i - 1).spaceBefore || token(i - 2).kind != TokenKind::Word ||
           token(i - 2).used;
}

bool PlaceFinder::isAtEvent(const Reader &reader, TokenSpan name) const {
    const std::uint32_t last = name.end - 1;
    // "convoqués à l'assemblée générale de la résidence": whose event it is.
    const Sense *event = reader.sense(name.begin, Meaning::Event);
    if (event && !token(name.begin).capital && !token(name.begin).unspaced &&
        !reader.has(name.begin, Meaning::PlaceNoun) &&
        reader.has(name.begin + event->length, Meaning::Of))
        return true;
    // "letzte Probe vorm Konzert"
    if (event && event->length == 1 && token(last).word != 0 && name.end == name.begin + 1 &&
        reader.language(last).capitalNouns && !reader.mayHave(last, kPlaceWords))
        return true;
    if (!reader.has(name.begin, Meaning::The) || reader.has(last, Meaning::PlaceNoun))
        return false;
    const std::uint32_t first = reader.skip(name.begin, Meaning::The);
    if (token(first).capital)
        return (first < last || isAcronym({first, name.end})) && reader.has(last, Meaning::Event);
    return reader.has(first, Meaning::Event) && !reader.has(first, Meaning::PlaceNoun);
}

void PlaceFinder::offerBehindStrong(const Reader &reader, std::uint32_t i, TokenSpan name,
                                    const Shape &shape) {
    // "offers of trailers to Bob at the forge": where someone is to be found.
    if (i > 1 && token(i - 1).upper() && token(i - 1).word == 0 &&
        reader.has(i - 2, Meaning::RangeTo) && !m_document.sameSentence(i, m_choice.anchor()) &&
        !reader.has(i, Meaning::RangeTo))
        return;
    const bool determined = reader.has(name.begin, Meaning::The);
    const bool named = shape.capital || token(name.begin).kind == TokenKind::Number;
    const bool known = shape.noun || shape.street;
    // "Online-Vortrag: Wärmepumpe im Altbau - Do, 11.06."
    if (!known && i < m_choice.anchor() && headingPenalty(i) > 0 && heldOnline())
        return;
    // "Potluck @ Rosa's"
    if (named && !known && shape.words == 1 && token(name.begin).possessive)
        offer(name, 50, i);
    else if (named || known)
        offer({isVerb(reader, i) ? name.begin : nounBefore(reader, i, name.begin), name.end},
              isFrom(reader, i) ? kFrom
              : known           ? (named ? 58 : kUnnamed) - headingPenalty(i) - topicPenalty(i)
                                : 50 - 2 * headingPenalty(i),
              i);
    else if ((token(name.begin).possessive && shape.words <= 3) || isHomeOfKin(reader, name) ||
             isAtKin(reader, i, name))
        offer(name, 40, i);
    else if (determined && !shape.event && shape.words <= 4 && shape.words > 1)
        offer(name, 30, i);
}

bool PlaceFinder::isAtKin(const Reader &reader, std::uint32_t marker, TokenSpan name) {
    constexpr std::uint32_t kMostWords = 2;
    static constexpr Meanings kOther{Meaning::RangeTo, Meaning::RangeFrom, Meaning::Of};
    const Sense *kin = reader.sense(name.begin, Meaning::Person);
    return kin && kin->value == kKin && kin->length == 1 && name.end <= name.begin + kMostWords &&
           !reader.token(name.begin).unspaced && !reader.mayHave(marker, kOther);
}

bool PlaceFinder::isHomeOfKin(const Reader &reader, TokenSpan name) const {
    const std::uint32_t last = name.end - 1;
    std::string_view owner = m_document.slice(token(last));
    if (name.empty() || token(last).unspaced || owner.size() < 2 || owner.back() != 's')
        return false;
    const std::uint32_t begin =
        reader.skip(name.begin, Meaning::NotAPlace) == name.begin + 1 && name.begin < last
            ? name.begin + 1
            : name.begin;
    // "aunt carols", though carols are sung
    const Sense *kin = reader.sense(begin, Meaning::Person);
    if (begin + 1 == last)
        return kin && kin->value == kKin && kin->length == 1;
    // "my nans"
    owner.remove_suffix(1);
    const std::uint32_t word =
        begin == last && token(last).word == 0 ? findWord(foldWord(owner)) : 0;
    return word != 0 && std::ranges::any_of(sensesOf(lexiconWord(word)), [&](const Sense &sense) {
               return sense.meaning == Meaning::Person && sense.value == kKin &&
                      sense.isOf(token(last).language);
           });
}

void PlaceFinder::offerBehindWeak(const Reader &reader, std::uint32_t i, const Sense &marker,
                                  TokenSpan name, const Shape &shape) {
    const bool known = shape.noun || shape.street;
    // "Closing on the house"
    const bool unnamed = reader.has(name.begin, Meaning::The) && !shape.capital &&
                         shape.words <= 2 && token(name.end - 1).kind != TokenKind::Number;
    if (!known && reader.has(name.begin, Meaning::The) && shape.words <= 3 && i > 0 &&
        token(i - 1).used && reader.has(i, Meaning::In))
        offer(name, 24, i);
    else if (isWeakPlace(reader, i, marker, shape))
        offer({nounBefore(reader, i, name.begin), name.end},
              (known ? (unnamed ? 32 : 38) : 24) - headingPenalty(i) + addressBonus(name), i);
}

namespace {

/// "Pensez à votre carte": a verb and its particle call for something.
bool opensSentence(const Reader &reader, std::uint32_t i) {
    return i > 0 && reader.token(i).upper() && !reader.word(i - 1) &&
           !reader.document().sameSentence(i - 1, i);
}

} // namespace

bool PlaceFinder::endsPhrase(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kPhraseReach = 8;
    const auto ends = [&](Meaning meaning, std::uint32_t back) {
        const Sense *phrase = reader.sense(i - back, meaning);
        return phrase && phrase->length == back + 1;
    };
    const auto covers = [&](Meaning meaning, std::uint32_t back) {
        const Sense *phrase = reader.sense(i - back, meaning);
        return phrase && phrase->length > back;
    };
    for (std::uint32_t back = 1; back < std::min(i + 1, kPhraseReach); ++back)
        // "mestrado em Geografia"
        // and "pot de départ de Gérard".
        if (ends(Meaning::Chatter, back) || ends(Meaning::AsideLead, back) ||
            covers(Meaning::Event, back) || (back > 2 && ends(Meaning::TitleLead, back)) ||
            (back == 1 && ends(Meaning::TitleLead, back) && opensSentence(reader, i - back)))
            return true;
    return false;
}

bool PlaceFinder::refusesPlace(const Reader &reader, std::uint32_t begin) const {
    const Sense *refused = reader.sense(begin, Meaning::NotAPlace);
    // "at that new Lebanese place"
    constexpr std::uint32_t kKindReach = 3;
    bool kind = false;
    for (std::uint32_t i = begin + 1; reader.word(i) && i <= begin + kKindReach; ++i)
        kind = kind || (reader.has(i, Meaning::PlaceNoun) && !token(i).used);
    return refused && !isStreet(reader, begin, begin) &&
           !(refused->length == 1 && !token(begin).capital &&
             (kind || isHomeOfKin(reader, {begin, nameEnd(reader, begin)})));
}

bool PlaceFinder::offerWholeLine(const Reader &reader, std::uint32_t marker, std::uint32_t end) {
    const Field &field = m_document.fields[token(marker).field];
    if (token(marker).field <= m_anchorField || marker == field.begin || field.spoken ||
        marker - field.begin > kLongestName)
        return false;
    const Shape before = shapeOf({field.begin, marker});
    bool free = end == field.end;
    for (std::uint32_t k = field.begin; k < marker && free; ++k)
        free = !token(k).used && reader.word(k);
    if (!free || !before.title || !before.noun || before.event)
        return false;
    offer({field.begin, end}, 54, marker);
    return true;
}

bool PlaceFinder::isOfPerson(const Reader &reader, std::uint32_t marker,
                             std::uint32_t begin) const {
    const std::uint32_t noun = marker - 1;
    if (marker < 3 || m_choice.zoneSpan.empty() || !reader.has(noun, Meaning::PlaceNoun) ||
        nounBefore(reader, marker, begin) != noun)
        return false;
    const std::uint32_t with = reader.has(noun - 1, Meaning::The) ? noun - 2 : noun - 1;
    return reader.has(with, Meaning::Person) && !token(with).upper();
}

int PlaceFinder::addressBonus(TokenSpan span) const {
    constexpr int kBonus = 16;
    const bool number =
        std::any_of(m_document.tokens.begin() + span.begin, m_document.tokens.begin() + span.end,
                    [](const Token &each) { return each.kind == TokenKind::Number; });
    return number && shapeOf(span).street ? kBonus : 0;
}

bool PlaceFinder::isFrom(const Reader &reader, std::uint32_t i) const {
    return reader.has(i, Meaning::RangeFrom);
}

bool PlaceFinder::isWeakPlace(const Reader &reader, std::uint32_t i, const Sense &marker,
                              const Shape &shape) const {
    const bool ofTime = reader.has(i, Meaning::RangeTo) || reader.has(i, Meaning::TimeMarker);
    // "3.10pm, by the front gate"
    const bool behindTime =
        i > 0 && (token(i - 1).used || (i > 1 && reader.symbol(i - 1, ',') && token(i - 2).used));
    if (ofTime)
        return (marker.length > 1 || behindTime || isVisit(reader, i)) && shape.noun;
    const bool inside = reader.has(i, Meaning::In);
    if (!inside)
        return reader.has(i, Meaning::DateMarker)
                   ? (shape.noun || (shape.street && shape.title && !isBehindName(reader, i))) &&
                         shape.words <= 4 && !shape.event
                   : shape.noun;
    return shape.noun || shape.street || (shape.title && !shape.event);
}

bool PlaceFinder::isBehindName(const Reader &reader, std::uint32_t i) const {
    return i > 0 && token(i - 1).capital && !token(i - 1).used &&
           !reader.has(i - 1, Meaning::Event);
}

bool PlaceFinder::isVisit(const Reader &reader, std::uint32_t i) {
    const Token *name = reader.at(reader.skip(i + 1, Meaning::The));
    return i > 0 && reader.has(i, Meaning::RangeTo) && reader.has(i - 1, Meaning::Event) && name &&
           name->upper();
}

} // namespace pindle::conversion
