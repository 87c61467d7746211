#include <algorithm>
#include <array>

#include "PindleConversion/compose/PlaceFinder.h"

namespace pindle::conversion {

namespace {

constexpr int kAside = 55;     ///< less for where the event itself is not
constexpr int kOfSide = 20;    ///< less for where one meets or departs, told apart
constexpr int kLater = 30;     ///< less for one on the line of a later hour
constexpr int kFollowUp = 40;  ///< less for one of what follows the event
constexpr int kInBrackets = 8; ///< less for what only explains a place
constexpr int kAsked = 12;     ///< less for a place that a speaker only asks about

/// Words that lead to a date or time.
constexpr Meanings kMomentLeads{Meaning::DateMarker, Meaning::TimeMarker, Meaning::RangeFrom};

/// What tells of a place.
constexpr Meanings kPlaceWords{Meaning::PlaceMarker, Meaning::PlaceBehind, Meaning::PlaceNoun,
                               Meaning::StreetWord, Meaning::Online};

} // namespace

PlaceFinder::PlaceFinder(const Document &document, const Choice &choice)
    : PlaceNames(document)
    , m_choice(choice)
    , m_anchorField(document.tokens[choice.anchor()].field)
    , m_momentLine(std::max(lineOf(choice.anchor()),
                            choice.timeSpan.empty() ? 0 : lineOf(choice.timeSpan.begin))) {}

TokenSpan PlaceFinder::run() {
    for (std::uint32_t f = 0; f < m_document.fields.size(); ++f)
        if (const TokenSpan part = inReach(m_document.fields[f], m_choice.anchor()); !part.empty())
            consider(f, part);
    return m_score >= kLeastScore ? m_best : TokenSpan{};
}

void PlaceFinder::consider(std::uint32_t f, TokenSpan part) {
    const Field &field = m_document.fields[f];
    const Reader reader(m_document, field.end);
    if (field.label == Label::Place || field.label == Label::Start || field.label == Label::When)
        labelled(field);
    links(field, part);
    // "Lezing: Bijen in de tuin - di 21/4 - Bibliotheek": the place follows the day.
    const bool titled = field.label == Label::Title;
    if (field.ignored || field.label == Label::Price ||
        (titled && (f != m_anchorField || token(field.begin).used ||
                    reader.mayHave(field.begin, kMomentLeads))))
        return;
    if (titled)
        part.begin = std::max(part.begin, m_choice.anchor());
    if (f != m_anchorField && isArrival(reader, field.begin))
        return;
    if (m_choice.kind == EventKind::Travel)
        departure(reader, field);
    bool inQuotes = false;
    for (std::uint32_t i = part.begin; i < part.end; ++i) {
        if (reader.symbol(i, '"')) {
            inQuotes = !inQuotes;
            if (inQuotes)
                quoted(reader, field, i);
        }
        // What stands in quotes is a name of something else.
        if (token(i).used || inQuotes)
            continue;
        if (reader.symbol(i, '('))
            bracketed(reader, i);
        if (reader.symbol(i, '[') && i == field.begin)
            sender(reader, i);
        if (!reader.mayHave(i, kPlaceWords))
            continue;
        if (const Sense *marker = reader.sense(i, Meaning::PlaceMarker))
            marked(reader, i, *marker);
        if (const Sense *behind = reader.sense(i, Meaning::PlaceBehind); behind && !behind->value)
            before(reader, field, i);
        if (isPlaceNoun(reader, i))
            compound(reader, field, i);
        if (reader.has(i, Meaning::StreetWord))
            street(reader, field, i);
        if (const Sense *online = reader.sense(i, Meaning::Online);
            online && !reader.has(i, Meaning::Event) && !isOnlineDeed(reader, field, i, *online))
            offer({i, i + online->length}, kLeastScore, i);
    }
    // "Show date: Saturday 12 Feb. Doors 6:30, recital 7:15. Osgood Conservatory, Rm 100."
    const bool longer = field.label == Label::Date && field.end > part.begin &&
                        !m_document.sameSentence(field.begin, field.end - 1);
    // "Pick-up: Mon 6 Jul, 11:00, Faro Airport, desk 4"
    const bool start = field.label == Label::Start && f == m_anchorField;
    if ((field.label == Label::None || field.label == Label::When || titled || longer || start) &&
        !isBelowPromise(f))
        pieces(reader, f, part);
}

void PlaceFinder::departure(const Reader &reader, const Field &field) {
    constexpr int kScore = 40;
    static constexpr Meanings kOther{Meaning::Event, Meaning::RoleWord, Meaning::LabelWord};
    const std::uint32_t begin = m_choice.timeSpan.end;
    if (begin <= field.begin || begin >= field.end || m_choice.timeSpan.empty() ||
        m_choice.endSpan.empty() || lineOf(m_choice.endSpan.begin) <= field.line ||
        !token(begin).upper() || reader.mayHave(begin, kOther))
        return;
    offer({begin, nameEnd(reader, begin)}, kScore, begin);
}

void PlaceFinder::offer(TokenSpan span, int score, std::uint32_t at) {
    const Reader reader(m_document, span.end);
    while (!span.empty() &&
           ((isEdgeMark(token(span.end - 1)) && !closesName(span)) || dangles(reader, span) ||
            (reader.has(span.end - 1, Meaning::PlaceStop) && !token(span.end - 1).upper())))
        --span.end;
    while (!span.empty() && isEdgeMark(token(span.begin)) && !opensName(span))
        ++span.begin;
    // "chorprobe gemeindehaus": where nouns join to one word, the first of two is the event.
    if (span.end == span.begin + 2 && !token(span.begin).capital &&
        reader.language(span.begin).capitalNouns && reader.has(span.begin, Meaning::Event) &&
        !reader.has(span.begin, Meaning::PlaceNoun) &&
        reader.has(span.begin + 1, Meaning::PlaceNoun))
        ++span.begin;
    // "「海辺の図書館」を読みます"
    if (token(span.begin).symbol == '"' && opensName(span) && readsOn(reader, span))
        return;
    // "local time" in brackets is no place.
    const Sense *zone = reader.sense(span.begin, Meaning::ZoneWord);
    // "closed Monday, Memorial Day"
    const Sense *holiday = reader.sense(span.begin, Meaning::Holiday);
    if (holiday && span.begin + holiday->length == span.end)
        return;
    // "Home | News | Events"
    if (const Sense *head = reader.sense(span.begin, Meaning::PageHead);
        head && span.begin + head->length == span.end &&
        m_document.fields[token(span.begin).field].label != Label::Place)
        return;
    // "closed Tuesday (Republic Day)"
    if (reader.has(span.end - 1, Meaning::DayWord) && span.end > span.begin + 1 &&
        token(span.end - 1).upper())
        return;
    // "at the Founders' Dinner"
    if (token(span.end).symbol == '\'' && !token(span.end).spaceBefore &&
        token(span.end + 1).meanings.has(Meaning::Event))
        return;
    // "市一医院口腔科 王医生"
    if (token(span.end - 1).unspaced)
        span.end = beforePerson(reader, span);
    span.end = beforePhone(reader, span);
    // "(SGT, UTC+8)"
    if (span.empty() || reader.has(span.begin, Meaning::ZoneOffset))
        return;
    if (closesNotice(span) || isWork(span) || isQuotedInList(span) || isAmount(span) ||
        saysTooLittle(span) || (zone && zone->value != 0))
        return;
    if (m_document.sameSentence(at, m_choice.anchor()))
        score += 12;
    else if (!token(span.end - 1).capital && isWhereThingsWere(at))
        score -= kAside;
    else if (token(at).field == m_anchorField || isBesideTime(at))
        score += 6;
    if (isAside(at))
        score -= kAside;
    if (isOfSide(reader, at))
        score -= kOfSide;
    // "Methodist Church (back entrance on Fore St)"
    if (span.begin > 1 && token(span.begin - 1).symbol == '(' && token(span.begin - 2).upper() &&
        !token(span.begin - 2).used && reader.has(span.begin - 2, Meaning::PlaceNoun) &&
        span.end > span.begin + 2)
        score -= kInBrackets;
    if (isDenied(at) || isTaken(span))
        score -= kAside;
    else if (isAsked(at))
        score -= isSettledOtherwise(at) ? 2 * kAsked : kAsked;
    if (isSaidOfOtherDay(at))
        score -= kAsked;
    if (isOfEnd(span) || isOfOther(at))
        score -= kAside;
    if (isOfLater(at))
        score -= kLater;
    else if (isOfFollowUp(reader, std::min(at, span.begin)))
        score = std::max(std::min(score, kLeastScore), score - kFollowUp);
    // "文化会館 小ホール": a house and its room.
    if (score == m_score && span.begin == m_best.end && token(span.begin).unspaced) {
        m_best.end = span.end;
        return;
    }
    const bool wider = score == m_score && span.end - span.begin > m_best.end - m_best.begin;
    if (score > m_score || wider) {
        m_score = score;
        m_best = span;
    }
}

bool PlaceFinder::isAmount(TokenSpan span) const {
    for (std::uint32_t i = span.begin; i < span.end; ++i)
        if (isCurrencySign(token(i).symbol))
            return true;
    return std::none_of(m_document.tokens.begin() + span.begin,
                        m_document.tokens.begin() + span.end, [](const Token &each) {
                            return each.kind != TokenKind::Number && each.kind != TokenKind::Symbol;
                        });
}

bool PlaceFinder::saysTooLittle(TokenSpan span) const {
    const Token &first = token(span.begin);
    const Reader reader(m_document, span.end);
    if (first.unspaced && span.end == span.begin + 1 &&
        reader.language(span.begin).script == Script::Chinese)
        return first.isOneSign();
    const Sense *counter =
        first.kind == TokenKind::Number ? reader.sense(span.begin + 1, Meaning::Counter) : nullptr;
    // "05车12A号"
    return counter && (counter->value == 0 || token(span.begin + 1).isOneSign());
}

bool PlaceFinder::isAside(std::uint32_t at) const {
    constexpr std::uint32_t kReach = 5;
    const Field &field = m_document.fields[token(at).field];
    const std::uint32_t begin = field.begin;
    // "be at the station" tells it with the marker.
    constexpr std::uint32_t kBehind = 3;
    const Reader reader(m_document, std::min(field.end, at + kBehind));
    if (token(at).meanings.has(Meaning::AsideLead) && !reader.has(at, Meaning::PlaceMarker) &&
        Reader(m_document, field.end).has(at, Meaning::AsideLead))
        return true;
    static constexpr Meanings kLeads{Meaning::AsideLead, Meaning::RangeFrom};
    for (std::uint32_t i = at + 1; i > begin && at + 1 - i <= kReach; --i)
        if (reader.mayHave(i - 1, kLeads) && m_document.sameSentence(i - 1, at) &&
            ((i <= at && reader.has(i - 1, Meaning::AsideLead)) ||
             (reader.has(i - 1, Meaning::RangeFrom) && reader.has(i - 1, Meaning::PlaceMarker) &&
              isFetched(reader, i - 1))))
            return true;
    return false;
}

bool PlaceFinder::isOfSide(const Reader &reader, std::uint32_t at) const {
    constexpr std::uint32_t kReach = 12;
    if (m_document.sameSentence(at, m_choice.anchor()) || m_choice.endSpan.empty())
        return false;
    const std::uint32_t begin = m_document.fields[token(at).field].begin;
    for (std::uint32_t i = at; i > begin && at - i < kReach; --i) {
        if (!m_document.sameSentence(i - 1, at))
            return false;
        const Sense *role = reader.sense(i - 1, Meaning::RoleWord);
        if (role && role->value == static_cast<int>(Role::Side))
            return true;
    }
    return false;
}

bool PlaceFinder::isOfFollowUp(const Reader &reader, std::uint32_t at) const {
    constexpr std::uint32_t kReach = 8;
    constexpr std::uint32_t kLongest = 3;
    const std::uint32_t moment = std::max(m_choice.anchor(), m_choice.timeSpan.begin);
    if (at <= moment || m_choice.timeSpan.empty() || m_choice.kind == EventKind::Travel)
        return false;
    if (const Sense *marker = reader.senseBefore(at, Meaning::PlaceMarker, kLongest))
        at -= marker->length;
    // ", wesele w Dworku Lipowym"
    const std::uint32_t head = m_document.fields[token(at).field].begin;
    const bool named = head < m_choice.anchor() && reader.word(head) && !token(head).used;
    const Sense *event = reader.senseBefore(at, Meaning::Event, kLongest);
    if (event && named && at - event->length > moment &&
        token(at - event->length - 1).symbol == ',')
        return true;
    std::uint32_t begin = at;
    while (begin > moment && at - begin < kReach && m_document.sameSentence(begin - 1, at))
        --begin;
    return begin < at && !m_document.sameSentence(begin, m_choice.anchor()) &&
           !m_document.sameSentence(begin, m_choice.timeSpan.begin) &&
           !m_document.sameSentence(begin - 1, begin) && reader.has(begin, Meaning::Event) &&
           !reader.has(begin, Meaning::PlaceNoun) && token(begin).field == m_anchorField;
}

bool PlaceFinder::isWhereThingsWere(std::uint32_t at) const {
    constexpr std::uint32_t kReach = 8;
    if (!m_choice.timeSpan.empty() && m_document.sameSentence(at, m_choice.timeSpan.begin))
        return false;
    const Reader reader(m_document, at);
    const std::uint32_t low = m_document.fields[token(at).field].begin;
    for (std::uint32_t k = at; k > low && at - k < kReach && m_document.sameSentence(k - 1, at);
         --k)
        if (reader.has(k - 1, Meaning::PastVerb) && !token(k - 1).capital)
            return true;
    return false;
}

bool PlaceFinder::isBehindEnd(TokenSpan span) const {
    constexpr std::uint32_t kLongestMarker = 3;
    const TokenSpan end = m_choice.endSpan;
    bool behind = m_choice.timeSpan.end < end.begin && span.begin > end.end &&
                  span.begin - end.end <= kLongestMarker && m_score > 0;
    for (std::uint32_t i = end.end; behind && i < span.begin; ++i)
        behind = token(i).kind == TokenKind::Word;
    return behind;
}

bool PlaceFinder::isCoveredByEnd(TokenSpan span) const {
    constexpr std::uint32_t kReach = 3;
    const Reader reader(m_document, m_choice.endSpan.begin);
    for (std::uint32_t k = 1; k <= std::min(kReach, span.begin); ++k)
        if (const Sense *role = reader.sense(span.begin - k, Meaning::RoleWord);
            role && role->value == static_cast<int>(Role::End) && role->length >= k)
            return true;
    return false;
}

bool PlaceFinder::isOfEnd(TokenSpan span) const {
    const TokenSpan end = m_choice.endSpan;
    if (end.empty() || end.begin == m_choice.timeSpan.begin || end.begin == m_choice.dateSpan.begin)
        return false;
    const std::uint32_t field = token(end.begin).field;
    const bool own = field != m_anchorField &&
                     (m_choice.timeSpan.empty() || field != token(m_choice.timeSpan.begin).field);
    // "Swartz Bay arr 11:35"
    const Sense *role = Reader(m_document, end.begin).sense(span.end, Meaning::RoleWord);
    return isBehindEnd(span) || span.end == end.begin || isCoveredByEnd(span) ||
           (role && span.end + role->length == end.begin) ||
           (own && token(span.begin).field == field);
}

bool PlaceFinder::isOfOther(std::uint32_t at) const {
    return m_choice.isOfOther(token(at).field);
}

bool PlaceFinder::isOfLater(std::uint32_t at) const {
    return m_choice.isOfLater(token(at).field);
}

bool PlaceFinder::isBesideTime(std::uint32_t at) const {
    return !m_choice.laterFields.empty() && token(at).field == token(m_choice.timeSpan.begin).field;
}

void PlaceFinder::labelled(const Field &field) {
    std::uint32_t end = field.begin;
    const Reader reader(m_document, field.end);
    while (end < field.end && !token(end).used && !(end > field.begin && startsAside(reader, end)))
        ++end;
    if (end == field.begin)
        return;
    // "Room: 112": the number alone would say nothing.
    const bool numbered = field.label == Label::Place && end == field.begin + 1 &&
                          token(field.begin).kind == TokenKind::Number &&
                          !field.labelWords.empty() && !token(field.labelWords.begin).unspaced;
    if (numbered && Reader(m_document, field.begin).has(field.labelWords.begin, Meaning::PlaceNoun))
        return offer({field.labelWords.begin, end}, 1000, field.begin);
    // "📍 Scout hut £5 on the door"
    std::uint32_t price = field.begin + 1;
    while (price < end && !isCurrencySign(token(price).symbol))
        ++price;
    if (price < end && field.label == Label::Place)
        return offer({field.begin, price}, 1000, field.begin);
    if (field.label != Label::Place && end != field.end && !startsAside(reader, end))
        return;
    // "Entry 50p, teas and cakes" says what it costs.
    if (field.label != Label::Place && token(field.begin).kind == TokenKind::Number)
        return;
    // "Rendez-vous : parking du Moulin"
    if (field.label == Label::When && !shapeOf({field.begin, end}).noun)
        return;
    offer({field.begin, end}, field.label == Label::Place ? 1000 : 900, field.begin);
}

} // namespace pindle::conversion
