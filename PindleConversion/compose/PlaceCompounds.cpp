#include <algorithm>

#include "PindleConversion/compose/PlaceFinder.h"

namespace pindle::conversion {

namespace {

constexpr int kNamedStay = 30; ///< for a name that one stays at
constexpr int kRoomCode = 48;  ///< for "G.12" behind a kind of place
constexpr int kSender = 22;    ///< for who sends a message
constexpr int kBracketed = 34; ///< for a place in brackets
constexpr int kNamedKind = 46; ///< for one in brackets that starts with its kind
constexpr int kHeading = 10;   ///< for "Sawmill Trail" of "Sawmill Trail weed pull"
constexpr int kMostWords = 5;
constexpr int kMostRoomWords = 3;

} // namespace

void PlaceFinder::compound(const Reader &reader, const Field &field, std::uint32_t i) {
    // "OUT OF OFFICE"
    constexpr std::uint32_t kLongestEvent = 3;
    for (std::uint32_t k = i; k > field.begin && i - k + 1 < kLongestEvent; --k)
        if (const Sense *event = reader.sense(k - 1, Meaning::Event);
            event && k - 1 + event->length == i + 1 && event->length == kLongestEvent)
            return;
    // "Anna's garden party", "Leo's school play": whose event it is.
    const Sense *named = reader.sense(i, Meaning::Event);
    if (i > field.begin && token(i - 1).possessive && !token(i).capital && reader.word(i + 1) &&
        !token(i + 1).used && !token(i + 1).capital &&
        ((named && named->length > 1) || reader.has(i + 1, Meaning::Event)))
        return;
    // "Life as a lock-keeper"
    if (reader.symbol(i + 1, '-') && !token(i).capital && !token(i).unspaced &&
        reader.glued(i + 1) && reader.glued(i + 2) && reader.word(i + 2) &&
        !reader.has(i + 2, Meaning::PlaceNoun))
        return;
    std::uint32_t begin = i;
    // "Kroger parking lot"
    std::uint32_t end = reader.skip(i, Meaning::PlaceNoun);
    // "Dept. 9"
    const bool stopped = reader.symbol(end, '.') && reader.has(i, Meaning::Abbreviation) &&
                         reader.number(end + 1, 0, 9999, 4) && !token(end + 1).used;
    end += stopped ? 2U : 0U;
    constexpr std::uint32_t kMost = 9;
    while (end < field.end && end < i + kMost) {
        const std::uint32_t next = reader.skip(reader.skip(end, Meaning::Of), Meaning::The);
        if (next >= field.end || !joinsName(reader, next, i))
            break;
        end = next + 1;
    }
    end = std::max(i + 1, beforeSeat(reader, {i, end}));
    // "O portão fecha", "Para urgencias": what opens a sentence is no name.
    // "Kindly block your calendar"
    static constexpr Meanings kOpening{Meaning::The, Meaning::PlaceStop, Meaning::Chatter};
    const auto isArticle = [&](std::uint32_t k) {
        return reader.mayHave(k, kOpening) && (!token(i).capital || isShouted(reader, k));
    };
    while (begin > field.begin && begin + 5 > i && joinsName(reader, begin - 1, i) &&
           !isArticle(begin - 1) &&
           (token(begin - 1).kind == TokenKind::Word || isRoomNumber(begin - 1) ||
            ownsNext(reader, begin - 1)) &&
           !endsCompound(reader, begin - 1))
        --begin;
    // "PLEASE STORE WATER"
    if (begin == i && i > field.begin && reader.has(i - 1, Meaning::PlaceStop) &&
        !reader.has(i - 1, Meaning::PlaceMarker) && token(i).upper() && isShouted(reader, i - 1))
        return;
    // "A Field Guide to Lichens" is a book.
    if (isArticled(reader, begin) && end > begin + 2)
        return;
    // "Mr Hall"
    if (i == begin + 1 && reader.has(begin, Meaning::Person) && token(begin).upper() &&
        token(i).upper())
        return;
    // "14B Canal Walk"
    if (begin > field.begin && token(begin).end - token(begin).begin == 1 && reader.glued(begin) &&
        token(begin - 1).kind == TokenKind::Number && !token(begin - 1).used)
        --begin;
    // "Ms. Ortiz's room", "St. Brendan Parish Hall"
    static constexpr Meanings kBeforeName{Meaning::Person, Meaning::Abbreviation};
    if (begin > field.begin + 1 && reader.symbol(begin - 1, '.') && token(begin - 2).capital &&
        !token(begin - 2).used && reader.mayHave(begin - 2, kBeforeName))
        begin -= 2;
    // "11 Cedar Court"
    if (begin > field.begin && reader.number(begin - 1, 1, 9999, 4) && !token(begin - 1).used &&
        token(begin).spaceBefore && isStreet(reader, i, begin) && token(begin).capital)
        --begin;
    const bool numbered =
        stopped ||
        (end > i + 1 && (token(i + 1).kind == TokenKind::Number || token(i + 1).capital));
    // "Handmade-Markt" is an event.
    const bool hyphened =
        i > begin && reader.symbol(i - 1, '-') && end == i + 1 && reader.has(i, Meaning::Event);
    // "pokój 3-osobowy"
    const bool counted = isCounted(reader, i + 1) || isCounted(reader, begin);
    if (end - begin < 2 || hyphened || counted || isSeat(reader, i) ||
        tellsSeat(reader, begin, end) ||
        (reader.has(end - 1, Meaning::ZoneWord) && isWhereOthersAre(reader, begin)) ||
        (!numbered && begin == i && reader.has(i, Meaning::Event)))
        return;
    if (m_choice.kind == EventKind::Travel && isRouteEnd(field, begin))
        return;
    // "with the Practice Nurse"
    const bool determined = begin > field.begin && reader.has(begin - 1, Meaning::The);
    const std::uint32_t before = determined ? begin - 1 : begin;
    if (before > field.begin && reader.has(before - 1, Meaning::Person) && !token(begin).unspaced)
        return;
    const bool booked = isStay() && token(begin).unspaced && field.begin < m_choice.anchor();
    // "Court 2 is ours from 10 until noon"
    // and "Community hall reserved for your auction on August 28" tell where.
    const Sense *chatter = numbered ? reader.sense(end, Meaning::Chatter) : nullptr;
    const bool told = (chatter && chatter->length > 1) || reader.has(end, Meaning::PlaceBehind);
    if ((isTitlePosition(field, begin) && !told) || booked) {
        if (isStay() && shapeOf({begin, end}).title)
            offer({begin, end}, kNamedStay, i);
        else if (leadsHeading({begin, end}))
            offer({begin, end}, kHeading, i);
        return;
    }
    // "Flat 902, Tower C, Green Meadows"
    // and "Orchard Rise and Quince Close"
    const bool paired = reader.has(end, Meaning::And) && reader.has(end - 1, Meaning::StreetWord);
    if (((numbered && reader.symbol(end, ',')) || paired) && token(begin).capital &&
        !token(i).unspaced)
        end = std::max(end, nameEnd(reader, begin));
    // "Lawn Bowls for Beginners" goes on as a name of something else.
    const bool goesOn = end < field.end && reader.word(end) && !token(end).used;
    offer({begin, end}, numbered ? 26 - (goesOn ? headingPenalty(i) : 0) : 14, i);
}

bool PlaceFinder::isArticled(const Reader &reader, std::uint32_t i) {
    const Sense *one = reader.word(i) ? reader.sense(i, Meaning::Number) : nullptr;
    return one && one->value == 1 && one->length == 1 && reader.token(i).upper() &&
           reader.token(i + 1).upper() && reader.document().sameSentence(i, i + 1);
}

bool PlaceFinder::isRoomNumber(std::uint32_t i) const {
    return token(i).kind == TokenKind::Number && token(i + 1).unspaced && !token(i + 1).spaceBefore;
}

void PlaceFinder::street(const Reader &reader, const Field &field, std::uint32_t i) {
    constexpr int kStreetOfEvent = 20;
    constexpr int kScore = 30;
    constexpr int kListed = 40;
    constexpr std::uint32_t kMostNames = 3;
    if (isStreetOfEvent(reader, field, i))
        offer({i, i + 1}, kStreetOfEvent, i);
    if (const TokenSpan address = addressOfEvent(reader, field, i); !address.empty())
        offer(address, kListed, i);
    std::uint32_t begin = i;
    while (begin > field.begin && i - begin < kMostNames && token(begin - 1).upper() &&
           !token(begin - 1).used && m_document.sameSentence(begin - 1, i))
        --begin;
    // "Boiler service for 42 Nelson Tce", but "5 Mile Charity Walk".
    if (begin == i || begin == field.begin || !token(i).upper() || token(begin - 1).used ||
        !reader.number(begin - 1, 1, 9999, 4) || reader.has(i, Meaning::Event) ||
        reader.has(begin, Meaning::Measure) || !token(begin).spaceBefore || begin < field.begin + 2)
        return;
    // "Two viewings: 14 Birch Row on Tuesday 21 March"
    const bool listed = reader.symbol(begin - 2, ':') && token(begin - 1).spaceBefore &&
                        (token(i + 1).used || reader.has(i + 1, Meaning::DateMarker));
    if (!listed && (!reader.word(begin - 2) || token(begin - 2).upper()))
        return;
    offer({begin - 1, nameEnd(reader, begin - 1)}, listed ? kListed : kScore, i);
}

bool PlaceFinder::isStreetOfEvent(const Reader &reader, const Field &field, std::uint32_t i) const {
    return token(i).word == 0 && token(i).capital && reader.has(i, Meaning::StreetWord) &&
           !reader.has(i, Meaning::Event) && i > field.begin && token(i).spaceBefore &&
           reader.has(i - 1, Meaning::Event) && !reader.has(i - 1, Meaning::PlaceNoun) &&
           (token(i + 1).used || isBreak(reader, i + 1)) &&
           m_document.sameSentence(i, m_choice.anchor());
}

TokenSpan PlaceFinder::addressOfEvent(const Reader &reader, const Field &field,
                                      std::uint32_t i) const {
    const Sense *street = reader.sense(i, Meaning::StreetWord);
    const bool before = street && token(i).word != 0;
    const bool house = before && i > field.begin && reader.number(i - 1, 1, 9999, 4);
    const std::uint32_t begin = house ? i - 1 : i;
    if (!street || begin == field.begin || token(begin).used || !token(begin).spaceBefore ||
        token(begin).unspaced || !reader.has(begin - 1, Meaning::Event) ||
        reader.has(i, Meaning::Event) || reader.has(begin - 1, Meaning::PlaceNoun) ||
        !m_document.sameSentence(i, m_choice.anchor()))
        return {};
    std::uint32_t end = before ? nameEnd(reader, begin) : i + 2;
    const auto isClosed = [&] {
        return end >= field.end || token(end).used || isBreak(reader, end);
    };
    // "5 rue des Lilas, l'agence a les clés"
    for (std::uint32_t k = i + 1; !isClosed() && k < end; ++k)
        end = reader.symbol(k, ',') ? k : end;
    const bool numbered = house || (end > i + 1 && token(end - 1).kind == TokenKind::Number);
    const bool named = before ? end > i + 1 && (token(end - 1).capital || token(end - 2).capital)
                              : token(i).word == 0 && token(i).capital &&
                                    reader.number(i + 1, 1, 999, 3) && !token(i + 1).used;
    return named && numbered && isClosed() ? TokenSpan{begin, end} : TokenSpan{};
}

bool PlaceFinder::isRouteEnd(const Field &field, std::uint32_t begin) const {
    constexpr char32_t kArrow = 0x2192;
    const char32_t mark = begin > field.begin + 1 ? token(begin - 1).symbol : 0;
    return (mark == '-' || mark == kArrow) && token(begin - 2).capital && !token(begin - 2).used;
}

bool PlaceFinder::tellsSeat(const Reader &reader, std::uint32_t begin, std::uint32_t end) {
    for (std::uint32_t i = begin; i < end; ++i)
        if (reader.token(i).unspaced && reader.has(i, Meaning::Chatter) &&
            !reader.has(i, Meaning::PlaceNoun))
            return true;
    return false;
}

bool PlaceFinder::isSeat(const Reader &reader, std::uint32_t i) {
    const Sense *label = reader.sense(i, Meaning::LabelWord);
    // "Crew B", "conf #88213"
    const std::uint32_t number = reader.skipSymbol(i + 1, '#');
    const Token &next = reader.token(i + 1);
    return label && label->value == static_cast<int>(Label::Sender) &&
           (reader.number(number, 0, 99999999, 8) || number != i + 1 ||
            (next.upper() && next.end - next.begin == 1));
}

bool PlaceFinder::namesSeat(const Reader &reader, TokenSpan part) {
    for (std::uint32_t i = part.begin; i < part.end; ++i)
        if (isSeat(reader, i))
            return true;
    return false;
}

void PlaceFinder::before(const Reader &reader, const Field &field, std::uint32_t i) {
    std::uint32_t begin = openedBefore(field, i);
    while (begin > field.begin && i - begin < kLongestName && joinsBefore(reader, begin - 1, i))
        --begin;
    // "メールで"
    const Sense *other = token(begin).unspaced ? reader.sense(begin, Meaning::NotAPlace) : nullptr;
    if (other && begin + other->length == i)
        return;
    // "予約は田中で取ってます"
    if (begin > field.begin && token(begin).unspaced && endsPhrase(reader, begin - 1))
        return;
    const Shape shape = shapeOf({begin, i});
    // "跟伦敦团队开会": who meets is no place.
    if (reader.has(i, Meaning::Event) && !shape.noun)
        return;
    if (begin != i && !(shape.event && !shape.noun))
        offer({begin, i}, shape.noun ? 52 : 44, i);
}

std::uint32_t PlaceFinder::openedBefore(const Field &field, std::uint32_t i) const {
    const char32_t close = i > field.begin ? token(i - 1).symbol : U'\0';
    const bool quote = close == '"' && token(i - 1).end - token(i - 1).begin > 1;
    if (close != ')' && !quote)
        return i;
    for (std::uint32_t k = i - 1; k > field.begin && i - k < kLongestName; --k) {
        if (token(k - 1).used)
            return i;
        if (token(k - 1).symbol == (quote ? U'"' : U'('))
            return k - 1;
    }
    return i;
}

bool PlaceFinder::joinsBefore(const Reader &reader, std::uint32_t at, std::uint32_t i) const {
    const Token &current = token(at);
    if (current.used || current.sentence != token(i).sentence || current.kind == TokenKind::Link ||
        current.kind == TokenKind::Mail)
        return false;
    if (current.kind == TokenKind::Symbol)
        return current.symbol == '-' || current.symbol == '&' || current.symbol == kMiddleDot;
    // "水族館の入口"
    if (reader.has(at, Meaning::Of) && reader.has(at + 1, Meaning::PlaceNoun))
        return true;
    // "第1ターミナル"
    if (current.isOneSign() && reader.glued(at + 1) && at + 1 < i &&
        token(at + 1).kind == TokenKind::Number && reader.has(at, Meaning::TitleLead) &&
        !reader.has(at, Meaning::PlaceStop))
        return true;
    // "第1ターミナルの時計前", but not "学校の授業"
    if (reader.has(at, Meaning::Of) && token(at).unspaced && at > 0 && !token(at - 1).used &&
        reader.has(at - 1, Meaning::PlaceNoun) && !reader.has(at + 1, Meaning::Event))
        return true;
    // "自由が丘"
    const Sense *kind = current.isOneSign() ? reader.sense(at, Meaning::PlaceNoun) : nullptr;
    if (kind && kind->length > 1)
        return true;
    // "鳥はち": a particle before one sign that is no word.
    if (opensWord(reader, at) || (at + 2 == i && isInsideName(reader, at)))
        return true;
    // "何時集合"
    if (current.unspaced && reader.has(at, Meaning::Chatter) && !reader.has(at, Meaning::PlaceNoun))
        return false;
    return !(reader.has(at, Meaning::PlaceStop) || reader.has(at, Meaning::TitleLead) ||
             reader.has(at, Meaning::And) || reader.has(at, Meaning::RangeTo));
}

bool PlaceFinder::isRoomCode(const Reader &reader, TokenSpan part) {
    constexpr std::uint32_t kLongest = 4;
    bool number = false;
    bool letter = false;
    for (std::uint32_t i = part.begin; i < part.end; ++i) {
        if (reader.token(i).used || (i > part.begin && !reader.glued(i)))
            return false;
        number = number || reader.token(i).kind == TokenKind::Number;
        letter = letter || (reader.word(i) && reader.token(i).capital);
    }
    return number && letter && part.end - part.begin <= kLongest;
}

bool PlaceFinder::isExact(const Reader &reader, TokenSpan part, bool address) const {
    constexpr std::uint32_t kCode = 3; ///< tokens of "B-704"
    const std::uint32_t begin = part.begin;
    const bool behindMoment = begin > 1 && (token(begin - 1).used || token(begin - 2).used);
    const Shape shape = shapeOf(part);
    if (address && behindMoment && shape.street)
        return std::any_of(m_document.tokens.begin() + begin, m_document.tokens.begin() + part.end,
                           [](const Token &each) { return each.kind == TokenKind::Number; });
    const std::uint32_t name = begin + kCode;
    return begin > m_choice.anchor() && !m_document.sameSentence(begin - 1, begin) &&
           name < part.end && (shape.noun || shape.street) && isRoomCode(reader, {begin, name}) &&
           token(name).upper();
}

void PlaceFinder::bracketed(const Reader &reader, std::uint32_t open) {
    const std::uint32_t close = closing(reader, open);
    if (close == open)
        return;
    const Sense *label = reader.sense(open + 1, Meaning::LabelWord);
    const bool where = label && label->value == static_cast<int>(Label::Place);
    const std::uint32_t colon = where ? open + 1 + label->length : open;
    // "(new address: 14 Quay St)"
    if (where && reader.symbol(colon, ':') && colon + 1 < close)
        return offer({colon + 1, close}, kNamedKind, open);
    // "(cover: Sam)": something else is told.
    if (reader.word(open + 1) && reader.symbol(open + 2, ':'))
        return;
    const Shape shape = shapeOf({open + 1, close});
    if (open > 0 && reader.has(open - 1, Meaning::PlaceNoun) &&
        isRoomCode(reader, {open + 1, close}))
        return offer({open + 1, close}, kRoomCode, open);
    // "Same room (Elbe)"
    if (shape.title && shape.words <= kMostRoomWords && reader.has(open - 1, Meaning::PlaceNoun) &&
        reader.senseBefore(open, Meaning::Chatter, kMostRoomWords))
        return offer({open + 1, close}, kRoomCode, open);
    const Sense *city = reader.sense(open + 1, Meaning::ZoneWord);
    const bool inCity = city && city->value == 0 && open + 1 + city->length == close && open > 0 &&
                        !token(open - 1).used && !token(open + 1).used;
    if (!inCity && reader.has(open + 1, Meaning::ZoneWord))
        return;
    // "（受付9:15〜）" tells a time.
    const bool moment =
        std::any_of(m_document.tokens.begin() + open, m_document.tokens.begin() + close,
                    [](const Token &each) { return each.used; });
    // "Rehearsals (auditorium of the school):"
    const bool kind = shape.noun && !token(open + 1).unspaced &&
                      reader.has(open + 1, Meaning::PlaceNoun) &&
                      reader.has(open + 2, Meaning::Of) && shape.words <= kMostWords;
    if (((shape.noun || shape.street) && (shape.capital || kind) && !shape.event && !moment) ||
        inCity)
        offer({open + 1, close},
              (kind ? kNamedKind : kBracketed) +
                  // "at 2.30pm (Vasseur's office, 12 Mill Lane)"
                  (open > 0 && token(open - 1).used ? addressBonus({open + 1, close}) : 0),
              open);
}

void PlaceFinder::sender(const Reader &reader, std::uint32_t open) {
    std::uint32_t close = open + 1;
    while (reader.word(close) && close - open < kLongestName)
        ++close;
    if (reader.symbol(close, ']') && token(open + 1).unspaced && isPlaceNoun(reader, close - 1) &&
        !token(open + 1).used)
        offer({open + 1, close}, kSender, open);
}

bool PlaceFinder::isQuotedInList(TokenSpan part) const {
    constexpr std::uint32_t kBefore = 3;
    if (part.begin < kBefore)
        return false;
    const std::uint32_t open = part.begin - 1;
    const char32_t mark = token(open).symbol;
    if (mark != '\'' && mark != '"')
        return false;
    const auto joined = [&](std::uint32_t comma, std::uint32_t quote) {
        return token(comma).symbol == ',' && token(quote).symbol == mark;
    };
    for (std::uint32_t i = part.begin; i < part.end; ++i)
        if (token(i).symbol == mark && joined(i + 1, i + 2))
            return true;
    if (token(part.end).symbol != mark)
        return false;
    return joined(open - 1, open - 2) || joined(part.end + 1, part.end + 2);
}

bool PlaceFinder::isKindAlone(TokenSpan place) const {
    const Reader reader(m_document, place.end);
    // "our gallery", "my new place"
    constexpr std::uint32_t kLongest = 3;
    return !place.empty() &&
           (isPlaceNoun(reader, place.end - 1) ||
            reader.senseBefore(place.end, Meaning::PlaceNoun, kLongest)) &&
           std::all_of(m_document.tokens.begin() + place.begin,
                       m_document.tokens.begin() + place.end, [](const Token &each) {
                           return each.kind == TokenKind::Word && each.word != 0 && !each.unspaced;
                       });
}

bool PlaceFinder::isHouse(const Reader &reader, TokenSpan part) {
    const std::uint32_t slash = part.end - 2;
    // "Lipowa 8 m. 14"
    const std::uint32_t mark = reader.symbol(slash, '.') ? slash - 1 : slash;
    constexpr std::uint32_t kLongestMark = 3;
    if (part.end > part.begin + 3 && reader.word(mark) && !reader.token(mark).capital &&
        reader.token(mark).end - reader.token(mark).begin <= kLongestMark &&
        reader.number(part.end - 1, 1, 999, 3) && mark == part.begin + 2 &&
        reader.number(mark - 1, 1, 999, 3) && reader.token(part.begin).upper() &&
        reader.token(part.begin).word == 0)
        return true;
    return part.end > part.begin + 3 && reader.symbol(slash, '/') && reader.glued(slash) &&
           reader.glued(slash + 1) && reader.number(slash - 1, 1, 999, 3) &&
           reader.number(slash + 1, 1, 999, 3) && reader.token(slash - 1).spaceBefore &&
           reader.word(slash - 2) && reader.token(slash - 2).capital &&
           reader.token(slash - 2).word == 0 && !reader.has(slash - 2, Meaning::Numbered);
}

bool PlaceFinder::countsAboard(const Reader &reader, std::uint32_t begin) const {
    return token(begin).kind == TokenKind::Number &&
           (reader.has(begin + 1, Meaning::Chatter) ||
            (token(begin + 1).unspaced && reader.has(begin + 1, Meaning::Counter)));
}

bool PlaceFinder::isAcronym(TokenSpan part) const {
    constexpr std::size_t kLongest = 6;
    const std::string_view text = m_document.slice(part);
    return part.end == part.begin + 1 && text.size() <= kLongest && allCapitals(text);
}

bool PlaceFinder::isCounted(const Reader &reader, std::uint32_t i) {
    // "Kanaalstraat 88-II"
    constexpr std::uint32_t kLongestFlat = 3;
    const bool house = i > 0 && reader.word(i - 1) && reader.token(i - 1).upper() &&
                       reader.token(i + 2).end - reader.token(i + 2).begin <= kLongestFlat &&
                       allCapitals(reader.document().slice(reader.token(i + 2)));
    return !house && reader.number(i, 0, 99) && reader.symbol(i + 1, '-') && reader.glued(i + 1) &&
           reader.glued(i + 2) && reader.word(i + 2);
}

} // namespace pindle::conversion
