#include <algorithm>

#include "PindleConversion/compose/Compose.h"
#include "PindleConversion/compose/TitleParts.h"
#include "PindleConversion/compose/TitleScore.h"

namespace pindle::conversion {

namespace {

constexpr int kNone = -1000;
constexpr int kLoneKind = 14;     ///< less for "let's meet", of which only "meet" is left
constexpr int kLoneVerb = 60;     ///< less for the verb of "wir treffen uns"
constexpr int kPoor = 10;         ///< below it the place says more
constexpr int kPlaceAgain = 60;   ///< less for words that name the place once more
constexpr int kOnlyFillers = 120; ///< "Let's meet" is a title when there is no better one

/// Offers what the text says between its dates, times and places, and keeps the best.
class TitleFinder : private TitleWords {
public:
    TitleFinder(const Document &document, const Choice &choice, TokenSpan place)
        : TitleWords(document)
        , m_choice(choice)
        , m_place(place)
        , m_parts(document)
        , m_scores(document, choice) {}

    TokenSpan run() {
        for (const Field &field : m_document.fields)
            if (const TokenSpan part = inReach(field, m_choice.anchor()); !part.empty())
                consider(field, part);
        return m_best;
    }

    /// "请携带身份证", "portate i documenti": talk that names nothing.
    bool isPoor() const {
        const bool note =
            !m_best.empty() && m_document.fields[token(m_best.begin).field].label == Label::Note;
        if (m_score >= kPoor || (contains(m_best, Meaning::Event) && !note))
            return false;
        // "4名" of a booking
        if (token(m_best.begin).kind == TokenKind::Number && countsThings(m_best))
            return true;
        const Reader reader(m_document, m_best.end);
        if (greets(reader))
            return true;
        for (std::uint32_t i = m_best.begin; i < m_best.end; ++i)
            if (token(i).upper() && i > m_best.begin)
                return false;
        return !hasContent(m_best) || reader.has(m_best.begin, Meaning::Chatter);
    }

private:
    /// "Beste mevrouw Jansen": whom the text speaks to.
    bool greets(const Reader &reader) const {
        constexpr std::uint32_t kLongestName = 2;
        const std::uint32_t name = reader.skip(m_best.begin, Meaning::Greeting);
        if (name == m_best.begin && !(name > 0 && token(name - 1).meanings.has(Meaning::Greeting)))
            return false;
        bool named = name < m_best.end && m_best.end - name <= kLongestName;
        for (std::uint32_t i = name; i < m_best.end && named; ++i)
            named = token(i).upper();
        return named || reader.has(name, Meaning::Person);
    }

    void consider(const Field &field, TokenSpan part) {
        // "Zoom: reading group 8 April" names how and what at once.
        // "Ticket: IC 5302 06:14" tells more than a price.
        const bool aside =
            field.ignored || field.label == Label::Link || field.label == Label::Price;
        if (aside && &field != anchorField() && !opensWithWay(field))
            return;
        const auto runs = runsOf(m_document, part);
        for (const Run &run : runs)
            offerRun(field, run, runs.size() == 1 && !run.afterUsed && !run.beforeUsed);
        offerLabel(field);
    }

    /// "Join Zoom Meeting: Grants Q&A" as a text's first words: how, then what.
    bool opensWithWay(const Field &field) const {
        const auto begin = m_document.tokens.begin();
        return field.label == Label::Link && !field.ignored && token(field.begin).upper() &&
               &field == &m_document.fields.front() && hasContent({field.begin, field.end}) &&
               std::none_of(begin + field.begin, begin + field.end, [](const Token &each) {
                   return each.kind == TokenKind::Link || each.kind == TokenKind::Number;
               });
    }

    const Field *anchorField() const { return &m_document.fields[token(m_choice.anchor()).field]; }

    /// "Check-in: ..." may be all that the event is called.
    void offerLabel(const Field &field) {
        const bool names = field.label == Label::Start || field.label == Label::Deadline ||
                           field.label == Label::When;
        if (field.labelWords.empty() || !names)
            return;
        constexpr int kOwn = 44;
        constexpr int kWeak = 5;
        constexpr int kWeakest = -200;
        // "Delivery slot: Tuesday 14:00" says more than "Appointment: Tuesday".
        const bool own = contains(field.labelWords, Meaning::Event) &&
                         !contains(field.labelWords, Meaning::GeneralEvent);
        if (field.label == Label::When && !own)
            return;
        const int score = field.label == Label::When                   ? kOwn
                          : contains(field.labelWords, Meaning::Event) ? kWeak
                                                                       : kWeakest;
        if (score > m_score) {
            m_score = score;
            m_best = field.labelWords;
        }
    }

    /// Offers the parts of one run; `alone` when it is the whole field.
    void offerRun(const Field &field, const Run &run, bool alone) {
        ++m_order;
        const bool first = !m_sawText;
        for (TokenSpan part : m_parts.partsOf(run.span)) {
            TokenSpan trimmed = m_parts.trim(part);
            const bool onlyFillers = trimmed.empty() || !hasLetters(trimmed);
            if (onlyFillers)
                trimmed = m_parts.trimMarks(part);
            const TokenSpan kind = eventIn(trimmed);
            const bool event = onlyFillers && !kind.empty();
            if (event)
                trimmed = kind;
            const bool bare =
                onlyFillers && !event && (trimmed.end - trimmed.begin < 2 || !says(trimmed));
            if (trimmed.empty() || !hasLetters(trimmed) || bare || isSmallTalk(trimmed))
                continue;
            const TitleScore::Weight weight =
                m_scores.weigh({field, run, part, trimmed, alone, first, m_order});
            m_sawText = m_sawText || weight.opens;
            const int score =
                weight.score -
                (onlyFillers ? (event ? (isVerb(trimmed) ? kLoneVerb : kLoneKind) : kOnlyFillers)
                             : 0) -
                (namesPlace(trimmed) ? kPlaceAgain : 0);
            if (score > m_score) {
                m_score = score;
                m_best = m_parts.shorten(onlyFillers && !event ? withoutLead(trimmed) : trimmed);
            }
        }
    }

    /// "can you pop in on", before the day, where all of it leads to the event.
    TokenSpan withoutLead(TokenSpan part) const {
        constexpr std::uint32_t kFewest = 3;
        const Reader reader(m_document, part.end);
        const bool leads = part.end >= part.begin + kFewest && token(part.end).used &&
                           !token(part.end - 1).unspaced && !token(part.end - 1).capital &&
                           reader.has(part.end - 1, Meaning::DateMarker);
        return {part.begin, part.end - (leads ? 1U : 0U)};
    }

    /// "Wir treffen uns": where nouns have capitals, a small letter tells a verb.
    bool isVerb(TokenSpan kind) const {
        constexpr std::uint32_t kReach = 4;
        if (kind.end != kind.begin + 1 || token(kind.begin).capital ||
            !Reader(m_document, kind.end).language(kind.begin).capitalNouns)
            return false;
        const std::uint32_t low = m_document.fields[token(kind.begin).field].begin;
        for (std::uint32_t i = kind.begin; i > low && kind.begin - i < kReach; --i)
            if (token(i - 1).capital && m_document.sameSentence(i - 1, kind.begin))
                return true;
        return false;
    }

    /// The place is named once more: "Pick-up: Cork Airport", "Return: Cork Airport".
    bool namesPlace(TokenSpan part) const {
        return !m_place.empty() && part.begin != m_place.begin &&
               part.end - part.begin == m_place.end - m_place.begin &&
               m_document.slice(part) == m_document.slice(m_place);
    }

    const Choice &m_choice;
    TokenSpan m_place;
    TitleParts m_parts;
    TitleScore m_scores;
    TokenSpan m_best;
    int m_score = kNone;
    int m_order = 0;
    bool m_sawText = false; ///< something before could be the title
};

} // namespace

TokenSpan findTitle(const Document &document, const Choice &choice, TokenSpan place) {
    TitleFinder finder(document, choice, place);
    const TokenSpan title = finder.run();
    return !place.empty() && finder.isPoor() ? TokenSpan{} : title;
}

} // namespace pindle::conversion
