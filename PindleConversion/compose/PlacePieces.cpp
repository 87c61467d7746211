#include <algorithm>

#include "PindleConversion/compose/PlaceFinder.h"

namespace pindle::conversion {

namespace {

constexpr int kOwnLine = 26; ///< more for a place that has the line below the date

} // namespace

void PlaceFinder::pieces(const Reader &reader, std::uint32_t f, TokenSpan part) {
    const Field &field = m_document.fields[f];
    const bool timed = isTimedHeading(f);
    if (f < m_anchorField && !field.cell && !timed) {
        behindDash(reader, field);
        return venueAbove(reader, f);
    }
    if (f == 0 && !field.spoken && !field.cell) {
        venueBeforeDash(reader, field);
        venueSpeaks(reader, field);
    }
    const std::uint32_t moment = timed ? m_choice.timeSpan.begin : m_choice.anchor();
    std::uint32_t begin = part.begin;
    // "WO#44821 | HVAC maintenance | 03/10", "Webinar | Reading a Balance Sheet | 3 June": behind
    // the number or the kind the event is named.
    const Reader head(m_document, field.begin);
    const bool named = f == 1 && f < m_anchorField &&
                       ((token(1).symbol == '#' && !token(1).spaceBefore) ||
                        head.has(m_document.fields[0].begin, Meaning::OnlineEvent) ||
                        (field.cell && isNumberAlone(m_document.fields[0])));
    const bool later = f > m_anchorField || (field.cell && f != 0 && !named);
    for (std::uint32_t i = part.begin; i <= part.end; ++i) {
        const bool space = i < part.end && i > begin && startsUnspaced(reader, i);
        if (space && !token(i).used && (later || begin > moment)) {
            begin = std::max(piece(reader, f, begin, i), i);
            continue;
        }
        const bool mark = i == part.end || token(i).used || isBreak(reader, i) || space;
        if (!mark)
            continue;
        if (i > begin && (later || begin > moment))
            begin = piece(reader, f, begin, i);
        else if (i > begin && reader.symbol(i, ',') && (begin > field.begin || f > 0))
            pieceBefore(reader, field, {begin, i});
        if (i < begin)
            continue;
        begin = space ? i : i + 1;
    }
}

bool PlaceFinder::isNumberAlone(const Field &cell) const {
    constexpr std::uint32_t kMostTokens = 4;
    const std::uint32_t last = cell.end - 1;
    if (cell.end < cell.begin + 2 || cell.end - cell.begin > kMostTokens || token(last).used ||
        token(last).kind != TokenKind::Number)
        return false;
    return Reader(m_document, cell.end).has(cell.begin, Meaning::PageHead);
}

bool PlaceFinder::isTimedHeading(std::uint32_t f) const {
    return f < m_anchorField && !m_choice.timeSpan.empty() && m_choice.kind != EventKind::Travel &&
           token(m_choice.timeSpan.begin).field == f;
}

bool PlaceFinder::startsUnspaced(const Reader &reader, std::uint32_t i) {
    const bool room =
        reader.token(i).kind == TokenKind::Number && reader.at(i + 1) &&
        reader.token(i + 1).unspaced &&
        (reader.has(i + 1, Meaning::PlaceNoun) || reader.has(i + 1, Meaning::Chatter));
    return (reader.token(i).unspaced || room) && reader.token(i).spaceBefore;
}

bool PlaceFinder::isBreak(const Reader &reader, std::uint32_t i) const {
    // "3,620 MHz"
    const bool decimal = reader.symbol(i, ',') && reader.glued(i) && reader.glued(i + 1) && i > 0 &&
                         token(i - 1).kind == TokenKind::Number &&
                         token(i + 1).kind == TokenKind::Number;
    if (decimal)
        return false;
    return reader.symbol(i, ',') || reader.symbol(i, ';') || reader.symbol(i, '(') ||
           reader.symbol(i, ')') || reader.symbol(i, ':') || reader.symbol(i, '!') ||
           reader.symbol(i, '?') || reader.symbol(i, kIdeographicStop) ||
           (reader.symbol(i, '-') && !reader.glued(i)) || reader.symbol(i, '*') ||
           (reader.symbol(i, '/') && !reader.glued(i) && !reader.glued(i + 1)) ||
           ((reader.symbol(i, '.') || reader.symbol(i, '>')) && i + 1 < m_document.tokens.size() &&
            token(i + 1).sentence != token(i).sentence);
}

bool PlaceFinder::isArrivalLine(const Field &field) const {
    return m_choice.kind == EventKind::Travel && !m_choice.endSpan.empty() &&
           !m_choice.timeSpan.empty() && field.line == lineOf(m_choice.endSpan.begin) &&
           field.line != lineOf(m_choice.timeSpan.begin);
}

bool PlaceFinder::isBelowEnd(const Field &field) const {
    return m_choice.kind != EventKind::Travel && !m_choice.endSpan.empty() &&
           lineOf(m_choice.endSpan.begin) == m_momentLine + 1 && field.line == m_momentLine + 2 &&
           token(field.begin).kind == TokenKind::Word;
}

bool PlaceFinder::isBetweenDayAndTime(const Field &field) const {
    const std::uint32_t day = lineOf(m_choice.anchor());
    // but "Fjellwing FW 418" between the day and the airports of a journey
    return m_anchorField > 0 && field.line == day + 1 && field.line < m_momentLine &&
           m_choice.kind != EventKind::Travel;
}

bool PlaceFinder::isAnnounced(const Reader &reader, std::uint32_t begin) const {
    return begin > 1 && reader.symbol(begin - 1, ':') && token(begin - 2).used &&
           !reader.has(begin, Meaning::PlaceNoun);
}

bool PlaceFinder::isArrival(const Reader &reader, std::uint32_t i) {
    const Sense *role = reader.sense(i, Meaning::RoleWord);
    return role && role->value == static_cast<int>(Role::End);
}

bool PlaceFinder::isSecondBeforeTime(const Field &field) const {
    return !m_choice.timeSpan.empty() && field.label == Label::None && !field.spoken &&
           field.line > lineOf(m_choice.dateSpan.empty() ? 0 : m_choice.anchor()) + 1 &&
           field.line < lineOf(m_choice.timeSpan.begin);
}

std::uint32_t PlaceFinder::piece(const Reader &reader, std::uint32_t f, std::uint32_t begin,
                                 std::uint32_t end) {
    constexpr int kMostWords = 7;
    const Field &field = m_document.fields[f];
    begin = behindParticles(reader, field, {begin, end});
    begin = behindAnswer(reader, field, {begin, end});
    // "8, rue des Tanneurs"
    if (begin > field.begin + 1 && reader.has(begin, Meaning::StreetWord) &&
        reader.symbol(begin - 1, ',') && reader.number(begin - 2, 1, 9999, 4) &&
        !token(begin - 2).used && (begin - 2 == field.begin || !reader.word(begin - 3)))
        begin -= 2;
    if (const std::uint32_t seat = beforeSeat(reader, {begin, end}); seat == begin)
        // "体育中心 12排8座 5号门": behind a seat stands how to get there.
        return m_best.empty() ? end : field.end;
    else
        end = seat;
    begin = withHouse(reader, field, {begin, end});
    const bool refused = refusesPart(reader, {begin, end});
    // Without spaces the name ends where the sentence goes on.
    if (token(begin).unspaced && !reader.has(end - 1, Meaning::PlaceNoun))
        end = std::clamp(nameEnd(reader, begin), begin + 1, end);
    const std::uint32_t next = end;
    end = beforeTalk(reader, field, {begin, end});
    end = behindBranch(reader, begin, end);
    const Shape shape = shapeOf({begin, end});
    // "Gate to be confirmed"
    const bool open = end == begin + 1 && end < next && reader.has(begin, Meaning::PlaceNoun);
    const bool greets = reader.has(begin, Meaning::Greeting) && !(shape.noun && shape.title);
    // "(le 11 a New York)"
    const bool listed = reader.has(begin, Meaning::The) && !reader.symbol(begin, '\'') &&
                        reader.number(begin + 1, 0, 31);
    const bool filler = end == begin + 1 &&
                        (reader.has(begin, Meaning::Of) || reader.has(begin, Meaning::RangeFrom) ||
                         reader.has(begin, Meaning::The) || reader.has(begin, Meaning::TimeMarker));
    // "12 January. Start at 9am"
    const std::uint32_t role = reader.skip(begin, Meaning::RoleWord);
    const bool leads = role != begin && reader.skip(role, Meaning::TimeMarker) == end;
    if (!refused && !open && !leads && !greets && !isSentence(reader, {begin, end}) && !filler &&
        !listed && !isArrivalLine(field) && shape.words > 0 && shape.words <= kMostWords &&
        (!shape.event || opensWithPlace(reader, {begin, end}) ||
         isHouseOnStreet(reader, {begin, end})))
        offerPart(reader, field, {begin, end}, shape);
    return next;
}

bool PlaceFinder::isSentence(const Reader &reader, TokenSpan part) const {
    static constexpr Meanings kVerbs{Meaning::PlaceStop, Meaning::PresentVerb};
    // "pool's open", "bar opens"
    static constexpr Meanings kTells{Meaning::Opening, Meaning::PresentVerb};
    for (std::uint32_t i = part.begin + 1; i < part.end; ++i)
        if (reader.mayHave(i, kTells) && !token(i).capital && !token(i).unspaced)
            return true;
    const std::uint32_t noun = part.begin + 1;
    // "flat's a tip", "pitch's waterlogged"
    if (token(part.begin).possessive && !token(part.begin).capital && reader.word(noun) &&
        !token(noun).capital &&
        (reader.has(noun, Meaning::Number) || (reader.has(part.begin, Meaning::PlaceNoun) &&
                                               !reader.has(part.end - 1, Meaning::PlaceNoun))))
        return true;
    // "School closes at 12:15": who does it.
    const std::uint32_t verb = part.end - 1;
    if (verb == noun && reader.has(part.begin, Meaning::PlaceNoun) && !token(verb).capital &&
        reader.has(verb, Meaning::TimeMarker) && !reader.has(verb, Meaning::PlaceStop) &&
        !reader.has(verb, Meaning::PlaceMarker) && reader.has(verb, Meaning::RoleWord))
        return true;
    return token(part.begin).upper() && reader.has(part.begin, Meaning::The) &&
           reader.has(noun, Meaning::PlaceNoun) && !token(noun).capital && noun + 1 < part.end &&
           reader.mayHave(noun + 1, kVerbs);
}

std::uint32_t PlaceFinder::behindParticles(const Reader &reader, const Field &field,
                                           TokenSpan part) const {
    std::uint32_t begin = part.begin;
    while (begin + 1 < part.end && token(begin).unspaced && begin > field.begin &&
           token(begin - 1).used && token(begin).isOneSign() &&
           reader.has(begin, Meaning::PlaceStop) && reader.has(begin, Meaning::TitleLead))
        ++begin;
    return begin;
}

bool PlaceFinder::isBehindPerson(const Reader &reader, TokenSpan part) const {
    constexpr std::uint32_t kReach = 5; ///< with the comma
    const std::uint32_t begin = part.begin;
    if (part.end != begin + 1 || begin == 0 || token(begin - 1).symbol != ',')
        return false;
    for (std::uint32_t k = 2; k <= std::min(kReach, begin); ++k)
        if (reader.has(begin - k, Meaning::Person))
            return true;
    // "A presto, Reto"
    return reader.senseBefore(begin - 1, Meaning::Greeting, kReach) != nullptr;
}

bool PlaceFinder::pointsElsewhere(const Reader &reader, TokenSpan part) {
    const Token &first = reader.token(part.begin);
    const auto isWhole = [&](const Sense *sense) {
        return sense && part.begin + sense->length == part.end;
    };
    const Sense *other = reader.sense(part.begin, Meaning::NotAPlace);
    // "On stage", before its time
    const Sense *time = reader.sense(part.begin, Meaning::TimeMarker);
    if (time && time->length > 1 && isWhole(time))
        return true;
    return isWhole(other) ||
           (first.unspaced && (other || isWhole(reader.sense(part.begin, Meaning::RoleWord))));
}

bool PlaceFinder::isShouted(const Reader &reader, std::uint32_t i) {
    constexpr std::size_t kShortest = 3; ///< letters; "ON" may be a province
    const std::string_view text = reader.document().slice(reader.token(i));
    const Token &next = reader.token(i + 1);
    return text.size() >= kShortest && allCapitals(text) && next.kind == TokenKind::Word &&
           !next.used && allCapitals(reader.document().slice(next));
}

bool PlaceFinder::refusesPart(const Reader &reader, TokenSpan part) const {
    const std::uint32_t begin = part.begin;
    // "DOJ 03-Mar-2027": a label that nothing ends.
    const Sense *label = reader.sense(begin, Meaning::LabelWord);
    if (label && begin + label->length == part.end && !reader.has(begin, Meaning::PlaceNoun) &&
        reader.at(part.end) && token(part.end).used)
        return true;
    // "1 queen room": so many of a kind.
    // but "4th-floor kitchen"
    if (reader.number(begin, 1, 9) && part.end > begin + 1 &&
        !reader.has(begin + 1, Meaning::OrdinalMark) &&
        reader.has(part.end - 1, Meaning::PlaceNoun) && !shapeOf(part).capital)
        return true;
    // "19:00, music room", but "music from 7"
    const Sense *kind = reader.sense(begin, Meaning::PlaceNoun);
    return pointsElsewhere(reader, part) || isBehindPerson(reader, part) ||
           reader.has(begin, Meaning::Person) ||
           (reader.has(begin, Meaning::PlaceMarker) && !token(begin).upper()) ||
           reader.has(begin, Meaning::Chatter) ||
           (reader.word(begin) && reader.has(begin, Meaning::TimeMarker) && !token(begin).upper() &&
            !(kind && kind->length > 1)) ||
           (reader.has(begin, Meaning::PlaceStop) &&
            (!token(begin).upper() || isShouted(reader, begin))) ||
           reader.has(begin + 2, Meaning::Counter) || countsAboard(reader, begin) ||
           token(begin).kind == TokenKind::Link || namesSeat(reader, part) ||
           isCounted(reader, begin) || isCounted(reader, begin + 1) || isArrival(reader, begin) ||
           (reader.symbol(part.end, ':') &&
            !(part.end + 1 == reader.end() && isTimedHeading(token(begin).field))) ||
           isAnnounced(reader, begin) || tellsSeat(reader, begin, part.end);
}

void PlaceFinder::offerPart(const Reader &reader, const Field &field, TokenSpan part,
                            const Shape &shape) {
    const auto [begin, end] = part;
    const bool number = token(begin).kind == TokenKind::Number;
    const bool address = shape.street && (number || shape.title || shape.capital);
    // "the ramen spot on Larkin"
    constexpr int kMostTold = 6;
    const bool told = shape.words <= kMostTold && shape.capital && !token(begin).capital &&
                      (reader.has(begin, Meaning::The) || isHouseOnStreet(reader, part));
    const bool kind = shape.noun && (shape.title || shape.words <= 4 || told ||
                                     reader.has(begin, Meaning::PlaceNoun));
    const bool sameLine =
        (field.line == m_document.fields[m_anchorField].line ||
         isTimedHeading(token(begin).field)) &&
        (field.cell || m_document.sameSentence(begin, m_choice.anchor()) ||
         (!m_choice.timeSpan.empty() && m_document.sameSentence(begin, m_choice.timeSpan.begin)));
    const bool nextLine = field.line == m_momentLine + 1 || isBelowEnd(field) ||
                          isBetweenDayAndTime(field) ||
                          (isSecondBeforeTime(field) && end == field.end);
    const std::uint32_t whole = token(begin).unspaced ? end : std::max(end, nameEnd(reader, begin));
    const Shape all = shapeOf({begin, whole});
    const bool known =
        address || kind || (shape.title && (all.noun || all.street)) || isHouse(reader, part);
    if (!known && !(isOnlyName(field, part, shape) && (sameLine || nextLine || field.spoken)))
        return;
    // "Club Sin Rumbo – Av. Constituyentes 6120"
    if (address && reader.symbol(begin - 1, '-') && !m_best.empty() && m_best.end + 1 == begin) {
        m_best.end = whole;
        return;
    }
    if (isSignedBy(reader, field, part) || isSignedAt(field, {begin, whole}))
        return;
    int score = known ? 34 : 22;
    // "in our gallery – Saturday 15 May, 22 Long St": the street says more than a kind of place.
    constexpr int kExact = 30;
    if ((address || known) && isKindAlone(m_best) && isExact(reader, {begin, whole}, address))
        score += kExact;
    // "Maison communale de Rixentaert" right below the date.
    // and "Miller's Landing, County Rd 9 (rain date July 13)".
    if (known && nextLine && begin == field.begin && token(begin).upper() &&
        (whole == field.end || reader.symbol(whole, '(')))
        score += kOwnLine;
    if (!sameLine && !nextLine && !isBesideTime(begin) &&
        !(field.spoken &&
          (whole == field.end || isAnswer(reader, part) || opensTurnWithTime(reader, part))))
        score -= 8;
    offer({begin, whole}, score, begin);
}

bool PlaceFinder::isHouseOnStreet(const Reader &reader, TokenSpan part) const {
    constexpr std::uint32_t kLongestHead = 3;
    for (std::uint32_t i = part.begin; i < part.begin + kLongestHead && reader.word(i); ++i) {
        if (token(i).unspaced || token(i).capital || reader.has(i, Meaning::The))
            return false;
        const Sense *noun = reader.sense(i, Meaning::PlaceNoun);
        const std::uint32_t marker = noun ? i + noun->length : i;
        const std::uint32_t name = reader.skip(marker, Meaning::PlaceMarker);
        if (noun && name != marker)
            return name < part.end && shapeOf({name, part.end}).title;
    }
    return false;
}

bool PlaceFinder::isSignedBy(const Reader &reader, const Field &field, TokenSpan part) const {
    const Field *next = &field + 1;
    if (part.begin != field.begin || part.end != field.end ||
        !reader.has(part.begin, Meaning::The) || field.line <= m_momentLine + 1 ||
        next > &m_document.fields.back())
        return false;
    const auto isWord = [](const Token &each) { return each.kind == TokenKind::Word; };
    const auto begin = m_document.tokens.begin();
    return std::all_of(begin + part.begin, begin + part.end,
                       [&](const Token &each) { return isWord(each) && each.word != 0; }) &&
           std::none_of(begin + next->begin, begin + next->end, isWord);
}

bool PlaceFinder::isSignedAt(const Field &field, TokenSpan part) const {
    constexpr std::uint32_t kLongest = 6;
    const std::uint32_t comma = field.begin + 1;
    if (&field != &m_document.fields.back() || part.end != field.end ||
        field.line <= m_momentLine || field.end - field.begin > kLongest || field.end < comma + 2 ||
        token(comma).symbol != ',' || !token(field.begin).upper() ||
        token(field.begin).possessive || token(field.begin).word != 0 ||
        token(field.begin).unspaced)
        return false;
    for (std::uint32_t i = comma + 1; i < field.end; ++i)
        if (token(i).kind != TokenKind::Word || token(i).capital || token(i).word == 0)
            return false;
    // The sentences are over, as they are above a name.
    const Field &above = *(&field - 1);
    const char32_t last = token(above.end - 1).symbol;
    return last == ',' || ((last == '.' || last == '!' || last == '?') &&
                           !m_document.sameSentence(above.begin, above.end - 1));
}

bool PlaceFinder::closesNote(const Field &field, TokenSpan part) const {
    const std::uint32_t moment = std::max(m_choice.anchor(), m_choice.timeSpan.begin);
    if (part.end != field.end || m_choice.timeSpan.empty() || !token(part.begin).spaceBefore ||
        part.begin <= moment || token(moment).field != m_anchorField ||
        &field != &m_document.fields[m_anchorField])
        return false;
    const Reader reader(m_document, field.end);
    bool named = false;
    for (std::uint32_t i = field.begin; i < m_choice.anchor() && !named; ++i)
        named = reader.has(i, Meaning::Event);
    for (std::uint32_t i = part.begin; i < part.end; ++i)
        if (reader.has(i, Meaning::TitleTail) || reader.has(i, Meaning::PresentVerb) ||
            reader.has(i, Meaning::Chatter) || token(i).spaceBefore != (i == part.begin))
            return false;
    return named;
}

bool PlaceFinder::isOnlyName(const Field &field, TokenSpan part, const Shape &shape) const {
    const auto [begin, end] = part;
    const Reader reader(m_document, end);
    // "23:59 AoE": one unknown word glued to a time is no place, "19:00 Kunsthof 3" is one.
    constexpr std::uint32_t kLongestCode = 3;
    const bool numbered = end == begin + 2 && token(begin + 1).kind == TokenKind::Number &&
                          !token(begin).unspaced &&
                          token(begin).end - token(begin).begin > kLongestCode;
    if (begin > field.begin && token(begin - 1).used && shape.words == 1 && !numbered &&
        !token(begin).possessive)
        return false;
    // "Restmüll Di 5.5., Gelber Sack Fr 8.5.": what happens on another day.
    if (token(end).used && token(end).spaceBefore && begin > m_choice.dateSpan.end &&
        end != m_choice.timeSpan.begin && end != m_choice.endSpan.begin &&
        token(begin - 1).symbol == ',' && Reader(m_document, end + 1).mayHave(end, kWeekdayNames))
        return false;
    // "Ihre Hausverwaltung" below all else signs.
    if (begin == field.begin && end == field.end && &field == &m_document.fields.back() &&
        token(begin).upper() && reader.has(begin, Meaning::TitleLead) &&
        !reader.has(begin, Meaning::The) && !reader.has(begin, Meaning::PlaceMarker))
        return false;
    // "CONF#88213"
    if (token(begin + 1).symbol == '#' && !token(begin + 1).spaceBefore)
        return false;
    // "tech: Gus": some other label's value.
    if (begin > field.begin + 1 && token(begin - 1).symbol == ':' && !token(begin).unspaced &&
        token(begin - 2).kind == TokenKind::Word && !token(begin - 2).used)
        return false;
    // "A Field Guide to Lichens; The Wrong Boat": one of several things.
    if (begin > field.begin && token(begin - 1).symbol == ';')
        return false;
    // "(Ausweise!)", "(INSET)", "(H)"
    if (begin > field.begin && token(begin - 1).symbol == '(' && shape.words == 1 &&
        (token(end).symbol == '!' || languageInfo(token(begin).language).capitalNouns ||
         isAcronym({begin, end})))
        return false;
    const auto numbers =
        std::count_if(m_document.tokens.begin() + begin, m_document.tokens.begin() + end,
                      [](const Token &each) { return each.kind == TokenKind::Number; });
    // Without capitals only a line of its own is a name, or what closes a note.
    return shape.title && numbers < 2 &&
           (!token(begin).unspaced || (begin == field.begin && end == field.end) ||
            closesNote(field, part));
}

} // namespace pindle::conversion
