#include <algorithm>

#include <unicode/uchar.h>

#include "PindleConversion/clean/Utf8.h"
#include "PindleConversion/compose/Compose.h"

namespace pindle::conversion {

namespace {

constexpr int kWidest = 60;               ///< columns of a title
constexpr int kRoomy = 44;                ///< columns above which a title is cut at its commas
constexpr std::uint32_t kLongestRun = 64; ///< tokens of a run that are looked at
constexpr int kNone = -1000;
constexpr int kOpening = 20;      ///< for the words that a text opens with
constexpr int kTopic = 20;        ///< for what a conversation is about
constexpr int kFlight = 30;       ///< for the number of a flight
constexpr int kGeneric = 300;     ///< less for a label's value that says nothing: "Reminder"
constexpr int kCount = 40;        ///< less for what opens with a number: "2 guests"
constexpr int kPlaceName = 24;    ///< less for what rather names a place: "flat 4"
constexpr int kNoContent = 30;    ///< less for words that say nothing of what happens
constexpr int kLoneKind = 14;     ///< less for "let's meet", of which only "meet" is left
constexpr int kOnlyFillers = 120; ///< "Let's meet" is a title when there is no better one

class TitleFinder {
public:
    TitleFinder(const Document &document, const Choice &choice)
        : m_document(document)
        , m_choice(choice) {}

    TokenSpan run() {
        const std::uint32_t anchorField = token(m_choice.anchor()).field;
        for (std::uint32_t f = 0; f < m_document.fields.size(); ++f)
            if (isInReach(f, anchorField))
                consider(f);
        return m_best;
    }

private:
    const Token &token(std::uint32_t i) const { return m_document.tokens[i]; }

    void consider(std::uint32_t f) {
        const Field &field = m_document.fields[f];
        if (field.ignored || field.label == Label::Price || field.label == Label::Link)
            return;
        const auto runs = runsOf(m_document, field);
        for (const Run &run : runs)
            offerRun(field, run, runs.size() == 1 && !run.afterUsed && !run.beforeUsed);
        offerLabel(field);
    }

    /// "Check-in: ..." may be all that the event is called.
    void offerLabel(const Field &field) {
        const bool names = field.label == Label::Start || field.label == Label::Deadline;
        if (field.labelWords.empty() || !names)
            return;
        constexpr int kWeak = 5;
        constexpr int kWeakest = -200;
        const int score = contains(field.labelWords, Meaning::Event) ? kWeak : kWeakest;
        if (score > m_score) {
            m_score = score;
            m_best = field.labelWords;
        }
    }

    void offerRun(const Field &field, const Run &run, bool alone) {
        ++m_order;
        m_first = !m_sawText;
        for (TokenSpan part : partsOf(run.span)) {
            TokenSpan trimmed = trim(part);
            const bool onlyFillers = trimmed.empty() || !hasLetters(trimmed);
            if (onlyFillers)
                trimmed = trimMarks(part);
            const TokenSpan kind = eventIn(trimmed);
            const bool event = onlyFillers && !kind.empty();
            if (event)
                trimmed = kind;
            const bool bare =
                onlyFillers && !event && (trimmed.end - trimmed.begin < 2 || !says(trimmed));
            if (trimmed.empty() || !hasLetters(trimmed) || bare)
                continue;
            const int score = scoreOf(field, run, part, trimmed, alone) -
                              (onlyFillers ? (event ? kLoneKind : kOnlyFillers) : 0);
            if (score > m_score) {
                m_score = score;
                m_best = shorten(trimmed);
            }
        }
    }

    /// A run as a whole, or cut where it is too long for a title or starts with a greeting.
    std::vector<TokenSpan> partsOf(TokenSpan run) const {
        run.end = std::min(run.end, run.begin + kLongestRun);
        const Reader reader(m_document, run.end);
        const TokenSpan trimmed = trim(run);
        const bool wide = columns(trimmed) > kRoomy;
        const bool greeting = reader.has(run.begin, Meaning::Greeting);
        std::vector<TokenSpan> parts;
        std::uint32_t begin = run.begin;
        for (std::uint32_t i = run.begin; i < run.end; ++i) {
            const bool hard = isHardBreak(reader, i);
            const bool soft = (wide || greeting) && isSoftBreak(reader, i) &&
                              !(reader.symbol(i, ':') && !greeting && columns(trimmed) <= kWidest);
            if (i > begin && announces(reader, i)) {
                parts.push_back({begin, i});
                begin = i;
            }
            // "Biscuit (Labrador) is due"
            const bool closed =
                reader.symbol(i, ')') && begin > run.begin && token(begin - 1).symbol == '(';
            if (!(hard || soft || closed))
                continue;
            parts.push_back({begin, i});
            begin = i + 1;
        }
        parts.push_back({begin, run.end});
        return parts;
    }

    /// "The Smiths are happy to invite you to": the event is what follows.
    static bool announces(const Reader &reader, std::uint32_t i) {
        constexpr std::uint8_t kLongPhrase = 3;
        const Sense *lead = reader.sense(i, Meaning::TitleLead);
        return lead && lead->value == 0 && lead->length >= kLongPhrase;
    }

    bool isHardBreak(const Reader &reader, std::uint32_t i) const {
        constexpr char32_t kOpen = 0x3010; ///< of the brackets that enclose a heading
        constexpr char32_t kClose = 0x3011;
        if (reader.symbol(i, ';') || reader.symbol(i, '"') || reader.symbol(i, kOpen) ||
            reader.symbol(i, kClose) || isCrumb(i))
            return true;
        if (reader.symbol(i, '-'))
            return (!reader.glued(i) || !reader.glued(i + 1)) && !isSubtitle(reader, i + 1);
        return token(i).kind == TokenKind::Link || token(i).kind == TokenKind::Mail;
    }

    /// "Osteoporosis – myths and facts" goes on behind its dash.
    bool isSubtitle(const Reader &reader, std::uint32_t i) const {
        const Token *next = reader.at(i);
        return next && next->kind == TokenKind::Word && !next->capital && !next->unspaced &&
               !next->used && !reader.has(i, Meaning::Chatter) &&
               !reader.has(i, Meaning::PlaceMarker) && !reader.has(i, Meaning::PlaceNoun) &&
               !reader.has(i, Meaning::TitleLead) && !reader.has(i, Meaning::AsideLead) &&
               !reader.has(i, Meaning::RoleWord) && !reader.has(i, Meaning::Event);
    }

    bool isSoftBreak(const Reader &reader, std::uint32_t i) const {
        return reader.symbol(i, ',') || reader.symbol(i, ':') || reader.symbol(i, '(');
    }

    bool hasLetters(TokenSpan span) const {
        for (std::uint32_t i = span.begin; i < span.end; ++i)
            if (token(i).kind == TokenKind::Word && token(i).end - token(i).begin > 1)
                return true;
        return false;
    }

    /// More than the words around a time or place: "a las", "in the".
    bool says(TokenSpan span) const {
        constexpr Meaning kAround[] = {Meaning::TimeMarker, Meaning::DateMarker, Meaning::The,
                                       Meaning::Of,         Meaning::RangeTo,    Meaning::And,
                                       Meaning::In,         Meaning::PlaceMarker};
        const Reader reader(m_document, span.end);
        for (std::uint32_t i = span.begin; i < span.end; ++i)
            if (reader.word(i) && std::none_of(std::begin(kAround), std::end(kAround),
                                               [&](Meaning each) { return reader.has(i, each); }))
                return true;
        return false;
    }

    /// Drops fillers from the front and loose ends from the back until nothing more goes.
    TokenSpan trim(TokenSpan span) const {
        for (bool changed = true; changed && !span.empty();) {
            const TokenSpan before = span;
            span = trimFront(span);
            span = trimBack(span);
            changed = span.begin != before.begin || span.end != before.end;
        }
        return span;
    }

    TokenSpan trimMarks(TokenSpan span) const {
        while (!span.empty() && isEdgeMark(token(span.begin)))
            ++span.begin;
        while (!span.empty() && isEdgeMark(token(span.end - 1)))
            --span.end;
        return span;
    }

    TokenSpan trimFront(TokenSpan span) const {
        const Reader reader(m_document, span.end);
        if (span.empty())
            return span;
        if (isEdgeMark(token(span.begin)) || reader.symbol(span.begin, ')') ||
            reader.symbol(span.begin, ']') || isUnclosed(span, span.begin))
            return {span.begin + 1, span.end};
        const Sense *lead = reader.sense(span.begin, Meaning::TitleLead);
        if (!lead || namesEvent(reader, span.begin, *lead))
            return span;
        const std::uint32_t next = span.begin + lead->length;
        if (startsLongerWord(span, next))
            return span;
        // "Invitation: ..." loses its prefix, "Invitation design" keeps its first word.
        if (lead->value == 1 && !reader.symbol(next, ':') && !reader.symbol(next, '-') &&
            !reader.symbol(next, '!') && !reader.symbol(next, ']') &&
            (next != span.end || isKindAlone(span)))
            return span;
        // "Book festival", "Call the bank": only "book a table" loses its verb.
        if (lead->value == 3 && !reader.has(next, Meaning::Number))
            return span;
        const bool name = token(span.begin).upper() && next < span.end && token(next).capital &&
                          lead->length == 1 && span.begin != next && isArticle(reader, span.begin);
        return name ? span : TokenSpan{next, span.end};
    }

    /// "Appointment" that nothing follows names the event itself.
    bool isKindAlone(TokenSpan span) const {
        return contains(span, Meaning::Event) && span.end < m_document.tokens.size() &&
               token(span.end).symbol != ':' && token(span.end).symbol != '-';
    }

    /// A sign before letters that no lexicon knows is the first of a longer word.
    bool startsLongerWord(TokenSpan span, std::uint32_t next) const {
        constexpr std::uint32_t kOneSign = 3; ///< bytes
        const Token &first = token(span.begin);
        return first.unspaced && first.end - first.begin <= kOneSign && next < span.end &&
               next == span.begin + 1 && token(next).unspaced && !token(next).spaceBefore &&
               token(next).word == 0;
    }

    /// "On call", "Book fair": the filler's word belongs to a kind of event.
    bool namesEvent(const Reader &reader, std::uint32_t i, const Sense &lead) const {
        const Sense *event = reader.sense(i, Meaning::Event);
        return event && event->length > lead.length;
    }

    /// "The Tempest" and "A Midsummer..." are names.
    bool isArticle(const Reader &reader, std::uint32_t i) const {
        return reader.has(i, Meaning::The) || reader.has(i, Meaning::Number);
    }

    TokenSpan trimBack(TokenSpan span) const {
        if (span.empty())
            return span;
        const std::uint32_t last = span.end - 1;
        if (const std::uint32_t length = lengthBehind(span); length != span.end)
            return {span.begin, length};
        if (closesQuote(span, last))
            return span;
        if (isEdgeMark(token(last)) || token(last).symbol == '(' || token(last).symbol == '[' ||
            isUnopened(span, last))
            return {span.begin, last};
        constexpr std::uint32_t kLongestTail = 4;
        const Reader reader(m_document, span.end);
        const std::uint32_t low =
            span.end > span.begin + kLongestTail ? span.end - kLongestTail : span.begin;
        for (std::uint32_t i = low; i < span.end; ++i)
            for (std::uint32_t s = token(i).firstSense; s < token(i).firstSense + token(i).senses;
                 ++s) {
                const Sense &sense = m_document.senses[s];
                if (sense.meaning == Meaning::TitleTail && i + sense.length == span.end &&
                    !(token(last).upper() && isName(span, last)))
                    return {span.begin, i};
            }
        return span;
    }

    /// "Course: 3 days" loses its length; returns where it starts, or the end.
    std::uint32_t lengthBehind(TokenSpan span) const {
        constexpr std::uint32_t kShortest = 4;
        if (span.end < span.begin + kShortest)
            return span.end;
        const Reader reader(m_document, span.end);
        const std::uint32_t count = span.end - 2;
        const char32_t mark = token(count - 1).symbol;
        const bool length = reader.number(count, 1, 99) && reader.has(count + 1, Meaning::UnitWord);
        return length && (mark == ':' || mark == ',') ? count - 1 : span.end;
    }

    /// "Exhibition 'Light'": the quotation mark belongs to the one before.
    bool closesQuote(TokenSpan span, std::uint32_t last) const {
        if (token(last).symbol != '\'' || token(last).spaceBefore)
            return false;
        for (std::uint32_t i = span.begin + 1; i + 1 < last; ++i)
            if (token(i).symbol == '\'' && token(i).spaceBefore)
                return true;
        return false;
    }

    /// A capitalised last word behind another is part of a name ("Sign On").
    bool isName(TokenSpan span, std::uint32_t last) const {
        return last > span.begin && token(last - 1).capital &&
               token(last).end - token(last).begin > 3;
    }

    bool isUnclosed(TokenSpan span, std::uint32_t at) const {
        if (token(at).symbol != '(' && token(at).symbol != '[')
            return false;
        const char32_t close = token(at).symbol == '(' ? ')' : ']';
        for (std::uint32_t i = at + 1; i < span.end; ++i)
            if (token(i).symbol == close)
                return i + 1 == span.end || close == ']';
        return true;
    }

    bool isUnopened(TokenSpan span, std::uint32_t at) const {
        if (token(at).symbol != ')' && token(at).symbol != ']')
            return false;
        const char32_t open = token(at).symbol == ')' ? '(' : '[';
        for (std::uint32_t i = span.begin; i < at; ++i)
            if (token(i).symbol == open)
                return i == span.begin;
        return true;
    }

    int columns(TokenSpan span) const {
        const auto text = m_document.slice(span);
        int width = 0;
        for (std::size_t at = 0; at < text.size() && width <= 2 * kWidest;) {
            const CodePoint point = decodeAt(text, at);
            const bool blank = point.value == ' ' && at > 0 && text[at - 1] == ' ';
            at = point.end;
            if (point.value < 0x1100) {
                width += blank ? 0 : 1;
                continue;
            }
            const int wide = u_getIntPropertyValue(point.value, UCHAR_EAST_ASIAN_WIDTH);
            width += wide == U_EA_WIDE || wide == U_EA_FULLWIDTH ? 2 : 1;
        }
        return width;
    }

    TokenSpan shorten(TokenSpan span) const {
        if (columns(span) <= kWidest)
            return span;
        const Reader reader(m_document, span.end);
        TokenSpan shorter = span;
        for (std::uint32_t i = span.begin + 1; i < span.end; ++i)
            if (isSoftBreak(reader, i) && columns({span.begin, i}) <= kWidest)
                shorter.end = i;
        while (columns(shorter) > kWidest && shorter.end > shorter.begin + 1)
            --shorter.end;
        return trim(shorter);
    }

    bool contains(TokenSpan span, Meaning meaning) const {
        const Reader reader(m_document, span.end);
        for (std::uint32_t i = span.begin; i < span.end; ++i)
            if (reader.has(i, meaning))
                return true;
        return false;
    }

    /// The words that name a kind of event.
    TokenSpan eventIn(TokenSpan span) const {
        const Reader reader(m_document, span.end);
        for (std::uint32_t i = span.begin; i < span.end; ++i)
            if (const Sense *event = reader.sense(i, Meaning::Event))
                return {i, std::min(i + event->length, span.end)};
        return {};
    }

    /// "VL8K2P"
    bool isCode(TokenSpan span) const {
        int numbers = 0;
        for (std::uint32_t i = span.begin; i < span.end; ++i) {
            if (i > span.begin && token(i).spaceBefore)
                return false;
            numbers += token(i).kind == TokenKind::Number ? 1 : 0;
        }
        return numbers > 1;
    }

    /// "KL 0592", "SQ326"
    bool hasFlightNumber(TokenSpan span) const {
        for (std::uint32_t i = span.begin; i + 1 < span.end; ++i)
            if (token(i).kind == TokenKind::Word && token(i).end - token(i).begin == 2 &&
                token(i).upper() && token(i + 1).kind == TokenKind::Number &&
                token(i + 1).digits >= 2 && token(i + 1).digits <= 4)
                return true;
        return false;
    }

    /// "Home > Courses > Crafts": where a page stands.
    bool isTrail(TokenSpan span) const {
        for (std::uint32_t i = span.begin; i < span.end; ++i)
            if (token(i).symbol == '>')
                return true;
        return false;
    }

    /// "ul. Krótka 5": a kind of street, a name and a number.
    bool isAddress(TokenSpan span) const {
        const Reader reader(m_document, span.end);
        const Sense *street = reader.sense(span.begin, Meaning::StreetWord);
        return street && street->value == 1 && token(span.end - 1).kind == TokenKind::Number;
    }

    bool hasMoney(TokenSpan span) const {
        for (std::uint32_t i = span.begin; i < span.end; ++i) {
            const char32_t c = token(i).symbol;
            if (c == '$' || c == U'€' || c == U'£' || c == U'¥')
                return true;
        }
        return false;
    }

    int labelScore(Label label) const {
        switch (label) {
        case Label::Title:
            return 400;
        case Label::Note:
            return -60;
        case Label::Place:
            return -80;
        case Label::Deadline:
            return -60;
        case Label::Duration:
        case Label::Zone:
            return -80;
        default:
            return 0;
        }
    }

    int scoreOf(const Field &field, const Run &run, TokenSpan part, TokenSpan trimmed, bool alone) {
        const std::uint32_t anchor = m_choice.anchor();
        const Reader reader(m_document, part.end);
        int score = labelScore(field.label) - std::min(m_order, 20) + 20;
        const bool sameSentence = m_document.sameSentence(part.begin, anchor);
        const bool sameField = token(part.begin).field == token(anchor).field;
        const bool first = m_first && alone && !field.spoken && !isNotice(reader, part);
        if (sameSentence)
            score += part.begin < anchor ? 40 : 28;
        else if (sameField)
            score += 8;
        else if (field.spoken && contains(trimmed, Meaning::Event) && !m_choice.timeSpan.empty() &&
                 m_document.sameSentence(part.begin, m_choice.timeSpan.begin))
            score += 24;
        else if (field.spoken && contains(trimmed, Meaning::Event))
            score += kTopic;
        if (field.cell && &field == &m_document.fields.front())
            score += 20;
        const bool kind = isCalledByNext(trimmed) || (alone && isKindAbove(field, trimmed));
        if (first && isHeading(part) && !kind)
            score += 48;
        else if (m_first && !field.spoken && part.begin == field.begin && !sameSentence)
            score += kOpening;
        if (contains(trimmed, Meaning::Event) && !namesHost(trimmed))
            score += 16;
        else if (!hasContent(trimmed))
            score -= kNoContent;
        if (isQuoted(part))
            score += 30;
        if (m_choice.kind == EventKind::Travel && hasFlightNumber(trimmed))
            score += kFlight;
        if (run.beforeUsed && sameSentence && part.end == run.span.end)
            score += 4;
        constexpr int kAnnouncement = -40;
        int less = penalties(reader, part, trimmed);
        // "Mr and Mrs Pope" on a line of their own invite, a name below "Regards" signs.
        // "The Popes are happy to invite you to": the event is what follows.
        const Reader beyond(m_document, run.span.end);
        if (part.end < run.span.end && announces(beyond, part.end))
            less -= 40;
        if (part.begin > 0 && isCrumb(part.begin - 1))
            less -= 40;
        if (alone && isHeading(part) && !contains(trimmed, Meaning::Event) &&
            (isPerson(reader, part.begin) || isSignature(field)))
            less -= 40;
        // The subject of a mail may say no more than that something was booked.
        if (field.label == Label::Title && isPageHead(reader, part))
            less -= 360;
        score += less;
        if (!reader.has(part.begin, Meaning::Greeting) && !kind && less > kAnnouncement &&
            !isNotice(reader, part) && !tellsRole(trimmed))
            m_sawText = true;
        return score;
    }

    bool isPerson(const Reader &reader, std::uint32_t i) const {
        return token(i).capital && reader.has(i, Meaning::Person);
    }

    /// A few words behind the line that says goodbye.
    bool isSignature(const Field &field) const {
        constexpr std::uint32_t kLongest = 4;
        constexpr std::uint32_t kLongestGoodbye = 5;
        if (field.begin < m_choice.anchor() || field.end - field.begin > kLongest ||
            &field == &m_document.fields.front())
            return false;
        const Field &before = *(&field - 1);
        return before.end - before.begin <= kLongestGoodbye && before.begin > m_choice.anchor() &&
               Reader(m_document, before.end).has(before.begin, Meaning::Greeting);
    }

    /// "Your booking VL8K2P" above what is booked.
    bool isNotice(const Reader &reader, TokenSpan part) const {
        const Sense *chatter = reader.sense(part.begin, Meaning::Chatter);
        const std::uint32_t rest = chatter ? part.begin + chatter->length : part.begin;
        return chatter && (rest == part.end || isCode({rest, part.end}));
    }

    /// "Chess club The Tower" says who, not what.
    bool namesHost(TokenSpan trimmed) const {
        const Reader reader(m_document, trimmed.end);
        return reader.has(trimmed.begin, Meaning::PlaceNoun) &&
               !reader.has(trimmed.begin, Meaning::Event);
    }

    /// "Rendezvous 6pm at the Café Noir for Chloé's party": the event is named later.
    bool isBeforeMoment(TokenSpan trimmed) const {
        return trimmed.end == m_choice.timeSpan.begin || trimmed.end == m_choice.dateSpan.begin;
    }

    /// "Tobias, see you at nine": whom the text speaks to.
    bool isVocative(TokenSpan part, TokenSpan trimmed) const {
        return part.begin == 0 && trimmed.end == part.begin + 1 && token(part.begin).capital &&
               !token(part.begin).unspaced && token(part.begin).word == 0 &&
               trimmed.end < m_document.tokens.size() && token(trimmed.end).symbol == ',';
    }

    /// Not only words that hold a sentence together: "hast du", "there is".
    bool hasContent(TokenSpan span) const {
        constexpr Meaning kAround[] = {Meaning::Common,      Meaning::Chatter,  Meaning::Greeting,
                                       Meaning::PresentVerb, Meaning::PastVerb, Meaning::PartOfDay,
                                       Meaning::AsideLead,   Meaning::Person};
        const Reader reader(m_document, span.end);
        for (std::uint32_t i = span.begin; i < span.end; ++i)
            if (reader.word(i) && std::none_of(std::begin(kAround), std::end(kAround),
                                               [&](Meaning each) { return reader.has(i, each); }))
                return true;
        return false;
    }

    /// "Posted on", "by": what is left of a date's role.
    bool tellsRole(TokenSpan span) const {
        const Reader reader(m_document, span.end);
        const Sense *role = reader.sense(span.begin, Meaning::RoleWord);
        return role && span.begin + role->length == span.end;
    }

    /// "Doors open" before the event itself.
    bool tellsSide(TokenSpan span) const {
        const Sense *role = Reader(m_document, span.end).sense(span.begin, Meaning::RoleWord);
        return role && role->value == static_cast<int>(Role::Side);
    }

    /// A name in quotes, of some words.
    bool isQuoted(TokenSpan part) const {
        return part.begin > 0 && token(part.begin - 1).symbol == '"' &&
               part.end < m_document.tokens.size() && token(part.end).symbol == '"' &&
               (part.end - part.begin > 1 || token(part.begin).unspaced);
    }

    int penalties(const Reader &reader, TokenSpan part, TokenSpan trimmed) const {
        int score = 0;
        std::uint32_t begin = part.begin;
        while (begin + 1 < part.end && isEdgeMark(token(begin)))
            ++begin;
        // "guys pizza on Friday": the greeting is gone and a kind of event is left. "Team dinner"
        // greets nobody.
        const Sense *greeting = reader.sense(begin, Meaning::Greeting);
        if (greeting && !(greeting->length == 1 && reader.has(begin + 1, Meaning::Event)))
            score -= trimmed.begin > begin && contains(trimmed, Meaning::Event) &&
                             !(trimmed.end == trimmed.begin + 1 && isPerson(reader, trimmed.begin))
                         ? 8
                         : 70;
        if (reader.has(begin, Meaning::Chatter) || reader.has(begin, Meaning::AsideLead))
            score -= 40;
        if (isPageHead(reader, {part.begin, std::max(part.begin, trimmed.end)}) ||
            isOnlyOnline(trimmed))
            score -=
                m_document.fields[token(part.begin).field].label == Label::Title ? kGeneric : 60;
        if (begin < part.end && token(begin).symbol == '(')
            score -= 25;
        // "保護者の皆様": whom the text speaks to.
        if (token(part.end - 1).unspaced && reader.has(part.end - 1, Meaning::Person))
            score -= 60;
        if (hasMoney(trimmed))
            score -= 30;
        if (isCode(trimmed) || isTrail(trimmed))
            score -= 60;
        if (isVocative(part, trimmed))
            score -= 50;
        if (token(trimmed.begin).kind == TokenKind::Number && !contains(trimmed, Meaning::Event))
            score -= kCount;
        if (isAddress(trimmed))
            score -= 24;
        else if (!m_first && !contains(trimmed, Meaning::Event) &&
                 (contains(trimmed, Meaning::PlaceNoun) || contains(trimmed, Meaning::StreetWord)))
            score -= kPlaceName;
        if (contains(trimmed, Meaning::PastVerb))
            score -= 8;
        if (tellsRole(trimmed))
            score -= tellsSide(trimmed) ? 80 : 40;
        const Sense *general = reader.sense(trimmed.begin, Meaning::GeneralEvent);
        if (general && trimmed.begin + general->length == trimmed.end && isBeforeMoment(trimmed))
            score -= 20;
        if (trimmed.end - trimmed.begin == 1 && !contains(trimmed, Meaning::Event))
            score -= 6;
        if (isCalledByNext(trimmed))
            score -= 30;
        return score;
    }

    /// "Microsoft Teams meeting", "Zoom call"
    bool isOnlyOnline(TokenSpan trimmed) const {
        const Reader reader(m_document, trimmed.end);
        const Sense *online = reader.sense(trimmed.begin, Meaning::Online);
        if (!online)
            return false;
        const std::uint32_t next = trimmed.begin + online->length;
        const Sense *general = reader.sense(next, Meaning::OnlineEvent);
        return next == trimmed.end || (general && next + general->length == trimmed.end);
    }

    /// "Home › Music" leads to what follows.
    bool isCrumb(std::uint32_t i) const {
        constexpr char32_t kBreadcrumb = 0x203A;
        const char32_t mark = token(i).symbol;
        return (mark == kBreadcrumb || mark == '>') && token(i).spaceBefore &&
               m_document.fields[token(i).field].line == 0;
    }

    /// "Home › What's on", "Lincoln School News", "SOLD OUT".
    bool isPageHead(const Reader &reader, TokenSpan part) const {
        bool slash = false;
        bool number = false;
        std::uint32_t last = part.end;
        while (last > part.begin && isEdgeMark(token(last - 1)))
            --last;
        for (std::uint32_t i = part.begin; i < part.end; ++i) {
            const Sense *head = reader.sense(i, Meaning::PageHead);
            if (head && (i + head->length == last || (i == part.begin && head->value == 1)))
                return true;
            slash = slash || (reader.symbol(i, '/') && !reader.glued(i) && reader.at(i + 1) &&
                              !reader.glued(i + 1));
            number = number || token(i).kind == TokenKind::Number;
        }
        const bool crumb = part.end < m_document.tokens.size() && isCrumb(part.end) &&
                           m_document.sameSentence(part.begin, part.end);
        return crumb || (slash && !number && part.begin == 0);
    }

    /// "Workshop" on a line above "Sourdough for Beginners".
    bool isKindAbove(const Field &field, TokenSpan trimmed) const {
        const Field *next = &field + 1;
        if (next > &m_document.fields.back() || next->begin >= m_choice.anchor() ||
            next->label != Label::None || next->line != field.line + 1 || field.cell ||
            next->spoken)
            return false;
        const Reader reader(m_document, trimmed.end);
        const Sense *event = reader.sense(trimmed.begin, Meaning::Event);
        const Token &word = token(next->begin);
        return event && trimmed.begin + event->length == trimmed.end && word.capital &&
               !word.used && trimmed.begin == field.begin;
    }

    /// "Webinar: Reading a Balance Sheet", "Webinar | Reading a Balance Sheet": the kind stands
    /// before the name.
    bool isCalledByNext(TokenSpan trimmed) const {
        constexpr std::uint32_t kLongestKind = 3;
        constexpr char32_t kBullet = 0x2022;
        const std::uint32_t size = trimmed.end - trimmed.begin;
        const std::uint32_t next = trimmed.end + 1;
        if (size > kLongestKind || next >= m_document.tokens.size() || token(next).used)
            return false;
        const char32_t mark = token(trimmed.end).symbol;
        if (mark == ':')
            return m_document.sameSentence(trimmed.begin, trimmed.end);
        const bool event = token(next).kind == TokenKind::Word && contains(trimmed, Meaning::Event);
        // "Talk "Heat Pumps""
        if (mark == '"')
            return event && m_document.sameSentence(trimmed.begin, next);
        return size == 1 && (mark == '|' || mark == kBullet) && event;
    }

    /// A short line without a sentence's full stop.
    bool isHeading(TokenSpan part) const {
        constexpr std::uint32_t kMostTokens = 14;
        return part.end - part.begin <= kMostTokens && token(part.end - 1).symbol != '.' &&
               token(part.end - 1).symbol != ',' && token(part.end - 1).symbol != '?';
    }

    const Document &m_document;
    const Choice &m_choice;
    TokenSpan m_best;
    int m_score = kNone;
    int m_order = 0;
    bool m_sawText = false;
    bool m_first = true; ///< the run looked at is the text's first
};

} // namespace

TokenSpan findTitle(const Document &document, const Choice &choice) {
    return TitleFinder(document, choice).run();
}

} // namespace pindle::conversion
