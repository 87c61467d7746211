#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "PindleConversion/compose/Compose.h"

namespace pindle::conversion {

namespace {

constexpr int kLeastScore = 20;
constexpr int kFrom = 30;    ///< where something comes from
constexpr int kUnnamed = 46; ///< "the park"
constexpr int kAside = 35;   ///< less for a place that something else happens at
constexpr int kNamedStay = 30;
constexpr int kOwnLine = 26;                ///< more for a place that has the line below the date
constexpr int kAsked = 12;                  ///< less for a place that a speaker only asks about
constexpr std::uint32_t kLongestName = 14;  ///< tokens
constexpr std::uint32_t kOnlineReach = 400; ///< tokens that are asked whether the event is online

/// Hosts of meetings; a link to one is where the event is.
constexpr std::array<std::string_view, 12> kMeetingHosts{
    "zoom.us",     "teams.microsoft", "teams.live",    "meet.google", "webex.com", "whereby.com",
    "gotomeeting", "meet.jit.si",     "bluejeans.com", "skype.com",   "/join",     "meet"};

struct Shape {
    bool noun = false;    ///< names a kind of place
    bool street = false;  ///< a street, perhaps with its number
    bool capital = false; ///< some word is capitalised
    bool title = true;    ///< every word that counts is capitalised
    bool event = false;
    int words = 0;
};

class PlaceFinder {
public:
    PlaceFinder(const Document &document, const Choice &choice)
        : m_document(document)
        , m_choice(choice)
        , m_anchorField(document.tokens[choice.anchor()].field)
        , m_momentLine(std::max(lineOf(choice.anchor()),
                                choice.timeSpan.empty() ? 0 : lineOf(choice.timeSpan.begin))) {}

    /// The place is the event's name as well.
    bool isName(TokenSpan place) const {
        return isStay() &&
               isTitlePosition(m_document.fields[token(place.begin).field], place.begin);
    }

    TokenSpan run() {
        for (std::uint32_t f = 0; f < m_document.fields.size(); ++f)
            if (isInReach(f, m_anchorField))
                consider(f);
        return m_score >= kLeastScore ? m_best : TokenSpan{};
    }

private:
    const Token &token(std::uint32_t i) const { return m_document.tokens[i]; }
    std::uint32_t lineOf(std::uint32_t i) const { return m_document.fields[token(i).field].line; }

    void consider(std::uint32_t f) {
        const Field &field = m_document.fields[f];
        const Reader reader(m_document, field.end);
        if (field.label == Label::Place || field.label == Label::Start ||
            field.label == Label::When)
            labelled(field);
        links(field);
        if (field.ignored || field.label == Label::Price || field.label == Label::Title)
            return;
        if (f != m_anchorField && isArrival(reader, field.begin))
            return;
        bool quoted = false;
        for (std::uint32_t i = field.begin; i < field.end; ++i) {
            quoted = quoted != reader.symbol(i, '"');
            // What stands in quotes is a name of something else.
            if (token(i).used || quoted)
                continue;
            if (const Sense *marker = reader.sense(i, Meaning::PlaceMarker))
                marked(reader, i, *marker);
            if (reader.has(i, Meaning::PlaceBehind))
                before(reader, field, i);
            if (isPlaceNoun(reader, i))
                compound(reader, field, i);
            if (reader.symbol(i, '('))
                bracketed(reader, i);
            if (const Sense *online = reader.sense(i, Meaning::Online);
                online && !reader.has(i, Meaning::Event))
                offer({i, i + online->length}, kLeastScore, i);
        }
        if (field.label == Label::None || field.label == Label::When)
            pieces(reader, f);
    }

    void offer(TokenSpan span, int score, std::uint32_t at) {
        const Reader reader(m_document, span.end);
        while (!span.empty() &&
               (isEdgeMark(token(span.end - 1)) ||
                (reader.has(span.end - 1, Meaning::PlaceStop) && !token(span.end - 1).upper())))
            --span.end;
        while (!span.empty() && isEdgeMark(token(span.begin)))
            ++span.begin;
        // "local time" in brackets is no place.
        const Sense *zone = reader.sense(span.begin, Meaning::ZoneWord);
        if (span.empty() || isAmount(span) || (zone && zone->value != 0))
            return;
        if (m_document.sameSentence(at, m_choice.anchor()))
            score += 12;
        else if (token(at).field == m_anchorField)
            score += 6;
        if (isAside(at))
            score -= kAside;
        if (isAsked(at))
            score -= kAsked;
        if (isOfEnd(span))
            score -= kAside;
        const bool wider = score == m_score && span.end - span.begin > m_best.end - m_best.begin;
        if (score > m_score || wider) {
            m_score = score;
            m_best = span;
        }
    }

    /// "12 €", "5,90": no place consists of digits and signs alone, or has a price.
    bool isAmount(TokenSpan span) const {
        constexpr std::u32string_view kMoney = U"$€£¥";
        for (std::uint32_t i = span.begin; i < span.end; ++i)
            if (token(i).symbol != 0 && kMoney.find(token(i).symbol) != std::u32string_view::npos)
                return true;
        return std::none_of(m_document.tokens.begin() + span.begin,
                            m_document.tokens.begin() + span.end, [](const Token &each) {
                                return each.kind != TokenKind::Number &&
                                       each.kind != TokenKind::Symbol;
                            });
    }

    /// "and afterwards at the hall": not where the event itself is.
    bool isAside(std::uint32_t at) const {
        constexpr std::uint32_t kReach = 5;
        const std::uint32_t begin = m_document.fields[token(at).field].begin;
        const Reader reader(m_document, at + 1);
        for (std::uint32_t i = at; i > begin && at - i < kReach; --i)
            if (m_document.sameSentence(i - 1, at) && reader.has(i - 1, Meaning::AsideLead))
                return true;
        return false;
    }

    /// "arrival Palma 08:25": where the event ends.
    bool isOfEnd(TokenSpan span) const {
        const TokenSpan end = m_choice.endSpan;
        if (end.empty() || end.begin == m_choice.timeSpan.begin ||
            end.begin == m_choice.dateSpan.begin)
            return false;
        const std::uint32_t field = token(end.begin).field;
        const bool own = field != m_anchorField && (m_choice.timeSpan.empty() ||
                                                    field != token(m_choice.timeSpan.begin).field);
        return span.end == end.begin || (own && token(span.begin).field == field);
    }

    /// "At yours?" in a conversation.
    bool isAsked(std::uint32_t at) const {
        constexpr std::uint32_t kReach = 12;
        const Field &field = m_document.fields[token(at).field];
        if (!field.spoken)
            return false;
        for (std::uint32_t i = at; i < std::min(field.end, at + kReach); ++i)
            if (token(i).symbol == '?')
                return m_document.sameSentence(i, at);
        return false;
    }

    void labelled(const Field &field) {
        std::uint32_t end = field.begin;
        while (end < field.end && !token(end).used)
            ++end;
        if (end == field.begin)
            return;
        if (field.label != Label::Place && end != field.end)
            return;
        // "Rendez-vous : parking du Moulin"
        if (field.label == Label::When && !shapeOf({field.begin, end}).noun)
            return;
        offer({field.begin, end}, field.label == Label::Place ? 1000 : 900, field.begin);
    }

    /// A link is the place of a meeting that is held online.
    void links(const Field &field) {
        for (std::uint32_t i = field.begin; i < field.end; ++i) {
            if (token(i).kind != TokenKind::Link)
                continue;
            const auto text = m_document.slice(token(i));
            const bool meeting =
                std::any_of(kMeetingHosts.begin(), kMeetingHosts.end(), [&](std::string_view host) {
                    return text.find(host) != std::string_view::npos;
                });
            if (meeting || field.label == Label::Link || isCalledLink(field, i) || heldOnline())
                offer({i, i + 1}, kLeastScore + (meeting ? 4 : 2), m_choice.anchor());
        }
    }

    /// "Your link (do not share): https://..."
    bool isCalledLink(const Field &field, std::uint32_t link) const {
        constexpr std::uint32_t kReach = 8;
        const Reader reader(m_document, link);
        for (std::uint32_t i = link; i > field.begin && link - i < kReach; --i) {
            const Sense *label = reader.sense(i - 1, Meaning::LabelWord);
            if (label && label->value == static_cast<int>(Label::Link))
                return true;
        }
        return false;
    }

    bool heldOnline() {
        if (!m_online) {
            const auto size = static_cast<std::uint32_t>(m_document.tokens.size());
            const Reader reader(m_document, size);
            m_online = false;
            for (std::uint32_t i = 0; i < std::min(size, kOnlineReach) && !*m_online; ++i)
                m_online = reader.has(i, Meaning::Online) || reader.has(i, Meaning::OnlineEvent);
        }
        return *m_online;
    }

    Shape shapeOf(TokenSpan span) const {
        Shape shape;
        const Reader reader(m_document, span.end);
        for (std::uint32_t i = span.begin; i < span.end; ++i) {
            shape.event = shape.event || reader.has(i, Meaning::Event);
            if (!reader.word(i))
                continue;
            const bool noun = isPlaceNoun(reader, i);
            const bool filler = reader.has(i, Meaning::The) || reader.has(i, Meaning::Of) ||
                                reader.has(i, Meaning::And) ||
                                (shape.words > 0 && reader.has(i, Meaning::PlaceMarker));
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

    static bool leadsToPlace(const Reader &reader, std::uint32_t i) {
        return reader.has(i, Meaning::PlaceNoun) ||
               (reader.word(i) && reader.at(i)->word == 0 && reader.has(i + 1, Meaning::PlaceNoun));
    }

    /// "張家銘": a sign that goes on is no kind of place.
    static bool isPlaceNoun(const Reader &reader, std::uint32_t i) {
        constexpr std::uint32_t kOneSign = 3; ///< bytes
        if (!reader.has(i, Meaning::PlaceNoun))
            return false;
        const Token &sign = *reader.at(i);
        const Token *next = reader.at(i + 1);
        return !(sign.unspaced && sign.end - sign.begin <= kOneSign && next && next->unspaced &&
                 !next->spaceBefore && next->kind == TokenKind::Word && next->word == 0);
    }

    /// A small word within a name.
    static bool isFiller(const Reader &reader, std::uint32_t i) {
        return reader.has(i, Meaning::The) || reader.has(i, Meaning::Of) ||
               reader.has(i, Meaning::And) || reader.has(i, Meaning::PlaceMarker) ||
               reader.has(i, Meaning::PlaceNoun);
    }

    /// "Main Street", "rue Haute", "calle de Alcalá", and "Wilgenstraat", whose end alone is known.
    bool isStreet(const Reader &reader, std::uint32_t i, std::uint32_t begin) const {
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

    bool stops(const Reader &reader, std::uint32_t i, std::uint32_t begin) const {
        const Token &current = token(i);
        if (current.used || current.kind == TokenKind::Link || current.kind == TokenKind::Mail ||
            current.sentence != token(begin).sentence)
            return true;
        if (current.kind == TokenKind::Symbol)
            return !(current.symbol == '&' || current.symbol == '\'' || current.symbol == '#' ||
                     current.symbol == '.' || (current.symbol == '-' && reader.glued(i)) ||
                     ((current.symbol == '/' || current.symbol == '+') && reader.glued(i)));
        if (i == begin)
            return false;
        // "在信義威秀看電影": what happens there follows its name.
        if (current.unspaced && reader.has(i, Meaning::Event) &&
            !reader.has(i, Meaning::PlaceNoun) && !reader.has(i + 1, Meaning::PlaceNoun))
            return true;
        // Where words are not spaced, a space ends a name.
        if (current.unspaced && current.spaceBefore && token(i - 1).unspaced &&
            reader.has(i - 1, Meaning::PlaceNoun))
            return true;
        // "in der Mensa essen": where nouns are capitals, a small word goes on with the sentence.
        const bool small = current.kind == TokenKind::Word && !current.capital &&
                           token(i - 1).capital && token(i - 1).kind == TokenKind::Word &&
                           reader.language(i).capitalNouns && current.spaceBefore;
        if (small && !isFiller(reader, i))
            return true;
        // "駅の改札前"
        if (current.unspaced && reader.has(i, Meaning::Of) && leadsToPlace(reader, i + 1))
            return false;
        const bool stopWord = reader.has(i, Meaning::PlaceStop) || reader.has(i, Meaning::Greeting);
        // "amphi A"
        const bool letter =
            current.end - current.begin == 1 && reader.has(i - 1, Meaning::PlaceNoun);
        // "Igreja de São Pedro"
        const bool ofName = i > begin + 1 && reader.has(i - 1, Meaning::Of) && token(i - 2).capital;
        // "hal van blok B"
        const bool ofKind = reader.has(i, Meaning::Of) && reader.has(i - 1, Meaning::PlaceNoun) &&
                            reader.word(i + 1) && !token(i + 1).used &&
                            (token(i + 1).capital || reader.has(i + 1, Meaning::PlaceNoun));
        if (ofKind)
            return false;
        const bool goesOn = token(i - 1).capital || reader.symbol(i - 1, ',') || letter || ofName;
        return stopWord && !(current.capital && goesOn);
    }

    /// The name from `begin` up to what ends it; commas are passed when an address goes on.
    std::uint32_t nameEnd(const Reader &reader, std::uint32_t begin) const {
        std::uint32_t i = begin;
        const std::uint32_t limit = std::min(reader.end(), begin + kLongestName);
        while (i < limit && !stops(reader, i, begin))
            ++i;
        if (reader.symbol(i, '(') && i < limit) {
            const std::uint32_t close = closing(reader, i);
            const Shape inner = shapeOf({i + 1, close});
            if (close != i && inner.words > 0 && (inner.noun || inner.street))
                i = close + 1;
        }
        while (i < limit && reader.symbol(i, ',')) {
            const std::uint32_t next = addressGoesOn(reader, i + 1, begin);
            if (next == i + 1)
                break;
            i = next;
        }
        return i;
    }

    std::uint32_t addressGoesOn(const Reader &reader, std::uint32_t i, std::uint32_t begin) const {
        if (token(i).kind == TokenKind::Number && reader.has(i + 1, Meaning::UnitWord))
            return i;
        const bool name = token(i).capital && reader.at(i + 1) && reader.at(i + 1)->capital;
        std::uint32_t end = name ? i + 1 : i;
        const std::uint32_t limit = std::min(reader.end(), i + kLongestName);
        while (end < limit && !stops(reader, end, begin))
            ++end;
        const bool stop = reader.has(i, Meaning::PlaceStop) && !name && !token(i).capital;
        if (end == i || stop || reader.has(i, Meaning::Greeting))
            return i;
        const Shape shape = shapeOf({i, end});
        if (shape.event && !shape.noun && !shape.street)
            return i;
        const bool number = token(i).kind == TokenKind::Number;
        const bool address = (number && (shape.street || shape.capital || shape.words == 0)) ||
                             (shape.street && shape.capital);
        const bool fits = address || shape.title || shape.noun || shape.street;
        return fits && shape.words <= 5 ? end : i;
    }

    static std::uint32_t closing(const Reader &reader, std::uint32_t open) {
        for (std::uint32_t i = open + 1; i < open + kLongestName && reader.at(i); ++i)
            if (reader.symbol(i, ')'))
                return i;
        return open;
    }

    void marked(const Reader &reader, std::uint32_t i, const Sense &marker) {
        // "à La Rochelle": a capital article belongs to the name.
        const std::uint32_t last = i + marker.length - 1;
        const bool article =
            marker.length > 1 && token(last).capital && reader.has(last, Meaning::The);
        const std::uint32_t begin = article ? last : last + 1;
        if (!reader.at(begin) || endsPhrase(reader, i) || refusesPlace(reader, begin) ||
            reader.has(begin, Meaning::Greeting) || token(begin).used)
            return;
        const std::uint32_t end = nameEnd(reader, begin);
        if (end == begin)
            return;
        if (token(begin).kind == TokenKind::Number && reader.has(begin + 1, Meaning::UnitWord))
            return;
        // "去打疫苗": what one goes to do.
        const std::uint32_t verb = reader.has(begin, Meaning::PlaceStop) ? begin + 1 : begin;
        if (token(begin).unspaced && reader.has(verb, Meaning::Event) && !isPlaceNoun(reader, verb))
            return;
        // "From the office: ..." tells who writes.
        if (isFrom(reader, i) && reader.symbol(end, ':'))
            return;
        if (offerWholeLine(reader, i, end))
            return;
        const Shape shape = shapeOf({begin, end});
        const bool determined = reader.has(begin, Meaning::The);
        // "at the wedding of"
        if (const std::uint32_t first = reader.skip(begin, Meaning::The);
            determined && !token(first).capital && reader.has(first, Meaning::Event) &&
            !reader.has(first, Meaning::PlaceNoun) && !reader.has(end - 1, Meaning::PlaceNoun))
            return;
        const bool named = shape.capital || token(begin).kind == TokenKind::Number;
        // "Abbazia di Santa Maria al Bosco", "Boekhandel Letterlust te Leuven" are one name.
        if (const std::uint32_t head = spokenHead(reader, i); head < i && named)
            return offer({head, end}, 58, head);
        if (const std::uint32_t head = nameHead(i); head < i && named)
            return offer({head, end}, 58, head);
        const bool behindTime = i > 0 && token(i - 1).used && shape.title;
        if (marker.value == 1 && i > 0 && token(i).word != 0 && isFrom(reader, i) && !shape.noun &&
            !behindTime)
            return;
        const bool known = shape.noun || shape.street;
        // "pense au rdv véto de Minette"
        if (!known && reader.has(begin, Meaning::Event) && !token(begin).capital)
            return;
        if (marker.value == 1 && (named || known))
            offer({nounBefore(reader, i, begin), end},
                  isFrom(reader, i) ? kFrom
                  : known           ? (named ? 58 : kUnnamed) - headingPenalty(i)
                                    : 50 - 2 * headingPenalty(i),
                  i);
        else if (marker.value == 1 && token(begin).possessive && shape.words <= 3)
            offer({begin, end}, 40, i);
        else if (marker.value == 1 && determined && !shape.event && shape.words <= 4 &&
                 shape.words > 1)
            offer({begin, end}, 30, i);
        else if (marker.value == 0 && determined && shape.words <= 3 && i > 0 &&
                 token(i - 1).used && reader.has(i, Meaning::In))
            offer({begin, end}, 24, i);
        else if (marker.value == 0 && isWeakPlace(reader, i, marker, shape))
            offer({nounBefore(reader, i, begin), end},
                  (known ? 38 : 24) - headingPenalty(i) + addressBonus({begin, end}), i);
    }

    /// "suite à la réunion", "have the pleasure of inviting you to": the marker ends a phrase of
    /// its own.
    static bool endsPhrase(const Reader &reader, std::uint32_t i) {
        constexpr std::uint32_t kLongestPhrase = 8;
        const auto ends = [&](Meaning meaning, std::uint32_t back) {
            const Sense *phrase = reader.sense(i - back, meaning);
            return phrase && phrase->length == back + 1;
        };
        for (std::uint32_t back = 1; back < std::min(i + 1, kLongestPhrase); ++back)
            if (ends(Meaning::Chatter, back) || ends(Meaning::AsideLead, back) ||
                (back > 2 && ends(Meaning::TitleLead, back)))
                return true;
        return false;
    }

    /// "in corso" is no place, but "in corso Garibaldi" and "op mijn kantoor" are.
    bool refusesPlace(const Reader &reader, std::uint32_t begin) const {
        const Sense *refused = reader.sense(begin, Meaning::NotAPlace);
        return refused && !isStreet(reader, begin, begin) &&
               !(refused->length == 1 && !token(begin).capital &&
                 reader.has(begin + 1, Meaning::PlaceNoun));
    }

    /// The kind of place that starts the name before token `i`, or `i`.
    std::uint32_t nameHead(std::uint32_t i) const {
        constexpr std::uint32_t kReach = 6;
        const Field &field = m_document.fields[token(i).field];
        const Reader reader(m_document, i);
        std::uint32_t head = i;
        const bool numbered = i > field.begin + 1 && token(i - 1).kind == TokenKind::Number &&
                              reader.has(i - 2, Meaning::PlaceNoun);
        if (i == field.begin || !(token(i - 1).capital || numbered))
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
            if (reader.has(k - 1, Meaning::PlaceNoun) && !reader.has(k - 1, Meaning::Event))
                head = k - 1;
        }
        return isTitlePosition(field, head) ? i : head;
    }

    /// "20:15, Capitol am Markt" answers where in a conversation; the name's begin, or `i`.
    std::uint32_t spokenHead(const Reader &reader, std::uint32_t i) const {
        constexpr std::uint32_t kMostWords = 3;
        const Field &field = m_document.fields[token(i).field];
        if (!field.spoken || token(i).field == m_anchorField)
            return i;
        std::uint32_t head = i;
        while (head > field.begin && i - head <= kMostWords && !token(head - 1).used &&
               token(head - 1).capital && token(head - 1).kind == TokenKind::Word &&
               !reader.has(head - 1, Meaning::Event) && !reader.has(head - 1, Meaning::Greeting) &&
               !reader.has(head - 1, Meaning::Chatter) &&
               !reader.has(head - 1, Meaning::PlaceStop) && m_document.sameSentence(head - 1, i))
            --head;
        const bool starts =
            head == field.begin || token(head - 1).used || token(head - 1).symbol == ',';
        return starts ? head : i;
    }

    /// "Pfarrkirche Sankt Veit im Moos" on a line below the date is one name.
    bool offerWholeLine(const Reader &reader, std::uint32_t marker, std::uint32_t end) {
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
    /// "kaplica na Wzgórzu": the kind of place that a marker goes on from, else `begin`.
    std::uint32_t nounBefore(const Reader &reader, std::uint32_t marker,
                             std::uint32_t begin) const {
        constexpr std::uint32_t kReach = 5;
        const std::uint32_t low = m_document.fields[token(marker).field].begin;
        for (std::uint32_t i = marker; i > low && marker - i < kReach; --i) {
            const Token &before = token(i - 1);
            if (reader.symbol(i - 1, '.') && !before.used)
                continue;
            if (before.used || before.kind != TokenKind::Word || before.unspaced ||
                !m_document.sameSentence(i - 1, marker) || reader.has(i - 1, Meaning::PlaceStop) ||
                reader.has(i - 1, Meaning::Event))
                return begin;
            if (reader.has(i - 1, Meaning::PlaceNoun))
                return i - 1;
        }
        return begin;
    }

    /// "Astronomy in the Park" above the date is a name.
    int headingPenalty(std::uint32_t i) const {
        constexpr int kPenalty = 12;
        const Field &field = m_document.fields[token(i).field];
        const bool above = token(i).field < m_anchorField && token(field.begin).capital;
        return above || isNameBeforeDate(field, i) ? kPenalty : 0;
    }

    /// "Jazz on the Lawn, Sunday 12 July": a name in capitals with a mark behind it.
    bool isNameBeforeDate(const Field &field, std::uint32_t i) const {
        if (token(i).field != m_anchorField || i > m_choice.anchor() || field.begin == i)
            return false;
        const Reader reader(m_document, field.end);
        const std::uint32_t end = nameEnd(reader, i + 1);
        return (isBreak(reader, end) || reader.symbol(end, '|')) &&
               shapeOf({field.begin, end}).title;
    }

    /// A street with its number is certain.
    int addressBonus(TokenSpan span) const {
        constexpr int kBonus = 16;
        const bool number = std::any_of(
            m_document.tokens.begin() + span.begin, m_document.tokens.begin() + span.end,
            [](const Token &each) { return each.kind == TokenKind::Number; });
        return number && shapeOf(span).street ? kBonus : 0;
    }

    /// "from" tells where something starts, but also who sends it.
    bool isFrom(const Reader &reader, std::uint32_t i) const {
        return reader.has(i, Meaning::RangeFrom);
    }

    /// "in Paris" and "in the gym" are places, "to Lyon" and "on Projects" need a kind of place.
    bool isWeakPlace(const Reader &reader, std::uint32_t i, const Sense &marker,
                     const Shape &shape) const {
        const bool ofTime = reader.has(i, Meaning::RangeTo) || reader.has(i, Meaning::TimeMarker);
        const bool behindTime = i > 0 && token(i - 1).used;
        if (ofTime)
            return (marker.length > 1 || behindTime || isVisit(reader, i)) && shape.noun;
        const bool inside = reader.has(i, Meaning::In);
        if (!inside)
            return reader.has(i, Meaning::DateMarker)
                       ? shape.noun && shape.words <= 4 && !shape.event
                       : shape.noun;
        return shape.noun || shape.street || (shape.title && !shape.event);
    }

    /// "field trip to the Aquarium"
    static bool isVisit(const Reader &reader, std::uint32_t i) {
        const Token *name = reader.at(i + 2);
        return i > 0 && reader.has(i, Meaning::RangeTo) && reader.has(i - 1, Meaning::Event) &&
               reader.has(i + 1, Meaning::The) && name && name->capital;
    }

    bool joinsName(const Reader &reader, std::uint32_t i, std::uint32_t with) const {
        const Token &current = token(i);
        if (current.used || current.sentence != token(with).sentence)
            return false;
        if (current.kind == TokenKind::Number)
            return true;
        if (current.kind == TokenKind::Symbol)
            return current.symbol == '#' || current.symbol == '&' ||
                   (current.symbol == '-' && reader.glued(i) && reader.glued(i + 1));
        if (i > 0 && token(i - 1).symbol == '-' && reader.glued(i))
            return true;
        const bool joined = current.unspaced && !reader.has(i, Meaning::TitleLead);
        return current.kind == TokenKind::Word &&
               (current.capital || joined || reader.has(i, Meaning::PlaceNoun)) &&
               !reader.has(i, Meaning::Event);
    }

    /// "Room Havel", "library room 2": a kind of place with its name beside it.
    void compound(const Reader &reader, const Field &field, std::uint32_t i) {
        std::uint32_t begin = i;
        std::uint32_t end = i + 1;
        constexpr std::uint32_t kMost = 9;
        while (end < field.end && end < i + kMost) {
            const std::uint32_t next = reader.skip(reader.skip(end, Meaning::Of), Meaning::The);
            if (next >= field.end || !joinsName(reader, next, i))
                break;
            end = next + 1;
        }
        while (begin > field.begin && begin + 5 > i && joinsName(reader, begin - 1, i) &&
               token(begin - 1).kind == TokenKind::Word && !endsCompound(reader, begin - 1))
            --begin;
        const bool numbered =
            end > i + 1 && (token(i + 1).kind == TokenKind::Number || token(i + 1).capital);
        // "Handmade-Markt" is an event.
        const bool hyphened =
            i > begin && reader.symbol(i - 1, '-') && end == i + 1 && reader.has(i, Meaning::Event);
        // "pokój 3-osobowy"
        const bool counted = isCounted(reader, i + 1) || isCounted(reader, begin);
        if (end - begin < 2 || hyphened || counted || isSeat(reader, i) ||
            tellsSeat(reader, begin, end) ||
            (!numbered && begin == i && reader.has(i, Meaning::Event)))
            return;
        if (m_choice.kind == EventKind::Travel && isRouteEnd(field, begin))
            return;
        if (isTitlePosition(field, begin)) {
            if (isStay() && shapeOf({begin, end}).title)
                offer({begin, end}, kNamedStay, i);
            return;
        }
        offer({begin, end}, numbered ? 26 : 14, i);
    }

    /// "Vide-grenier": the second half of a hyphened word that is no place.
    static bool endsCompound(const Reader &reader, std::uint32_t i) {
        return i > 1 && reader.symbol(i - 1, '-') && reader.glued(i) && reader.glued(i - 1) &&
               !reader.has(i, Meaning::PlaceNoun) && !reader.at(i)->capital;
    }

    /// "Holyport - Port Erran": the second name of a route.
    bool isRouteEnd(const Field &field, std::uint32_t begin) const {
        return begin > field.begin + 1 && token(begin - 1).symbol == '-' &&
               token(begin - 2).capital && !token(begin - 2).used;
    }

    /// "06车12F号 二等座"
    static bool tellsSeat(const Reader &reader, std::uint32_t begin, std::uint32_t end) {
        for (std::uint32_t i = begin; i < end; ++i)
            if (reader.at(i)->unspaced && reader.has(i, Meaning::Chatter) &&
                !reader.has(i, Meaning::PlaceNoun))
                return true;
        return false;
    }

    /// "Plaza 7", "Seat 22A" on a ticket.
    static bool isSeat(const Reader &reader, std::uint32_t i) {
        const Sense *label = reader.sense(i, Meaning::LabelWord);
        return label && label->value == static_cast<int>(Label::Sender) &&
               reader.number(i + 1, 0, 9999, 4);
    }

    /// From one day to another that the text names apart: where one stays is the event's name
    /// and its place.
    bool isStay() const { return m_choice.last && m_choice.endSpan.begin >= m_choice.dateSpan.end; }

    /// The first words of a line are the title's sooner than the place's.
    bool isTitlePosition(const Field &field, std::uint32_t begin) const {
        return begin == field.begin && !field.cell && field.begin <= m_choice.anchor();
    }

    /// "新宿クリニックにて": the name before the word.
    void before(const Reader &reader, const Field &field, std::uint32_t i) {
        std::uint32_t begin = i;
        while (begin > field.begin && i - begin < kLongestName && joinsBefore(reader, begin - 1, i))
            --begin;
        const Shape shape = shapeOf({begin, i});
        // "跟伦敦团队开会": who meets is no place.
        if (reader.has(i, Meaning::Event) && !shape.noun)
            return;
        if (begin != i && !(shape.event && !shape.noun))
            offer({begin, i}, shape.noun ? 52 : 44, i);
    }

    bool joinsBefore(const Reader &reader, std::uint32_t at, std::uint32_t i) const {
        const Token &current = token(at);
        if (current.used || current.sentence != token(i).sentence ||
            current.kind == TokenKind::Link || current.kind == TokenKind::Mail)
            return false;
        if (current.kind == TokenKind::Symbol)
            return current.symbol == '-' || current.symbol == '&' || current.symbol == 0x30FB;
        // "水族館の入口"
        if (reader.has(at, Meaning::Of) && reader.has(at + 1, Meaning::PlaceNoun))
            return true;
        return !(reader.has(at, Meaning::PlaceStop) || reader.has(at, Meaning::TitleLead) ||
                 reader.has(at, Meaning::And) || reader.has(at, Meaning::RangeTo));
    }

    void bracketed(const Reader &reader, std::uint32_t open) {
        const std::uint32_t close = closing(reader, open);
        if (close == open)
            return;
        const Shape shape = shapeOf({open + 1, close});
        const Sense *city = reader.sense(open + 1, Meaning::ZoneWord);
        const bool inCity = city && city->value == 0 && open + 1 + city->length == close &&
                            open > 0 && !token(open - 1).used && !token(open + 1).used;
        if (!inCity && reader.has(open + 1, Meaning::ZoneWord))
            return;
        if (((shape.noun || shape.street) && shape.capital && !shape.event) || inCity)
            offer({open + 1, close}, 34, open);
    }

    /// The parts between commas, dashes and values behind the date: one may be the place.
    void pieces(const Reader &reader, std::uint32_t f) {
        const Field &field = m_document.fields[f];
        if (f < m_anchorField && !field.cell)
            return venueAbove(reader, f);
        std::uint32_t begin = field.begin;
        const bool later = f > m_anchorField || (field.cell && f != 0);
        for (std::uint32_t i = field.begin; i <= field.end; ++i) {
            const bool space = i < field.end && i > begin && startsUnspaced(reader, i);
            if (space && !token(i).used && (later || begin > m_choice.anchor())) {
                begin = std::max(piece(reader, f, begin, i), i);
                continue;
            }
            const bool mark = i == field.end || token(i).used || isBreak(reader, i) || space;
            if (!mark)
                continue;
            if (i > begin && (later || begin > m_choice.anchor()))
                begin = piece(reader, f, begin, i);
            if (i < begin)
                continue;
            begin = space ? i : i + 1;
        }
    }

    /// "Théâtre municipal de Sens" on a line of its own between the title and the date.
    void venueAbove(const Reader &reader, std::uint32_t f) {
        constexpr int kScore = 30;
        constexpr int kMostWords = 7;
        const Field &field = m_document.fields[f];
        const bool heading = f == 0 || m_document.fields[f - 1].ignored;
        const bool capital = token(field.begin).upper() && token(field.end - 1).upper();
        if (heading || field.spoken || !capital || !reader.has(field.begin, Meaning::PlaceNoun) ||
            nameEnd(reader, field.begin) != field.end ||
            m_document.fields[f - 1].line + 1 != field.line)
            return;
        const Shape shape = shapeOf({field.begin, field.end});
        if (shape.words > 1 && shape.words <= kMostWords)
            offer({field.begin, field.end}, kScore, field.begin);
    }

    /// Where words are not spaced, a space separates parts.
    static bool startsUnspaced(const Reader &reader, std::uint32_t i) {
        const bool room = reader.at(i)->kind == TokenKind::Number && reader.at(i + 1) &&
                          reader.at(i + 1)->unspaced && reader.has(i + 1, Meaning::PlaceNoun);
        return (reader.at(i)->unspaced || room) && reader.at(i)->spaceBefore;
    }

    bool isBreak(const Reader &reader, std::uint32_t i) const {
        return reader.symbol(i, ',') || reader.symbol(i, ';') || reader.symbol(i, '(') ||
               reader.symbol(i, ')') || reader.symbol(i, ':') || reader.symbol(i, '!') ||
               reader.symbol(i, '?') || (reader.symbol(i, '-') && !reader.glued(i)) ||
               (reader.symbol(i, '.') && i + 1 < m_document.tokens.size() &&
                token(i + 1).sentence != token(i).sentence);
    }

    /// "2-persoonskamer": a kind of room, not a room.
    static bool isCounted(const Reader &reader, std::uint32_t i) {
        return reader.number(i, 0, 99) && reader.symbol(i + 1, '-') && reader.glued(i + 1) &&
               reader.glued(i + 2) && reader.word(i + 2);
    }

    /// On a ticket the line that tells the arrival names another place.
    bool isArrivalLine(const Field &field) const {
        return m_choice.kind == EventKind::Travel && !m_choice.endSpan.empty() &&
               !m_choice.timeSpan.empty() && field.line == lineOf(m_choice.endSpan.begin) &&
               field.line != lineOf(m_choice.timeSpan.begin);
    }

    /// "14 Uhr: Gesundheitstag": what is announced is the event.
    bool isAnnounced(const Reader &reader, std::uint32_t begin) const {
        return begin > 1 && reader.symbol(begin - 1, ':') && token(begin - 2).used &&
               !reader.has(begin, Meaning::PlaceNoun);
    }

    /// "parade square", "Lecture Theatre 1": what it is said last.
    static bool isKindOfPlace(const Reader &reader, TokenSpan part) {
        constexpr std::uint32_t kMost = 5;
        std::uint32_t last = part.end - 1;
        if (last > part.begin && reader.at(last)->kind == TokenKind::Number)
            --last;
        return last > part.begin && part.end - part.begin <= kMost && reader.word(last) &&
               !reader.at(last)->unspaced && reader.has(last, Meaning::PlaceNoun) &&
               !reader.has(last - 1, Meaning::Of) && !reader.has(last - 1, Meaning::The);
    }

    /// "Camp Wanahoo": a kind of place with a name that no lexicon knows.
    static bool isNamedKind(const Reader &reader, TokenSpan part) {
        if (!reader.has(part.begin, Meaning::PlaceNoun) || !reader.at(part.begin)->capital ||
            part.end < part.begin + 2)
            return false;
        for (std::uint32_t i = part.begin + 1; i < part.end; ++i)
            if (!reader.word(i) || !reader.at(i)->capital || reader.has(i, Meaning::Event))
                return false;
        return true;
    }

    /// "Arrive London": where a journey ends.
    static bool isArrival(const Reader &reader, std::uint32_t i) {
        const Sense *role = reader.sense(i, Meaning::RoleWord);
        return role && role->value == static_cast<int>(Role::End);
    }

    /// Date, name, place and time on lines of their own, in this order.
    bool isSecondBeforeTime(const Field &field) const {
        return !m_choice.timeSpan.empty() && field.label == Label::None && !field.spoken &&
               field.line > lineOf(m_choice.dateSpan.empty() ? 0 : m_choice.anchor()) + 1 &&
               field.line < lineOf(m_choice.timeSpan.begin);
    }

    /// Weighs one part; returns where to go on.
    std::uint32_t piece(const Reader &reader, std::uint32_t f, std::uint32_t begin,
                        std::uint32_t end) {
        constexpr int kMostWords = 7;
        const Field &field = m_document.fields[f];
        // "に駅の改札前": a particle belongs to what stands before it.
        constexpr std::uint32_t kOneSign = 3; ///< bytes
        while (begin + 1 < end && token(begin).unspaced && begin > field.begin &&
               token(begin - 1).used && token(begin).end - token(begin).begin <= kOneSign &&
               reader.has(begin, Meaning::PlaceStop) && reader.has(begin, Meaning::TitleLead))
            ++begin;
        const bool refused = reader.has(begin, Meaning::Person) ||
                             (reader.has(begin, Meaning::PlaceMarker) && !token(begin).upper()) ||
                             reader.has(begin, Meaning::Chatter) ||
                             (reader.has(begin, Meaning::PlaceStop) && !token(begin).upper()) ||
                             token(begin).kind == TokenKind::Link || isSeat(reader, begin) ||
                             isCounted(reader, begin) || isArrival(reader, begin) ||
                             reader.symbol(end, ':') || isAnnounced(reader, begin) ||
                             tellsSeat(reader, begin, end);
        // Without spaces the name ends where the sentence goes on.
        if (token(begin).unspaced && !reader.has(end - 1, Meaning::PlaceNoun))
            end = std::clamp(nameEnd(reader, begin), begin + 1, end);
        const Shape shape = shapeOf({begin, end});
        const bool greets = reader.has(begin, Meaning::Greeting) && !(shape.noun && shape.title);
        // "place du Marché" is no market.
        const bool nounFirst =
            reader.has(begin, Meaning::PlaceNoun) || reader.has(begin, Meaning::StreetWord);
        const std::uint32_t last = end - (reader.symbol(end - 1, '.') ? 2 : 1);
        const Sense *event = reader.sense(begin, Meaning::Event);
        // "Pub Quiz" is no pub.
        const bool named = token(begin).upper() && begin < last && token(last).upper() &&
                           !reader.has(last, Meaning::Event) && (!event || event->length == 1);
        const bool placeFirst =
            isKindOfPlace(reader, {begin, end}) || isNamedKind(reader, {begin, end}) ||
            (nounFirst &&
             (reader.has(begin, Meaning::Event)
                  ? named
                  : reader.has(begin + 1, Meaning::Of) || reader.has(begin + 1, Meaning::The)));
        // "(le 11 a New York)"
        const bool listed = reader.has(begin, Meaning::The) && !reader.symbol(begin, '\'') &&
                            reader.number(begin + 1, 0, 31);
        const bool filler = end == begin + 1 && (reader.has(begin, Meaning::Of) ||
                                                 reader.has(begin, Meaning::RangeFrom) ||
                                                 reader.has(begin, Meaning::The));
        if (refused || greets || filler || listed || isArrivalLine(field) || shape.words == 0 ||
            shape.words > kMostWords || (shape.event && !placeFirst))
            return end;
        const bool number = token(begin).kind == TokenKind::Number;
        const bool address = shape.street && (number || shape.title || shape.capital);
        const bool kind = shape.noun && (shape.title || shape.words <= 4 ||
                                         reader.has(begin, Meaning::PlaceNoun));
        const bool sameLine = field.line == m_document.fields[m_anchorField].line &&
                              (field.cell || m_document.sameSentence(begin, m_choice.anchor()) ||
                               (!m_choice.timeSpan.empty() &&
                                m_document.sameSentence(begin, m_choice.timeSpan.begin)));
        const bool nextLine =
            field.line == m_momentLine + 1 || (isSecondBeforeTime(field) && end == field.end);
        const std::uint32_t whole =
            token(begin).unspaced ? end : std::max(end, nameEnd(reader, begin));
        const Shape all = shapeOf({begin, whole});
        const bool known = address || kind || (shape.title && (all.noun || all.street));
        // "23:59 AoE": one unknown word glued to a time is no place.
        const bool loose = begin > field.begin && token(begin - 1).used && shape.words == 1;
        const auto numbers =
            std::count_if(m_document.tokens.begin() + begin, m_document.tokens.begin() + end,
                          [](const Token &each) { return each.kind == TokenKind::Number; });
        // Without capitals only a line of its own is a name.
        const bool wholeName =
            shape.title && numbers < 2 &&
            (!token(begin).unspaced || (begin == field.begin && end == field.end));
        if (!known && (loose || !(wholeName && (sameLine || nextLine || field.spoken))))
            return end;
        // "Club Sin Rumbo – Av. Constituyentes 6120"
        if (address && reader.symbol(begin - 1, '-') && !m_best.empty() &&
            m_best.end + 1 == begin) {
            m_best.end = whole;
            return end;
        }
        int score = known ? 34 : 22;
        // "Maison communale de Rixentaert" right below the date.
        if (known && nextLine && begin == field.begin && whole == field.end && token(begin).upper())
            score += kOwnLine;
        if (!sameLine && !nextLine && !(field.spoken && end == field.end))
            score -= 8;
        offer({begin, whole}, score, begin);
        return end;
    }

    const Document &m_document;
    const Choice &m_choice;
    std::uint32_t m_anchorField;
    std::uint32_t m_momentLine; ///< the last line that says when
    std::optional<bool> m_online;
    TokenSpan m_best;
    int m_score = 0;
};

} // namespace

TokenSpan findPlace(Document &document, const Choice &choice) {
    PlaceFinder finder(document, choice);
    const TokenSpan place = finder.run();
    if (place.empty() || finder.isName(place))
        return place;
    std::uint32_t begin = place.begin;
    const Reader reader(document, static_cast<std::uint32_t>(document.tokens.size()));
    constexpr std::uint32_t kLongestMarker = 4;
    for (std::uint32_t length = std::min(kLongestMarker, begin); length > 0; --length) {
        const Sense *marker = reader.sense(begin - length, Meaning::PlaceMarker);
        if (!marker || marker->length != length || !document.sameSentence(begin - length, begin))
            continue;
        begin -= length;
        break;
    }
    // "在居委会开会": what happens there may be the event's name.
    const std::uint32_t end = reader.has(place.end, Meaning::Event)
                                  ? place.end
                                  : reader.skip(place.end, Meaning::PlaceBehind);
    for (std::uint32_t i = begin; i < end; ++i)
        document.tokens[i].used = true;
    return place;
}

} // namespace pindle::conversion
